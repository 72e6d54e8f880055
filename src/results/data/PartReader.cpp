#include "results/data/PartReader.h"

#include "db/PartTable.h"
#include "db/SqliteFile.h"

#include <QFileInfo>
#include <QHash>
#include <QSqlError>
#include <QVarLengthArray>
#include <QVariant>

#include <limits>

namespace {

const char* const sortColumns[] = {"p.wall",     "p.station", "p.model",      "p.plc", "p.outcome",
                                   "p.error",    "p.angle",   "p.x",          "p.y",   "p.score",
                                   "p.reply_ms", "p.account", "p.calibration"};

/// In the order that rowOf() reads.
const char* const rowColumns = "p.uid, p.wall, p.station, p.model, p.plc, p.outcome, p.error, p.angle, p.x, p.y, "
                               "p.score, p.image_ms, p.result_ms, p.reply_ms, p.account, p.calibration, p.source, "
                               "r.resultTip, r.value1, r.value3";

double msOrNone(const QVariant& value)
{
    return value.isNull() ? -1 : value.toDouble();
}

double numberOrNaN(const QVariant& value)
{
    return value.isNull() ? std::numeric_limits<double>::quiet_NaN() : value.toDouble();
}

PartRow rowOf(const QSqlQuery& query, bool reviews)
{
    PartRow row;
    row.uid = query.value(0).toLongLong();
    row.wall = query.value(1).toLongLong();
    row.part.station = query.value(2).toInt();
    row.part.model = query.value(3).toString();
    row.part.plcIndex = query.value(4).toInt();
    row.part.outcome = PartOutcome(query.value(5).toInt());
    row.error = query.value(6).toInt();
    row.part.angle = query.value(7).toDouble();
    row.placed = !query.value(8).isNull();
    row.part.x = query.value(8).toDouble();
    row.part.y = query.value(9).toDouble();
    row.part.score = query.value(10).toDouble();
    row.part.imageMs = msOrNone(query.value(11));
    row.part.resultMs = msOrNone(query.value(12));
    row.part.replyMs = msOrNone(query.value(13));
    row.part.user = query.value(14).toString();
    row.part.calibration = query.value(15).toString();
    row.part.sourceImage = query.value(16).toString();
    row.tip = query.value(17).toString();
    row.resultImage = query.value(18).toString();
    row.evidence = query.value(19).toString();
    row.marked = reviews && query.value(20).toBool();
    row.comment = reviews ? query.value(21).toString() : QString();
    return row;
}

/// A series while it is read.
struct SeriesFilling
{
    PartSeries series;
    QHash<QString, int> models = {};

    void addModel(const QString& name)
    {
        const auto known = models.constFind(name);
        series.model.append(known == models.constEnd() ? series.models.size() : *known);
        if (known != models.constEnd())
            return;
        models.insert(name, series.models.size());
        series.models.append(name);
    }
};

struct SeriesColumn
{
    PartSeries::Column id;
    const char* name;
    void (*take)(SeriesFilling& filling, const QVariant& value);
};

const SeriesColumn seriesColumns[] = {
    {PartSeries::Uids, "uid", [](SeriesFilling& f, const QVariant& v) { f.series.uid.append(v.toLongLong()); }},
    {PartSeries::Stations, "station",
     [](SeriesFilling& f, const QVariant& v) { f.series.station.append(qint8(v.toInt())); }},
    {PartSeries::Errors, "error",
     [](SeriesFilling& f, const QVariant& v) { f.series.error.append(qint16(v.toInt())); }},
    {PartSeries::Models, "model", [](SeriesFilling& f, const QVariant& v) { f.addModel(v.toString()); }},
    {PartSeries::Angles, "angle", [](SeriesFilling& f, const QVariant& v) { f.series.angle.append(v.toDouble()); }},
    {PartSeries::Xs, "x", [](SeriesFilling& f, const QVariant& v) { f.series.x.append(numberOrNaN(v)); }},
    {PartSeries::Ys, "y", [](SeriesFilling& f, const QVariant& v) { f.series.y.append(numberOrNaN(v)); }},
    {PartSeries::Scores, "score", [](SeriesFilling& f, const QVariant& v) { f.series.score.append(v.toDouble()); }},
    {PartSeries::ReplyTimes, "reply_ms",
     [](SeriesFilling& f, const QVariant& v) { f.series.replyMs.append(numberOrNaN(v)); }},
};

QString sortingOf(PartReader::Column by, Qt::SortOrder order)
{
    const QString direction = order == Qt::AscendingOrder ? QStringLiteral(" ASC") : QStringLiteral(" DESC");
    const QString byTime = QStringLiteral("p.wall%1, p.uid%1").arg(direction);
    return by == PartReader::Time ? byTime : QLatin1String(sortColumns[by]) + direction + QStringLiteral(", ") + byTime;
}

} // namespace

PartReader::PartReader(QString home)
    : m_home(std::move(home))
    , m_connection(QStringLiteral("QSQLITE"))
{
}

QString PartReader::databaseOf(const QString& home)
{
    return home + QStringLiteral("/DBFiles/Pellix.db");
}

QString PartReader::reviewsOf(const QString& home)
{
    return home + QStringLiteral("/DBFiles/reviews.db");
}

bool PartReader::open()
{
    const QString path = databaseOf(m_home);
    m_connection.database().setDatabaseName(path);
    m_error.clear();
    if (!QFileInfo::exists(path)) {
        m_error = tr("这里还没有检测结果：%1 不存在").arg(path);
        return false;
    }
    if (!SqliteFile::openForReading(m_connection, &m_error, &m_frozen))
        return false;
    const bool there = m_connection.exec(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = 'RltTable'")).next();
    const bool newer = there && PartTable::isNewer(m_connection);
    if (!there || (!newer && !hasOwnColumns())) {
        m_error = tr("%1 中没有检测结果表，请选择本程序的工作目录").arg(path);
        return false;
    }
    if (newer) {
        m_error = tr("%1 由更新版本的程序写入，请用该版本查看").arg(path);
        return false;
    }
    m_source = PartTable::source(m_connection);
    attachReviews();
    return true;
}

/// Another program may have a table of that name.
bool PartReader::hasOwnColumns()
{
    m_connection.exec(QStringLiteral("SELECT uid, time, stationName, dAngle, errorType, matchScore, resultTip, value1, "
                                     "value2, value3 FROM RltTable LIMIT 0"));
    return !m_connection.failed();
}

/// A home that nobody reviewed has no such file, and a reader makes none.
void PartReader::attachReviews()
{
    const QString path = reviewsOf(m_home);
    if (!QFileInfo::exists(path))
        return;
    QSqlQuery attach(m_connection.database());
    attach.prepare(QStringLiteral("ATTACH ? AS reviews"));
    attach.addBindValue(path);
    m_reviews = m_connection.exec(attach) &&
                m_connection.exec(QStringLiteral("SELECT 1 FROM reviews.sqlite_master WHERE name = 'Review'")).next();
}

/// Bound values keep their order: from, to, station, model, text three times.
QString PartReader::from(const PartFilter& filter) const
{
    QStringList conditions;
    const auto when = [&conditions](bool set, const QString& condition) {
        if (set)
            conditions << condition;
    };
    when(filter.from.isValid(), QStringLiteral("p.wall >= ?"));
    when(filter.to.isValid(), QStringLiteral("p.wall < ?"));
    when(filter.station > 0, QStringLiteral("p.station = ?"));
    // In a step of a search, it is the time by which the rows are found.
    const QString plain = filter.before > 0 ? QStringLiteral("+") : QString();
    when(!filter.model.isEmpty(), plain + QStringLiteral("p.model = ?"));
    const bool all = filter.found && filter.notFound && filter.refused;
    QStringList outcomes;
    for (const auto& [on, outcome] :
         {std::pair(filter.found, PartOutcome::Found), std::pair(filter.notFound, PartOutcome::NotFound),
          std::pair(filter.refused, PartOutcome::Refused)}) {
        if (on)
            outcomes << QString::number(int(outcome));
    }
    when(!all, plain + QStringLiteral("p.outcome IN (%1)").arg(outcomes.join(QLatin1Char(','))));
    when(!filter.text.isEmpty(), QStringLiteral("(p.model LIKE ? ESCAPE '\\' OR p.account LIKE ? ESCAPE '\\' OR "
                                                "r.resultTip LIKE ? ESCAPE '\\')"));
    when(filter.pictured, QStringLiteral("(p.source <> '' OR r.value1 <> '')"));
    when(filter.since > 0, QStringLiteral("p.wall >= %1").arg(filter.since));
    when(filter.before > 0, QStringLiteral("p.wall < %1").arg(filter.before));
    when(filter.upTo > 0, QStringLiteral("p.uid <= %1").arg(filter.upTo));
    when(filter.markedOnly, m_reviews ? QStringLiteral("v.mark") : QStringLiteral("0"));
    QString text = QStringLiteral(" FROM %1 p").arg(m_source);
    if (!filter.text.isEmpty() || filter.pictured)
        text += QStringLiteral(" LEFT JOIN RltTable r ON r.uid = p.uid");
    if (m_reviews && filter.markedOnly)
        text += QStringLiteral(" JOIN reviews.Review v ON v.wall = p.wall AND v.uid = p.uid");
    return conditions.isEmpty() ? text : text + QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
}

bool PartReader::isTable() const
{
    return m_source == QLatin1String("PartTable");
}

QSqlQuery PartReader::run(const QString& sql, const PartFilter& filter)
{
    QSqlQuery query(m_connection.database());
    query.setForwardOnly(true);
    query.prepare(sql);
    if (filter.from.isValid())
        query.addBindValue(PartTable::wallOf(filter.from));
    if (filter.to.isValid())
        query.addBindValue(PartTable::wallOf(filter.to));
    if (filter.station > 0)
        query.addBindValue(filter.station);
    if (!filter.model.isEmpty())
        query.addBindValue(filter.model);
    if (!filter.text.isEmpty()) {
        QString pattern = filter.text;
        for (const char* special : {"\\", "%", "_"})
            pattern.replace(QLatin1String(special), QLatin1String("\\") + QLatin1String(special));
        for (int i = 0; i < 3; ++i)
            query.addBindValue(QLatin1Char('%') + pattern + QLatin1Char('%'));
    }
    m_error.clear();
    if (!m_connection.exec(query))
        m_error = SqliteFile::describe(m_connection, QStringLiteral("SELECT"));
    return query;
}

/// Damage may show only after some rows, which are not all then.
void PartReader::noteEnd(const QSqlQuery& query)
{
    if (m_error.isEmpty() && query.lastError().isValid())
        m_error = databaseOf(m_home) + QStringLiteral(": ") + query.lastError().text().simplified();
}

qint64 PartReader::lastRow()
{
    QSqlQuery query = run(QStringLiteral("SELECT max(uid) FROM RltTable"));
    return query.next() ? query.value(0).toLongLong() : 0;
}

int PartReader::count(const PartFilter& filter)
{
    QSqlQuery query = run(QStringLiteral("SELECT count(*)") + from(filter), filter);
    return query.next() ? query.value(0).toInt() : 0;
}

QString PartReader::wholeRows(const QString& parts) const
{
    QString sql =
        QStringLiteral("SELECT %1%2 FROM %3 p LEFT JOIN RltTable r ON r.uid = p.uid")
            .arg(QLatin1String(rowColumns), m_reviews ? QStringLiteral(", v.mark, v.comment") : QString(), parts);
    if (m_reviews)
        sql += QStringLiteral(" LEFT JOIN reviews.Review v ON v.wall = p.wall AND v.uid = p.uid");
    return sql;
}

/// The page's keys first, which an index mostly holds by itself: only its own rows are looked up in the tables.
QVector<PartRow> PartReader::rows(const PartFilter& filter, Column by, Qt::SortOrder order, int limit, int offset)
{
    const QString sorting = sortingOf(by, order);
    const QString page =
        QStringLiteral("(SELECT %1%2 ORDER BY %3 LIMIT %4 OFFSET %5)")
            .arg(isTable() ? QStringLiteral("p.wall AS keyWall, p.uid AS keyUid") : QStringLiteral("p.*"), from(filter),
                 sorting, QString::number(limit), QString::number(offset));
    const QString parts = isTable() ? wholeRows(page + QStringLiteral(" CROSS JOIN PartTable")) +
                                          QStringLiteral(" WHERE p.wall = keyWall AND p.uid = keyUid")
                                    : wholeRows(page);
    QVector<PartRow> rows;
    QSqlQuery query = run(parts + QStringLiteral(" ORDER BY ") + sorting, filter);
    while (query.next())
        rows.append(rowOf(query, m_reviews));
    noteEnd(query);
    return rows;
}

void PartReader::goOn(Search<PartRow>& search, const PartFilter& filter, int limit, int ms)
{
    search.goOn(limit, ms, [&] { searchSlice(search, filter, limit); });
}

/// Parts that are not filled in yet are no table that could be cut.
void PartReader::searchSlice(Search<PartRow>& search, const PartFilter& filter, int limit)
{
    PartFilter slice = filter;
    const auto ends = span();
    const qint64 oldest = filter.from.isValid() ? PartTable::wallOf(filter.from) : PartTable::wallOf(ends.first);
    const qint64 newest = filter.to.isValid() ? PartTable::wallOf(filter.to) : PartTable::wallOf(ends.second) + 1;
    slice.before = search.before.isNull() ? newest : search.before.toLongLong();
    QSqlQuery next = run(QStringLiteral("SELECT wall FROM PartTable WHERE wall >= %1 AND wall < %2 ORDER BY wall DESC "
                                        "LIMIT 1 OFFSET %3")
                             .arg(oldest)
                             .arg(slice.before)
                             .arg(search.rowsASlice));
    search.ended = !isTable() || !next.next();
    if (!search.ended) {
        slice.since = next.value(0).toLongLong();
        search.before = slice.since;
        search.percent = int(qBound<qint64>(0, 100 * (newest - slice.since) / qMax<qint64>(1, newest - oldest), 99));
    }
    next.finish();
    search.rows += rows(slice, Time, Qt::DescendingOrder, limit - search.rows.size(), 0);
    search.ended = search.ended || !m_error.isEmpty();
}

bool PartReader::each(const PartFilter& filter, Column by, Qt::SortOrder order,
                      const std::function<bool(const PartRow&)>& take)
{
    const QString parts = QStringLiteral("(SELECT p.*%1)").arg(from(filter));
    QSqlQuery query = run(wholeRows(parts) + QStringLiteral(" ORDER BY ") + sortingOf(by, order), filter);
    while (query.next()) {
        if (!take(rowOf(query, m_reviews)))
            return true;
    }
    noteEnd(query);
    return m_error.isEmpty();
}

std::optional<PartRow> PartReader::row(qint64 uid)
{
    QSqlQuery query = run(wholeRows(m_source) + QStringLiteral(" WHERE p.uid = %1").arg(uid));
    return query.next() ? std::optional(rowOf(query, m_reviews)) : std::nullopt;
}

std::optional<PartRow> PartReader::partAt(int station, qint64 wall)
{
    PartFilter filter;
    filter.station = station;
    filter.from = PartTable::timeOf(wall);
    filter.to = PartTable::timeOf(wall + 1);
    const QVector<PartRow> found = rows(filter, Time, Qt::DescendingOrder, 1, 0);
    return found.isEmpty() ? std::nullopt : std::optional(found.first());
}

QVector<PartRow> PartReader::last(const PartFilter& filter, int count)
{
    const QString page = QStringLiteral("(SELECT p.*%1 ORDER BY p.uid DESC LIMIT %2)").arg(from(filter)).arg(count);
    QVector<PartRow> rows;
    for (QSqlQuery query = run(wholeRows(page) + QStringLiteral(" ORDER BY p.uid"), filter); query.next();)
        rows.append(rowOf(query, m_reviews));
    return rows;
}

PartSeries PartReader::series(const PartFilter& filter, PartSeries::Columns columns, const std::function<bool()>& goOn)
{
    constexpr int rowsBetweenQuestions = 4096;
    SeriesFilling filling;
    QVarLengthArray<const SeriesColumn*, 16> wanted;
    QString names = QStringLiteral("p.wall, p.outcome");
    for (const SeriesColumn& column : seriesColumns) {
        if (!columns.testFlag(column.id))
            continue;
        wanted.append(&column);
        names += QLatin1String(", p.") + QLatin1String(column.name);
    }
    PartSeries& series = filling.series;
    QSqlQuery query =
        run(QStringLiteral("SELECT ") + names + from(filter) + QStringLiteral(" ORDER BY p.wall, p.uid"), filter);
    while (query.next()) {
        series.wall.append(query.value(0).toLongLong());
        series.outcome.append(qint8(query.value(1).toInt()));
        for (int i = 0; i < wanted.size(); ++i)
            wanted[i]->take(filling, query.value(2 + i));
        if (goOn && series.size() % rowsBetweenQuestions == 0 && !goOn())
            return series;
    }
    noteEnd(query);
    return series;
}

/// From name to name, which an index answers without reading all rows.
QStringList PartReader::models()
{
    QStringList names;
    QSqlQuery query =
        run(QStringLiteral(
                "WITH RECURSIVE names(name) AS (SELECT (SELECT min(model) FROM %1) UNION ALL SELECT (SELECT min(model) "
                "FROM %1 "
                "WHERE model > name) FROM names WHERE name IS NOT NULL) SELECT name FROM names WHERE name IS NOT NULL")
                .arg(m_source));
    while (query.next())
        names << query.value(0).toString();
    return names;
}

QPair<QDateTime, QDateTime> PartReader::span()
{
    QPair<QDateTime, QDateTime> span;
    QSqlQuery query =
        run(QStringLiteral("SELECT (SELECT min(wall) FROM %1), (SELECT max(wall) FROM %1)").arg(m_source));
    if (query.next() && !query.value(0).isNull())
        span = {PartTable::timeOf(query.value(0).toLongLong()), PartTable::timeOf(query.value(1).toLongLong())};
    return span;
}
