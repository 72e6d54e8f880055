#include "results/data/LogReader.h"

#include "db/SqliteFile.h"
#include "db/log/ChangeLine.h"

#include <QDateTime>
#include <QFileInfo>
#include <QSqlError>
#include <QVariant>

namespace {

QString likePattern(QString text)
{
    for (const char* special : {"\\", "%", "_"})
        text.replace(QLatin1String(special), QLatin1String("\\") + QLatin1String(special));
    return QLatin1Char('%') + text + QLatin1Char('%');
}

} // namespace

LogRow LogRow::of(qint64 id, const QString& time, int level, const QString& message)
{
    LogRow row{id, time, level, SystemLog::withoutTime(message), false, {}, {}, {}, {}};
    const std::optional<SystemLog::ChangeLine> change = SystemLog::ChangeLine::of(row.message);
    row.isChange = change.has_value();
    if (change)
        std::tie(row.name, row.before, row.after, row.user) =
            std::tie(change->name, change->before, change->after, change->user);
    return row;
}

LogReader::LogReader(QString home)
    : m_home(std::move(home))
    , m_connection(QStringLiteral("QSQLITE"))
{
}

bool LogReader::open()
{
    const QString path = databaseOf(m_home);
    m_connection.database().setDatabaseName(path);
    m_error.clear();
    if (!QFileInfo::exists(path)) {
        m_error = tr("这里还没有系统日志：%1 不存在").arg(path);
        return false;
    }
    if (!SqliteFile::openForReading(m_connection, &m_error, &m_frozen))
        return false;
    m_connection.exec(QStringLiteral("SELECT id, datetime, type, message FROM SystemInfo LIMIT 0"));
    if (!m_connection.failed())
        return true;
    m_error = tr("%1 中没有系统日志表，请选择本程序的工作目录").arg(path);
    return false;
}

QSqlQuery LogReader::run(const QString& columns, const LogFilter& filter, const QString& end)
{
    QStringList conditions;
    QVariantList values;
    const auto when = [&](bool set, const QString& condition, const QVariant& value) {
        if (!set)
            return;
        conditions << condition;
        values << value;
    };
    const auto dayText = [](QDate day) { return day.toString(QStringLiteral("yyyy-MM-dd")); };
    when(filter.from.isValid(), QStringLiteral("datetime >= ?"), dayText(filter.from));
    when(filter.to.isValid(), QStringLiteral("datetime < ?"), dayText(filter.to.addDays(1)));
    when(filter.worst > 0, QStringLiteral("type >= ?"), filter.worst);
    when(filter.least < 4, QStringLiteral("type <= ?"), filter.least);
    when(filter.changesOnly, QStringLiteral("message LIKE ? ESCAPE '\\'"), likePattern(SystemLog::ChangeLine::prefix));
    when(!filter.text.isEmpty(), QStringLiteral("message LIKE ? ESCAPE '\\'"), likePattern(filter.text));
    when(!filter.user.isEmpty(), QStringLiteral("message LIKE ? ESCAPE '\\'"),
         likePattern(SystemLog::ChangeLine::userMark + filter.user));
    const QString cut = filter.byArrival ? QStringLiteral("id") : QStringLiteral("datetime");
    const auto place = [&filter](const QString& text) {
        return filter.byArrival ? QVariant(text.toLongLong()) : QVariant(text);
    };
    when(!filter.since.isEmpty(), cut + QStringLiteral(" >= ?"), place(filter.since));
    when(!filter.before.isEmpty(), cut + QStringLiteral(" < ?"), place(filter.before));
    when(filter.upTo > 0, QStringLiteral("id <= ?"), filter.upTo);
    QString sql = QStringLiteral("SELECT ") + columns + QStringLiteral(" FROM SystemInfo");
    if (!conditions.isEmpty())
        sql += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
    QSqlQuery query(m_connection.database());
    query.setForwardOnly(true);
    query.prepare(sql + end);
    for (const QVariant& value : qAsConst(values))
        query.addBindValue(value);
    m_error.clear();
    if (!m_connection.exec(query))
        m_error = SqliteFile::describe(m_connection, QStringLiteral("SELECT"));
    return query;
}

void LogReader::noteEnd(const QSqlQuery& query)
{
    if (m_error.isEmpty() && query.lastError().isValid())
        m_error = databaseOf(m_home) + QStringLiteral(": ") + query.lastError().text().simplified();
}

qint64 LogReader::lastRow()
{
    QSqlQuery query = run(QStringLiteral("max(id)"), {}, {});
    return query.next() ? query.value(0).toLongLong() : 0;
}

int LogReader::count(const LogFilter& filter)
{
    QSqlQuery query = run(QStringLiteral("count(*)"), filter, {});
    return query.next() ? query.value(0).toInt() : 0;
}

QVector<LogRow> LogReader::lines(const LogFilter& filter, int limit, int offset)
{
    QVector<LogRow> rows;
    QSqlQuery query = run(QStringLiteral("id, datetime, type, message"), filter,
                          QStringLiteral(" ORDER BY %1id DESC LIMIT %2 OFFSET %3")
                              .arg(filter.byArrival ? QString() : QStringLiteral("datetime DESC, "))
                              .arg(limit)
                              .arg(offset));
    while (query.next())
        rows.append(LogRow::of(query.value(0).toLongLong(), query.value(1).toString(), query.value(2).toInt(),
                               query.value(3).toString()));
    noteEnd(query);
    return rows;
}

void LogReader::goOn(Search<LogRow>& search, const LogFilter& filter, int limit, int ms)
{
    search.goOn(limit, ms, [&] { searchSlice(search, filter, limit); });
}

/// The slices are cut by the days alone, whatever else is asked for.
void LogReader::searchSlice(Search<LogRow>& search, const LogFilter& filter, int limit)
{
    LogFilter cuts;
    cuts.byArrival = filter.byArrival;
    cuts.upTo = filter.upTo;
    cuts.before = search.before.toString();
    if (!filter.byArrival) {
        cuts.from = filter.from;
        cuts.to = filter.to;
    }
    const QString by = filter.byArrival ? QStringLiteral("id") : QStringLiteral("datetime");
    LogFilter slice = filter;
    slice.before = cuts.before;
    QSqlQuery next =
        run(by, cuts, QStringLiteral(" ORDER BY %1 DESC LIMIT 1 OFFSET %2").arg(by).arg(search.rowsASlice));
    search.ended = !next.next();
    if (!search.ended) {
        search.before = slice.since = next.value(0).toString();
        search.percent = shareSearched(cuts, by, slice.since);
    }
    next.finish();
    search.rows += lines(slice, limit - search.rows.size(), 0);
    search.ended = search.ended || !m_error.isEmpty();
}

int LogReader::shareSearched(const LogFilter& cuts, const QString& by, const QString& reached)
{
    LogFilter all = cuts;
    all.before.clear();
    const auto placeOf = [&cuts](const QString& text) {
        return cuts.byArrival ? text.toLongLong()
                              : QDateTime::fromString(text, QStringLiteral("yyyy-MM-dd hh:mm:ss")).toSecsSinceEpoch();
    };
    const auto end = [&](const char* direction) {
        QSqlQuery query = run(by, all, QStringLiteral(" ORDER BY %1 %2 LIMIT 1").arg(by, QLatin1String(direction)));
        return query.next() ? placeOf(query.value(0).toString()) : 0;
    };
    const qint64 newest = end("DESC");
    const qint64 oldest = end("ASC");
    return int(qBound<qint64>(0, 100 * (newest - placeOf(reached)) / qMax<qint64>(1, newest - oldest), 99));
}

bool LogReader::each(const LogFilter& filter, Qt::SortOrder order, const std::function<bool(const LogRow&)>& take)
{
    const QString direction = order == Qt::AscendingOrder ? QStringLiteral("ASC") : QStringLiteral("DESC");
    QSqlQuery query = run(QStringLiteral("id, datetime, type, message"), filter,
                          QStringLiteral(" ORDER BY datetime %1, id %1").arg(direction));
    while (query.next()) {
        if (!take(LogRow::of(query.value(0).toLongLong(), query.value(1).toString(), query.value(2).toInt(),
                             query.value(3).toString())))
            return true;
    }
    noteEnd(query);
    return m_error.isEmpty();
}

QVector<LogRow> LogReader::changes(const QDateTime& from, const QDateTime& to, const QStringList& names, int limit)
{
    LogFilter filter;
    filter.from = from.date();
    filter.to = to.date();
    filter.changesOnly = true;
    const QString first = from.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    const QString last = to.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    QVector<LogRow> rows;
    QSqlQuery query =
        run(QStringLiteral("id, datetime, type, message"), filter, QStringLiteral(" ORDER BY datetime, id"));
    while (query.next() && rows.size() < limit) {
        const LogRow row = LogRow::of(query.value(0).toLongLong(), query.value(1).toString(), query.value(2).toInt(),
                                      query.value(3).toString());
        const bool named =
            std::any_of(names.begin(), names.end(), [&row](const QString& name) { return row.name.startsWith(name); });
        if (row.isChange && named && row.time >= first && row.time < last)
            rows.append(row);
    }
    return rows;
}
