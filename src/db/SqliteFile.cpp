#include "db/SqliteFile.h"

#include <valvecell/HomeFiles.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace SqliteFile {
namespace {

// SQLite's primary result codes.
constexpr int codeError = 1; // the statement does not fit the file
constexpr int codeReadOnly = 8;
constexpr int codeCorrupt = 11;
constexpr int codeCannotOpen = 14;
constexpr int codeNotADatabase = 26;

/// Marks a file as ours ("VCel"), so that another program's file is known even when its tables have our names.
constexpr int applicationId = 0x5643656c;

/// What lies beside a file while it is in use.
constexpr const char* logTails[] = {"-wal", "-shm", "-journal"};

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(SqliteFile)
};

struct Verdict
{
    enum State { Usable, Damaged, ReadOnly, CannotOpen };
    State state = Usable;
    QString reason;

    bool isUnfit() const { return state == Damaged || state == ReadOnly; }
};

/// The part of a file's log that this user may not write; empty when there is none. SQLite calls the file itself
/// read-only then.
QString lockedLog(const QString& path)
{
    for (const char* tail : logTails) {
        const QFileInfo log(path + QLatin1String(tail));
        if (log.exists() && !log.isWritable())
            return log.filePath();
    }
    return {};
}

/// Damaged or read-only is only what a fresh file mends; whatever else it is (locked, no rights, no space) may pass by
/// itself.
Verdict verdictOf(const SqlConnection& connection)
{
    const QString reason = connection.lastError().text().simplified();
    const int code = connection.lastCode();
    if (code == codeCorrupt || code == codeNotADatabase)
        return {Verdict::Damaged, Texts::tr("文件已损坏：%1").arg(reason)};
    if (code != codeReadOnly && code != codeCannotOpen)
        return {Verdict::CannotOpen, reason};
    if (const QString log = lockedLog(connection.database().databaseName()); !log.isEmpty())
        return {Verdict::CannotOpen, Texts::tr("没有权限写入文件%1，请恢复写权限").arg(log)};
    if (code == codeReadOnly)
        return {Verdict::ReadOnly, Texts::tr("文件只读：%1").arg(reason)};
    return {Verdict::CannotOpen, reason};
}

bool isUnfit(const SqlConnection& connection)
{
    return verdictOf(connection).isUnfit();
}

QVariant firstValue(SqlConnection& connection, const QString& sql)
{
    QSqlQuery query = connection.exec(sql);
    return query.next() ? query.value(0) : QVariant();
}

/// Those of others as well, but not SQLite's own.
QStringList tableNames(SqlConnection& connection)
{
    QStringList names;
    QSqlQuery query = connection.exec(
        QStringLiteral("select name from sqlite_master where type='table' and name not like 'sqlite_%'"));
    while (query.next())
        names << query.value(0).toString();
    return names;
}

bool isComplete(SqlConnection& connection, const OwnTable& table)
{
    const QString columns = table.columns.isEmpty() ? QStringLiteral("1") : table.columns.join(QLatin1Char(','));
    connection.exec(QStringLiteral("select %1 from %2 limit 0").arg(columns, table.name));
    return !connection.failed();
}

/// Reads the end of the table, where the next row goes, so that damage there shows at start-up.
bool isReadable(SqlConnection& connection, const OwnTable& table)
{
    firstValue(connection, QStringLiteral("select rowid from %1 order by rowid desc limit 1").arg(table.name));
    return !isUnfit(connection);
}

/// Whether a table can be read comes first: a damaged file would otherwise pass for another program's.
Verdict examineTables(SqlConnection& connection, const QVector<OwnTable>& ownTables)
{
    const QStringList present = tableNames(connection);
    if (connection.failed())
        return verdictOf(connection);
    bool foreign = !present.isEmpty() && !ownTables.isEmpty();
    for (const OwnTable& table : ownTables) {
        if (!present.contains(table.name, Qt::CaseInsensitive))
            continue;
        if (!isReadable(connection, table))
            return verdictOf(connection);
        const bool complete = isComplete(connection, table);
        if (!complete && connection.lastCode() != codeError)
            return verdictOf(connection);
        if (!complete)
            return {Verdict::Damaged,
                    Texts::tr("表%1不是本系统的：%2").arg(table.name, connection.lastError().text().simplified())};
        foreign = false;
    }
    if (foreign)
        return {Verdict::Damaged,
                Texts::tr("文件属于其他程序，含有表：%1").arg(present.mid(0, 5).join(QStringLiteral(", ")))};
    return {};
}

/// The application's mark: none is taken for ours and is set, since files of earlier versions carry none.
Verdict examineMark(SqlConnection& connection)
{
    const int mark = firstValue(connection, QStringLiteral("PRAGMA application_id")).toInt();
    if (connection.failed())
        return verdictOf(connection);
    if (mark != 0 && mark != applicationId)
        return {Verdict::Damaged, Texts::tr("文件属于其他程序（标识%1）").arg(mark)};
    return {};
}

/// True when the file can be written, or only another program's writing forbids it for the moment.
bool isWritable(SqlConnection& connection)
{
    connection.exec(QStringLiteral("BEGIN IMMEDIATE"));
    if (!connection.failed())
        connection.exec(QStringLiteral("ROLLBACK"));
    return connection.lastCode() != codeReadOnly;
}

void setPragmas(SqlConnection& connection, const OpenRules& rules)
{
    const bool full = rules.durability == Durability::BeforeReturn;
    connection.exec(
        QStringLiteral("PRAGMA synchronous=%1").arg(full ? QStringLiteral("FULL") : QStringLiteral("NORMAL")));
    connection.exec(QStringLiteral("PRAGMA wal_autocheckpoint=%1").arg(rules.autoCheckpoint ? 1000 : 0));
    // A log that a long-lived reader made grow shrinks again.
    connection.exec(QStringLiteral("PRAGMA journal_size_limit=16777216"));
}

Verdict openConnection(SqlConnection& connection, const OpenRules& rules)
{
    QSqlDatabase& database = connection.database();
    const QFileInfo file(database.databaseName());
    if (!QDir().mkpath(file.absolutePath()))
        return {Verdict::CannotOpen, Texts::tr("不能创建文件夹%1").arg(file.absolutePath())};
    database.setConnectOptions(
        QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(rules.waitWhileOpening ? rules.busyMs : 0));
    if (!database.open())
        return {Verdict::CannotOpen, database.lastError().text().simplified()};
    return {};
}

/// Looks before it writes: journal mode and pragmas change a file, and another program's is left as it is.
Verdict tryOpening(SqlConnection& connection, const OpenRules& rules)
{
    Verdict verdict = openConnection(connection, rules);
    if (verdict.state == Verdict::Usable)
        verdict = examineMark(connection);
    if (verdict.state == Verdict::Usable)
        verdict = examineTables(connection, rules.ownTables);
    if (verdict.state != Verdict::Usable)
        return verdict;
    connection.exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    if (connection.failed() || !isWritable(connection))
        return verdictOf(connection);
    setPragmas(connection, rules);
    if (firstValue(connection, QStringLiteral("PRAGMA application_id")).toInt() == 0)
        connection.exec(QStringLiteral("PRAGMA application_id=%1").arg(applicationId));
    if (rules.createTables && !rules.createTables(connection))
        return verdictOf(connection);
    connection.exec(QStringLiteral("PRAGMA busy_timeout=%1").arg(rules.busyMs));
    return {};
}

/// As tryOpening(), and leaves no connection open that cannot be used.
Verdict open(SqlConnection& connection, const OpenRules& rules)
{
    connection.database().close();
    Verdict verdict = tryOpening(connection, rules);
    if (verdict.state != Verdict::Usable)
        connection.database().close();
    if (verdict.state == Verdict::ReadOnly && !rules.replaceReadOnly)
        verdict.state = Verdict::CannotOpen;
    return verdict;
}

/// Renames the file and the parts of its log that may lie beside it: a log left behind would be taken for the new
/// file's.
QString keepAside(const QString& path, bool readOnly)
{
    QString aside = HomeFiles::keepAside(path, readOnly ? QStringLiteral("readonly") : QStringLiteral("damaged"));
    if (!aside.isEmpty()) {
        for (const char* tail : logTails)
            QFile::rename(path + QLatin1String(tail), aside + QLatin1String(tail));
    }
    return aside;
}

} // namespace

QString logPath(const QString& path)
{
    return path + QLatin1String(logTails[0]);
}

void keepLogAside(const QString& path)
{
    for (const char* tail : logTails)
        HomeFiles::keepAside(path + QLatin1String(tail), QStringLiteral("replaced"));
}

/// A file that cannot be renamed stays, and nothing is recorded: data is never overwritten.
OpenReport beginFresh(SqlConnection& connection, const OpenRules& rules, const Unfit& unfit)
{
    const QString path = connection.database().databaseName();
    const QString& reason = unfit.reason;
    connection.database().close();
    OpenReport report;
    report.keptAside = keepAside(path, unfit.readOnly);
    if (report.keptAside.isEmpty()) {
        report.text = Texts::tr("数据库%1不能使用（%2），且不能改名保留，暂不记录。").arg(path, reason);
        return report;
    }
    const Verdict verdict = open(connection, rules);
    report.open = verdict.state == Verdict::Usable;
    report.text =
        report.open ? Texts::tr("数据库%1不能使用（%2），原文件保留为%3，已新建。").arg(path, reason, report.keptAside)
                    : Texts::tr("数据库%1不能使用（%2），原文件保留为%3，新建失败：%4")
                          .arg(path, reason, report.keptAside, verdict.reason);
    return report;
}

OpenReport openForWriting(SqlConnection& connection, const OpenRules& rules)
{
    const Verdict verdict = open(connection, rules);
    if (verdict.state == Verdict::Usable)
        return {true, QString(), QString()};
    if (verdict.isUnfit())
        return beginFresh(connection, rules, {verdict.reason, verdict.state == Verdict::ReadOnly});
    OpenReport report;
    report.text = Texts::tr("数据库%1不能打开：%2").arg(connection.database().databaseName(), verdict.reason);
    return report;
}

Unfit whyUnfit(const SqlConnection& connection, const OpenRules& rules)
{
    const Verdict verdict = verdictOf(connection);
    const bool readOnly = verdict.state == Verdict::ReadOnly;
    if (!verdict.isUnfit() || (readOnly && !rules.replaceReadOnly))
        return {};
    return {verdict.reason, readOnly};
}

namespace {

/// Opening reads nothing yet, so a query has to show that this is a database.
bool canRead(SqlConnection& connection, const QString& name, const QString& options)
{
    QSqlDatabase& database = connection.database();
    database.close();
    database.setDatabaseName(name);
    database.setConnectOptions(options);
    if (!database.open())
        return false;
    connection.exec(QStringLiteral("select 1 from sqlite_master limit 1"));
    return !connection.failed();
}

bool hasLog(const QString& path)
{
    const QFileInfo log(path + QStringLiteral("-wal"));
    return log.isFile() && log.size() > 0;
}

/// A log needs a file beside it that all who read it share; without that, nothing may be in the log.
bool canReadFrozen(SqlConnection& connection, const QString& path)
{
    const int code = connection.lastCode();
    if ((code != codeReadOnly && code != codeCannotOpen) || hasLog(path))
        return false;
    QUrl uri = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    uri.setQuery(QStringLiteral("immutable=1"));
    return canRead(connection, uri.toString(QUrl::FullyEncoded),
                   QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
}

QString whyUnreadable(const SqlConnection& connection, const QString& path)
{
    const bool open = connection.isOpen();
    const QString reason = (open ? connection.lastError() : connection.database().lastError()).text().simplified();
    const int code = connection.lastCode();
    if (open && (code == codeCorrupt || code == codeNotADatabase))
        return Texts::tr("数据库%1已损坏，请打开备份：%2").arg(path, reason);
    if (hasLog(path) && (code == codeReadOnly || code == codeCannotOpen))
        return Texts::tr("数据库%1所在的文件夹不能写入，而其日志%1-wal中还有记录，请把整个文件夹复制到可写的位置再打开")
            .arg(path);
    return Texts::tr("数据库%1不能打开：%2").arg(path, reason);
}

} // namespace

bool openForReading(SqlConnection& connection, QString* error, bool* frozen)
{
    QSqlDatabase& database = connection.database();
    const QString path = database.databaseName();
    bool open = canRead(connection, path, QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=250"));
    const bool asItStands = !open && canReadFrozen(connection, path);
    open = open || asItStands;
    if (frozen)
        *frozen = asItStands;
    if (!open && error)
        *error = whyUnreadable(connection, path);
    if (!open)
        database.close();
    database.setDatabaseName(path); // what is said of it
    return open;
}

bool needsReopening(const SqlConnection& connection)
{
    return !connection.isOpen() || isUnfit(connection);
}

QString describe(const SqlConnection& connection, const QString& what)
{
    return Texts::tr("数据库%1，%2失败：%3")
        .arg(connection.database().databaseName(), what, connection.lastError().text().simplified());
}

} // namespace SqliteFile
