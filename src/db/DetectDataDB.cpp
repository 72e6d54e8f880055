#include "db/DetectDataDB.h"

#include <QSqlRecord>

namespace {

const QString recordTable = QStringLiteral("zdtable");
const QString rangeTable = QStringLiteral("zdtimetable");
const QString warningTable = QStringLiteral("warningtable");

const QString shortText = QStringLiteral("VARCHAR(32)");
const QString number = QStringLiteral("INT(100)");
const QString dateTime = QStringLiteral("DATETIME(32)");

/// Names and types, "hight" included, are those of the files that plants have.
const SqlValueMap& recordColumns()
{
    static const SqlValueMap columns{
        {QStringLiteral("channel"), number},
        {QStringLiteral("correlate"), number},
        {QStringLiteral("detecttime"), shortText},
        {QStringLiteral("diameter"), number},
        {QStringLiteral("hight"), number},
        {QStringLiteral("model"), shortText},
        {QStringLiteral("pic"), QStringLiteral("BLOB")},
        {QStringLiteral("time"), dateTime},
    };
    return columns;
}

const SqlValueMap& rangeColumns()
{
    static const SqlValueMap columns{{QStringLiteral("endtime"), shortText},
                                     {QStringLiteral("starttime"), shortText},
                                     {QStringLiteral("type"), shortText}};
    return columns;
}

const SqlValueMap& warningColumns()
{
    static const SqlValueMap columns{{QStringLiteral("class"), shortText},
                                     {QStringLiteral("message"), QStringLiteral("VARCHAR(256)")},
                                     {QStringLiteral("time"), dateTime}};
    return columns;
}

QString rowsOrCount(bool count, const QString& table, const QString& condition)
{
    return (count ? QStringLiteral("select count(*) from ") : QStringLiteral("select * from ")) + table + condition;
}

} // namespace

DetectDataDB::DetectDataDB(const QString& path, const QString& driverType, QObject* parent)
    : DataBaseSql(path, driverType, parent)
{
}

QVector<DataBaseSql::Table> DetectDataDB::tables() const
{
    return {{recordTable, recordColumns(), true},
            {rangeTable, rangeColumns(), false},
            {warningTable, warningColumns(), true}};
}

QString DetectDataDB::buildQuery(const QVariantMap& parameters)
{
    const auto text = [&parameters](const char* key) { return parameters.value(QLatin1String(key)).toString(); };
    const bool count = parameters.value(QStringLiteral("Count")).toInt() == 1;
    const QString between = QStringLiteral(" where time >'%1' and time < '%2'");
    switch (parameters.value(QStringLiteral("Type"), -1).toInt()) {
    case 0:
        return rowsOrCount(count, recordTable, QStringLiteral(" where time ='%1'").arg(text("time1")));
    case 1:
        return rowsOrCount(count, recordTable,
                           SqlBuilder::filled(between + QStringLiteral(" and model='%3'"),
                                              {text("time1"), text("time2"), text("name")}));
    case 2:
    case 4: {
        const QString condition = SqlBuilder::filled(between, {text("time1"), text("time2")});
        if (!count && text("CheckType") == QLatin1String("Count"))
            return QStringLiteral("select %1 from ").arg(QStringLiteral("model")) + recordTable + condition;
        return rowsOrCount(count, recordTable, condition);
    }
    case 3: {
        const QString type = QString::number(parameters.value(QStringLiteral("logType")).toInt());
        return rowsOrCount(count, warningTable,
                           SqlBuilder::filled(between + QStringLiteral(" and class = '%3' order by time desc "),
                                              {text("time1"), text("time2"), type}));
    }
    default:
        return {};
    }
}

bool DetectDataDB::insertRecord(const SqlValueMap& values)
{
    return insertRecord(recordTable, values);
}

bool DetectDataDB::insertRecord(const QString& table, const SqlValueMap& values)
{
    const QStringList names = values.keys();
    QStringList markers;
    for (const QString& name : names)
        markers << QLatin1Char(':') + name;
    const QString sql = SqlBuilder::filled(QStringLiteral("INSERT INTO %1(%2) VALUES(%3)"),
                                           {table, names.join(QLatin1Char(',')), markers.join(QLatin1Char(','))});
    const bool inserted = store().run([&](SqlConnection& connection) {
        QSqlQuery query(connection.database());
        query.prepare(sql);
        for (const QString& name : names)
            query.bindValue(QLatin1Char(':') + name, values.value(name));
        return connection.exec(query);
    });
    if (inserted)
        committed();
    return true;
}

bool DetectDataDB::insertWarning(const QString& message, const QString& warningClass, const QString& time)
{
    return insert(warningTable, {{QStringLiteral("message"), message},
                                 {QStringLiteral("class"), warningClass},
                                 {QStringLiteral("time"), time}});
}

bool DetectDataDB::deleteBefore(const QString& time)
{
    store().exec(SqlBuilder::deleteSql(recordTable, QStringLiteral("time <'%1'").arg(time)));
    return true;
}

bool DetectDataDB::clearAll()
{
    const QString sql = QStringLiteral("delete from %1 ");
    store().exec(sql.arg(recordTable));
    store().exec(sql.arg(warningTable));
    return true;
}

/// SQLite takes no OFFSET without a LIMIT, so the limit is the number of all rows of the class.
bool DetectDataDB::trimWarnings(const QString& warningClass, int keep)
{
    using SqlBuilder::filled;
    const QString kept = QString::number(keep);
    const QString count =
        filled(QStringLiteral("select count(uid) from %1 where class = '%3'"), {warningTable, warningClass});
    const QString condition = filled(QStringLiteral("uid in(select uid from %1 where class = '%2' order by time desc "
                                                    "limit(select count(uid) from %3 where class = '%4') offset %5)"),
                                     {warningTable, warningClass, warningTable, warningClass, kept});
    store().exec(filled(QStringLiteral("delete from %1 where (%2)>%3 and %4"), {warningTable, count, kept, condition}));
    return true;
}

bool DetectDataDB::readTimeRanges(QMap<QString, TimeRange>* ranges)
{
    QSqlQuery query = store().exec(QStringLiteral("select * from ") + rangeTable);
    while (query.next()) {
        const QSqlRecord row = query.record();
        const QString type = row.value(QStringLiteral("type")).toString();
        ranges->insert(type,
                       {row.value(QStringLiteral("uid")).toInt(), type, row.value(QStringLiteral("starttime")).toTime(),
                        row.value(QStringLiteral("endtime")).toTime()});
    }
    return succeeded();
}

bool DetectDataDB::deleteTimeRange(const QString& type)
{
    store().exec(SqlBuilder::deleteSql(rangeTable, QStringLiteral("type = '%1'").arg(type)));
    return succeeded();
}

bool DetectDataDB::saveTimeRange(const QString& type, const QString& start, const QString& end)
{
    return insert(
        rangeTable,
        {{QStringLiteral("type"), type}, {QStringLiteral("starttime"), start}, {QStringLiteral("endtime"), end}});
}
