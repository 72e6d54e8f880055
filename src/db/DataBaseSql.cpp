#include "db/DataBaseSql.h"

#include "common/Scheduler.h"
#include "db/WalKeeper.h"
#include "platform/System.h"

#include <algorithm>

namespace {

const QString mysqlDriver = QStringLiteral("QMYSQL");
const QString keyType = QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL");
const QString tableListSql = QStringLiteral("select name from sqlite_master where type='table' order by name;");

/// The tables that a file of results may hold, with the columns that a row needs.
QVector<SqliteFile::OwnTable> ownTables()
{
    return {
        {QStringLiteral("RltTable"),
         {QStringLiteral("uid"), QStringLiteral("dAngle"), QStringLiteral("errorType"), QStringLiteral("matchScore"),
          QStringLiteral("resultTip"), QStringLiteral("stationName"), QStringLiteral("threshBenchMark"),
          QStringLiteral("time"), QStringLiteral("value1"), QStringLiteral("value2"), QStringLiteral("value3")}},
        {QStringLiteral("zdtable"), {QStringLiteral("uid"), QStringLiteral("model"), QStringLiteral("time")}},
        {QStringLiteral("zdtimetable"), {QStringLiteral("uid"), QStringLiteral("type")}},
        {QStringLiteral("warningtable"), {QStringLiteral("uid"), QStringLiteral("class")}},
        {QStringLiteral("e_report_forms"), {}}};
}

SqliteFile::OpenRules openRules()
{
    SqliteFile::OpenRules rules;
    rules.durability = SqliteFile::Durability::SoonAfter;
    rules.autoCheckpoint = false;
    rules.ownTables = ownTables();
    return rules;
}

} // namespace

DataBaseSql::DataBaseSql(const QString& path, const QString& driverType, QObject* parent)
    : QObject(parent)
    , m_driverType(driverType)
    , m_scheduler(&Scheduler::system())
    , m_store(path, openRules(), driverType)
    , m_lastInsert(m_store.connection().database())
    , m_flush(platform::flushFile)
{
    m_store.rules().createTables = [this](SqlConnection&) { return ensureTables(); };
}

DataBaseSql::~DataBaseSql()
{
    close();
}

void DataBaseSql::setScheduler(Scheduler& scheduler)
{
    m_scheduler = &scheduler;
    m_store.setScheduler(scheduler);
}

void DataBaseSql::close()
{
    m_keeper.reset();
    m_lastInsert = QSqlQuery(m_store.connection().database());
    m_store.close();
}

void DataBaseSql::committed()
{
    if (!m_keeper)
        m_keeper = std::make_unique<WalKeeper>(path(), m_flush, *m_scheduler);
    m_keeper->committed();
}

QStringList DataBaseSql::tableList()
{
    QStringList names;
    QSqlQuery query = m_store.exec(tableListSql);
    while (query.next())
        names << query.value(0).toString();
    return names;
}

/// MySQL is known by name only: its statement is a fixed one, kept as earlier versions had it.
bool DataBaseSql::createTable(const QString& table, const QString& keyColumn, const SqlValueMap& columns)
{
    if (m_driverType == mysqlDriver) {
        m_store.exec(QStringLiteral("CREATE TABLE `testtable2` (`id` int(11) NOT NULL,`name` varchar(60) DEFAULT "
                                    "NULL,`age` int(11) DEFAULT NULL,PRIMARY KEY(`id`)) ENGINE = InnoDB DEFAULT "
                                    "CHARSET = utf8;"));
    } else {
        m_store.exec(SqlBuilder::createTableSql(table, keyColumn, keyType, columns));
    }
    return succeeded();
}

/// One transaction: a table that stands without its index would never get it.
bool DataBaseSql::ensureTables()
{
    SqlConnection& connection = m_store.connection();
    const auto succeeds = [&connection](const QString& sql) {
        connection.exec(sql);
        return !connection.failed();
    };
    QStringList present;
    for (QSqlQuery query = connection.exec(tableListSql); query.next();)
        present << query.value(0).toString();
    if (connection.failed())
        return false;
    QStringList statements;
    const QVector<Table> wanted = tables();
    for (const Table& table : wanted) {
        if (present.contains(table.name, Qt::CaseInsensitive))
            continue;
        statements << SqlBuilder::createTableSql(table.name, QStringLiteral("uid"), keyType, table.columns);
        if (table.timeIndex)
            statements << SqlBuilder::filled(QStringLiteral("CREATE INDEX %1 ON %2 (time COLLATE BINARY ASC); "),
                                             {QStringLiteral("idx_%1").arg(table.name), table.name});
    }
    statements << furtherTables(connection);
    if (statements.isEmpty())
        return true;
    statements.prepend(QStringLiteral("BEGIN IMMEDIATE"));
    statements.append(QStringLiteral("COMMIT"));
    return std::all_of(statements.cbegin(), statements.cend(), succeeds);
}

bool DataBaseSql::insert(const QString& table, const SqlValueMap& values)
{
    if (table.isEmpty() || values.isEmpty())
        return false;
    m_lastInsert = m_store.exec(SqlBuilder::insertSql(table, values));
    if (succeeded())
        committed();
    return succeeded();
}

bool DataBaseSql::update(const QString& table, const SqlValueMap& values)
{
    if (table.isEmpty() || values.isEmpty())
        return false;
    m_store.exec(QStringLiteral("select max(md_unique) from e_report_forms"));
    if (!succeeded())
        return false;
    m_store.exec(SqlBuilder::updateSql(table, values, QStringLiteral("uid = '0'")));
    return succeeded();
}

bool DataBaseSql::clear(const QString& table, const QString& text)
{
    if (table.isEmpty() || text.isEmpty())
        return false;
    m_store.exec(QStringLiteral("select max(") + QStringLiteral("uid") + QStringLiteral(") from ") + table);
    m_store.exec(SqlBuilder::deleteSql(table, QString()));
    return succeeded();
}
