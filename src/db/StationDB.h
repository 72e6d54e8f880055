#pragma once

#include "db/DataBaseSql.h"
#include "db/StationResult.h"

#include <QDateTime>

/// The results of the stations, one row each, in "RltTable".
class StationDB : public DataBaseSql
{
    Q_OBJECT

public:
    explicit StationDB(const QString& path, const QString& driverType = QStringLiteral("QSQLITE"),
                       QObject* parent = nullptr);

    /// Opens the database and makes the table and its index when they are missing; false when it cannot be opened.
    bool initialise();

    /// One row, stamped with the local time of the insertion, or with the given one. When it answers true, the row
    /// outlives the process, and within a tenth of a second a power failure too.
    bool insertResult(const StationResult& result);
    bool insertResult(const StationResult& result, const QDateTime& time);

    /// The form of every stored time; texts of it sort as the times do.
    static QString timeText(const QDateTime& time);
};
