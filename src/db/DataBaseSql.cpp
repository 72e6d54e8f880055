#include "db/DataBaseSql.h"

#include "common/Scheduler.h"
#include "db/WalKeeper.h"
#include "platform/System.h"

#include <QDebug>

namespace {

const QString sqliteDriver = QStringLiteral("QSQLITE");
const QString mysqlDriver = QStringLiteral("QMYSQL");

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

} // namespace

DataBaseSql::DataBaseSql(const QString& path, const QString& driverType, QObject* parent)
    : QObject(parent)
    , m_driverType(driverType)
    , m_scheduler(&Scheduler::system())
    , m_connection(driverType)
    , m_lastInsert(m_connection.database())
    , m_flush(platform::flushFile)
{
    if (driverType == sqliteDriver)
        m_connection.database().setDatabaseName(path);
    m_rules.durability = SqliteFile::Durability::SoonAfter;
    m_rules.autoCheckpoint = false;
    m_rules.ownTables = ownTables();
}

DataBaseSql::~DataBaseSql()
{
    close();
}

bool DataBaseSql::open()
{
    if (m_connection.isOpen())
        return true;
    if (m_driverType != sqliteDriver)
        return m_connection.database().open();
    const QString reported = m_openReport.text;
    m_openReport = SqliteFile::openForWriting(m_connection, m_rules);
    // Opening is tried again and again while a disk is full or a folder is gone; that is logged once.
    if (!m_openReport.text.isEmpty() && m_openReport.text != reported)
        qWarning().noquote() << m_openReport.text;
    return m_openReport.open;
}

void DataBaseSql::close()
{
    m_keeper.reset();
    m_lastInsert = QSqlQuery(m_connection.database());
    m_connection.database().close();
}

bool DataBaseSql::needsReopening() const
{
    return SqliteFile::needsReopening(m_connection);
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
    QSqlQuery query =
        m_connection.exec(QStringLiteral("select name from sqlite_master where type='table' order by name;"));
    while (query.next())
        names << query.value(0).toString();
    return names;
}

/// MySQL is known by name only: its statement is a fixed one, kept as earlier versions had it.
bool DataBaseSql::createTable(const QString& table, const QString& keyColumn, const SqlValueMap& columns)
{
    if (m_driverType == mysqlDriver) {
        m_connection.exec(QStringLiteral("CREATE TABLE `testtable2` (`id` int(11) NOT NULL,`name` varchar(60) DEFAULT "
                                         "NULL,`age` int(11) DEFAULT NULL,PRIMARY KEY(`id`)) ENGINE = InnoDB DEFAULT "
                                         "CHARSET = utf8;"));
    } else {
        m_connection.exec(SqlBuilder::createTableSql(
            table, keyColumn, QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL"), columns));
    }
    return succeeded();
}

void DataBaseSql::ensureTable(const QStringList& present, const QString& table, const SqlValueMap& columns,
                              bool timeIndex)
{
    if (present.contains(table, Qt::CaseInsensitive))
        return;
    if (createTable(table, QStringLiteral("uid"), columns) && timeIndex)
        m_connection.exec(SqlBuilder::filled(QStringLiteral("CREATE INDEX %1 ON %2 (time COLLATE BINARY ASC); "),
                                             {QStringLiteral("idx_%1").arg(table), table}));
}

bool DataBaseSql::insert(const QString& table, const SqlValueMap& values)
{
    if (table.isEmpty() || values.isEmpty())
        return false;
    m_lastInsert = m_connection.exec(SqlBuilder::insertSql(table, values));
    if (succeeded())
        committed();
    return succeeded();
}

bool DataBaseSql::update(const QString& table, const SqlValueMap& values)
{
    if (table.isEmpty() || values.isEmpty())
        return false;
    m_connection.exec(QStringLiteral("select max(md_unique) from e_report_forms"));
    if (!succeeded())
        return false;
    m_connection.exec(SqlBuilder::updateSql(table, values, QStringLiteral("uid = '0'")));
    return succeeded();
}

bool DataBaseSql::clear(const QString& table, const QString& text)
{
    if (table.isEmpty() || text.isEmpty())
        return false;
    m_connection.exec(QStringLiteral("select max(") + QStringLiteral("uid") + QStringLiteral(") from ") + table);
    m_connection.exec(SqlBuilder::deleteSql(table, QString()));
    return succeeded();
}
