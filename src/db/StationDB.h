#pragma once

#include "db/DataBaseSql.h"
#include "db/PartRecord.h"
#include "db/RowThinner.h"

#include <QDateTime>
#include <QMetaType>

/// What was answered for one part.
struct StationResult
{
    double angle = 0; ///< degrees, or one of the special angles
    qint32 errorType = 0;
    double matchScore = 0; ///< percent
    QString resultTip;
    QString threshBenchMark; ///< station and model
    QString stationName;
    QString value1;  ///< path of the saved result image below the home; empty when none was saved
    QString value2;  ///< as threshBenchMark
    QString value3;  ///< what the answer rests on, see TaskResult::evidence
    PartRecord part; ///< goes into "PartTable"
    QDateTime time;  ///< of the part; not valid: that of recording it
};

/// A recorded result.
struct StationResultRow
{
    qint64 uid = 0;
    QString time; ///< local, "yyyy-MM-dd hh:mm:ss zzz"
    StationResult result;
};

Q_DECLARE_TYPEINFO(StationResult, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(StationResultRow, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(StationResult)

/// The results of the stations, one row each, in "RltTable", and beside it in "PartTable".
class StationDB : public DataBaseSql
{
    Q_OBJECT

public:
    explicit StationDB(const QString& path, const QString& driverType = QStringLiteral("QSQLITE"),
                       QObject* parent = nullptr);

    /// As open().
    bool initialise() { return open(); }

    /// One row, stamped with the local time of the insertion, or with the given one. When it returns true, the row
    /// outlives the process, and within a tenth of a second a power failure too.
    bool insertResult(const StationResult& result);
    bool insertResult(const StationResult& result, const QDateTime& time);

    /// The row that was inserted last.
    qint64 lastRow() const { return m_lastRow; }
    /// Enters a picture's path into the row of this number and time.
    bool setPicture(qint64 row, const QDateTime& time, const QString& path);
    /// How many rows like this one the table has: two parts of one moment may look alike.
    int countAlike(const StationResult& result, const QDateTime& time);

    /// Deletes a few of the rows that are too old; see RowThinner. Returns when to call it again, milliseconds.
    int thin();
    /// Of the scheduler that setScheduler() gave.
    RowThinner& thinner();

    /// Takes some rows of earlier versions into "PartTable"; false when none is left, or none can be taken now.
    bool fillInParts(int count);
    /// The time of the row that was inserted last, by whatever start of the program; not valid without one.
    QDateTime lastTime();

    /// The form of every stored time; texts of it sort as the times do.
    static QString timeText(const QDateTime& time);

protected:
    QVector<Table> tables() const override;
    QStringList furtherTables(SqlConnection& connection) const override;

private:
    bool insertPart(SqlConnection& connection, const StationResult& result, const QDateTime& time);

    qint64 m_lastRow = 0;
    std::unique_ptr<RowThinner> m_thinner;
};
