#include "SimStore.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace {

void must(QSqlQuery& query, bool good)
{
    if (!good)
        qFatal("plantsim: %s", qUtf8Printable(query.lastError().text()));
}

QSqlQuery executed(const QString& text, const QVariantList& values)
{
    QSqlQuery query;
    must(query, query.prepare(text));
    for (const QVariant& value : values)
        query.addBindValue(value);
    must(query, query.exec());
    return query;
}

} // namespace

SimStore::SimStore(const QString& file)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setDatabaseName(file);
    if (!database.open())
        qFatal("plantsim: %s: %s", qUtf8Printable(file), qUtf8Printable(database.lastError().text()));
    run("PRAGMA journal_mode = WAL");
    run("PRAGMA synchronous = NORMAL");
    run("CREATE TABLE IF NOT EXISTS cell (cell INTEGER PRIMARY KEY, cell_id TEXT, epoch TEXT, bd_seq INTEGER, "
        "sent0 INTEGER, sent1 INTEGER)");
    run("CREATE TABLE IF NOT EXISTS row (cell INTEGER, stream INTEGER, row INTEGER, created INTEGER, "
        "PRIMARY KEY (cell, stream, row)) WITHOUT ROWID");
}

void SimStore::run(const char* statement)
{
    QSqlQuery query;
    must(query, query.exec(QLatin1String(statement)));
}

SimStore::Cell SimStore::begin(int number)
{
    const auto id = [] { return QUuid::createUuid().toString(QUuid::WithoutBraces); };
    executed(QStringLiteral("INSERT OR IGNORE INTO cell VALUES (?, ?, ?, 0, 0, 0)"), {number, id(), id()});
    executed(QStringLiteral("UPDATE cell SET bd_seq = bd_seq + 1 WHERE cell = ?"), {number});
    QSqlQuery found =
        executed(QStringLiteral("SELECT cell_id, epoch, bd_seq, sent0, sent1 FROM cell WHERE cell = ?"), {number});
    found.next();
    Cell cell{found.value(0).toString(),
              found.value(1).toString(),
              found.value(2).toLongLong(),
              {found.value(3).toLongLong(), found.value(4).toLongLong()},
              {}};
    for (const int stream : {0, 1}) {
        QSqlQuery last =
            executed(QStringLiteral("SELECT max(row) FROM row WHERE cell = ? AND stream = ?"), {number, stream});
        cell.last[stream] = last.next() ? last.value(0).toLongLong() : 0;
    }
    return cell;
}

void SimStore::add(int cell, int stream, const Row& row)
{
    if (!m_open)
        run("BEGIN");
    m_open = true;
    executed(QStringLiteral("INSERT INTO row VALUES (?, ?, ?, ?)"), {cell, stream, row.row, row.created});
}

void SimStore::setSent(int cell, int stream, qint64 sent)
{
    if (!m_open)
        run("BEGIN");
    m_open = true;
    executed(QStringLiteral("UPDATE cell SET sent%1 = ? WHERE cell = ?").arg(stream), {sent, cell});
}

QVector<SimStore::Row> SimStore::rows(int cell, int stream, qint64 after, qint64 upTo, int count) const
{
    QSqlQuery query = executed(QStringLiteral("SELECT row, created FROM row WHERE cell = ? AND stream = ? AND row > ? "
                                              "AND row <= ? ORDER BY row LIMIT ?"),
                               {cell, stream, after, upTo, count});
    QVector<Row> rows;
    while (query.next())
        rows.append({query.value(0).toLongLong(), query.value(1).toLongLong()});
    return rows;
}

QStringList SimStore::balance() const
{
    QSqlQuery query = executed(QStringLiteral("SELECT c.cell_id, CASE r.stream WHEN 0 THEN 'parts' ELSE 'log' END, "
                                              "count(*), count(DISTINCT r.row), max(r.row) FROM row AS r "
                                              "JOIN cell AS c ON c.cell = r.cell GROUP BY 1, 2"),
                               {});
    QStringList lines;
    while (query.next()) {
        QStringList fields;
        for (int i = 0; i < 5; ++i)
            fields << query.value(i).toString();
        lines << fields.join(QLatin1Char('|'));
    }
    return lines;
}

void SimStore::commit()
{
    if (m_open)
        run("COMMIT");
    m_open = false;
}
