#pragma once

#include "db/SqlConnection.h"
#include "db/StationDB.h"

#include <QDateTime>
#include <QVector>

/// Reads recorded results beside the program that writes them, without ever keeping it waiting. The thread that opens
/// it uses it.
class ResultReader
{
public:
    explicit ResultReader(const QString& path);

    /// False when the file is missing or no database; a reader makes none.
    bool open(QString* error);

    /// Results from `first` to `last`, both included, in the order of their times; at most `limit` of them from the
    /// `offset`-th on. A limit of -1 means all. Empty with `error` set when they cannot be read.
    QVector<StationResultRow> results(QDate first, QDate last, int limit = -1, int offset = 0,
                                      QString* error = nullptr);
    QVector<StationResultRow> resultsOfDay(QDate day, int limit = -1, int offset = 0)
    {
        return results(day, day, limit, offset);
    }

    /// How many there are; -1 when they cannot be read.
    int count(QDate first, QDate last);
    int countOfDay(QDate day) { return count(day, day); }

    struct StationCount
    {
        int found = 0;
        int notFound = 0;
        int refused = 0;
    };
    /// What became of a station's parts on the day of `end` and before it: angles below `foundBelow` were found, those
    /// from `refusedFrom` on refused. False when they cannot be read.
    bool countStation(const QString& stationName, const QDateTime& end, double foundBelow, double refusedFrom,
                      StationCount* count);

private:
    SqlConnection m_connection;
};
