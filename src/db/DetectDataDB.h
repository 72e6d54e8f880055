#pragma once

#include "db/DataBaseSql.h"

#include <QTime>

/// Detection records ("zdtable"), named time ranges ("zdtimetable") and warnings ("warningtable"). Times are texts and
/// are compared as texts.
class DetectDataDB : public DataBaseSql
{
    Q_OBJECT

public:
    struct TimeRange
    {
        int uid = 0;
        QString type;
        QTime start;
        QTime end;
    };

    explicit DetectDataDB(const QString& path, const QString& driverType = QStringLiteral("QSQLITE"),
                          QObject* parent = nullptr);

    /// As open().
    bool initialise() { return open(); }

    /// The statement for the parameters "Type" (0 to 4) and "Count" (1: the number of rows), with "time1", "time2",
    /// "name", "CheckType" and "logType" as the type needs them; empty for any other type.
    static QString buildQuery(const QVariantMap& parameters);

    /// Binds its values, so that a picture goes in as it is. Always true.
    bool insertRecord(const SqlValueMap& values);
    bool insertRecord(const QString& table, const SqlValueMap& values);

    /// Texts go into the statement as they are: one with an apostrophe fails.
    bool insertWarning(const QString& message, const QString& warningClass, const QString& time);

    /// Deletes the detection records before the time. Always true.
    bool deleteBefore(const QString& time);

    /// Deletes all detection records and warnings; the time ranges stay. Always true.
    bool clearAll();

    /// Deletes the oldest warnings of one class beyond the newest `keep`. Always true.
    bool trimWarnings(const QString& warningClass, int keep);

    /// Adds the ranges by their types; false when they cannot be read.
    bool readTimeRanges(QMap<QString, TimeRange>* ranges);
    bool deleteTimeRange(const QString& type);
    /// Times as "hh:mm:ss"; a range may reach over midnight.
    bool saveTimeRange(const QString& type, const QString& start, const QString& end);

protected:
    QVector<Table> tables() const override;
};
