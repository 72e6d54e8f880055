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

    /// How many results a station has of the day of `end` and before it, and how many of them have an angle below
    /// `angleLimit`; false when they cannot be read.
    bool countStation(const QString& stationName, const QDateTime& end, double angleLimit, int* all, int* below);

private:
    SqlConnection m_connection;
};
