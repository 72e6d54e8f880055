#include "forward/RowSource.h"

#include "db/PartTable.h"
#include "db/SqliteFile.h"
#include "db/log/ChangeLine.h"
#include "db/log/LogLine.h"
#include "platform/System.h"

#include <QDateTime>
#include <QFileInfo>
#include <QVariant>

namespace {

constexpr int longestText = 8192;

std::optional<double> numberIn(const QSqlQuery& query, int column)
{
    const QVariant value = query.value(column);
    return value.isNull() ? std::nullopt : std::optional(value.toDouble());
}

QString outcomeWord(int outcome)
{
    return outcome == int(PartOutcome::Found)     ? QStringLiteral("found")
           : outcome == int(PartOutcome::Refused) ? QStringLiteral("refused")
                                                  : QStringLiteral("notFound");
}

/// "RltTable" with "PartTable".
class PartSource : public RowSource
{
public:
    explicit PartSource(const QString& home)
        : RowSource(home + QStringLiteral("/DBFiles/Pellix.db"), QStringLiteral("RltTable"), QStringLiteral("uid"),
                    QStringLiteral("time"), RowBatch::partsStream)
    {
    }

protected:
    void append(RowBatch& batch, qint64 after, qint64 upTo, int limit) override
    {
        QSqlQuery query = connection().exec(
            QStringLiteral("SELECT uid, wall, station, model, plc, outcome, error, angle, x, y, score, image_ms, "
                           "result_ms, reply_ms, account, calibration, source FROM %1 WHERE uid > %2 AND uid <= %3 "
                           "ORDER BY uid LIMIT %4")
                .arg(PartTable::source(connection()))
                .arg(after)
                .arg(upTo)
                .arg(limit));
        while (query.next())
            batch.parts.append(partOf(query));
    }
    QString pictureOf(qint64 row) override
    {
        QSqlQuery query = connection().exec(
            QStringLiteral("SELECT source FROM %1 WHERE uid = %2").arg(PartTable::source(connection())).arg(row));
        return query.next() ? query.value(0).toString() : QString();
    }

private:
    static PlantPart partOf(const QSqlQuery& query)
    {
        PlantPart part;
        part.row = query.value(0).toLongLong();
        part.wall = query.value(1).toLongLong();
        part.created = PartTable::timeOf(part.wall).toMSecsSinceEpoch();
        part.station = qBound(0, query.value(2).toInt(), 2);
        part.internalRecipeId = query.value(3).toString().left(longestText / 4);
        if (!query.value(4).isNull())
            part.externalRecipeId = query.value(4).toInt();
        part.outcome = outcomeWord(query.value(5).toInt());
        part.error = query.value(6).toInt();
        part.angle = numberIn(query, 7);
        part.x = numberIn(query, 8);
        part.y = numberIn(query, 9);
        part.score = numberIn(query, 10);
        part.imageMs = numberIn(query, 11);
        part.resultMs = numberIn(query, 12);
        part.replyMs = numberIn(query, 13);
        part.user = query.value(14).toString().left(256);
        part.configurationId = query.value(15).toString().left(256);
        part.picture = !query.value(16).toString().isEmpty();
        return part;
    }
};

/// "SystemInfo".
class LogSource : public RowSource
{
public:
    explicit LogSource(const QString& home)
        : RowSource(home + QStringLiteral("/dbLog.db"), QStringLiteral("SystemInfo"), QStringLiteral("id"),
                    QStringLiteral("datetime"), RowBatch::logStream)
    {
    }

protected:
    void append(RowBatch& batch, qint64 after, qint64 upTo, int limit) override
    {
        QSqlQuery query = connection().exec(QStringLiteral("SELECT id, datetime, type, message FROM SystemInfo WHERE "
                                                           "id > %1 AND id <= %2 ORDER BY id LIMIT %3")
                                                .arg(after)
                                                .arg(upTo)
                                                .arg(limit));
        while (query.next())
            batch.lines.append(lineOf(query));
    }
    QString pictureOf(qint64) override { return {}; }

private:
    static PlantLine lineOf(const QSqlQuery& query)
    {
        PlantLine line;
        line.row = query.value(0).toLongLong();
        const QDateTime time = QDateTime::fromString(query.value(1).toString(), QStringLiteral("yyyy-MM-dd hh:mm:ss"));
        line.wall = time.isValid() ? PartTable::wallOf(time) : 0;
        line.created = time.isValid() ? time.toMSecsSinceEpoch() : 0;
        line.text = SystemLog::withoutTime(query.value(3).toString()).left(longestText);
        const std::optional<SystemLog::ChangeLine> change = SystemLog::ChangeLine::of(line.text);
        line.user = change ? change->user.left(256) : QString();
        const int level = query.value(2).toInt();
        line.kind = change                        ? QStringLiteral("audit")
                    : level <= SystemLog::Error   ? QStringLiteral("alarm")
                    : level == SystemLog::Warning ? QStringLiteral("warning")
                                                  : QStringLiteral("information");
        return line;
    }
};

/// As many as go into a batch, at least one.
template <typename Row, typename Size>
bool cut(QVector<Row>& rows, const Size& sizeOf)
{
    int bytes = 0;
    for (int i = 0; i < rows.size(); ++i) {
        bytes += sizeOf(rows[i]);
        if (i > 0 && bytes > RowBatch::mostBytes) {
            rows.resize(i);
            return true;
        }
    }
    return false;
}

} // namespace

RowSource::RowSource(QString path, QString table, QString key, QString time, QString stream)
    : m_path(std::move(path))
    , m_table(std::move(table))
    , m_key(std::move(key))
    , m_time(std::move(time))
    , m_stream(std::move(stream))
    , m_connection(QStringLiteral("QSQLITE"))
{
}

std::unique_ptr<RowSource> RowSource::parts(const QString& home)
{
    return std::make_unique<PartSource>(home);
}

std::unique_ptr<RowSource> RowSource::log(const QString& home)
{
    return std::make_unique<LogSource>(home);
}

bool RowSource::look()
{
    const quint64 identity = platform::fileIdentity(m_path);
    if (m_connection.isOpen() && identity == m_identity && identity != 0)
        return true;
    m_connection.database().close();
    m_identity = identity;
    m_error.clear();
    m_connection.database().setDatabaseName(m_path);
    return identity != 0 && SqliteFile::openForReading(m_connection, &m_error) &&
           m_connection.exec(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = '%1'").arg(m_table)).next();
}

qint64 RowSource::number(const QString& sql)
{
    QSqlQuery query = m_connection.exec(sql);
    return query.next() ? query.value(0).toLongLong() : 0;
}

qint64 RowSource::first()
{
    return number(QStringLiteral("SELECT min(%1) FROM %2").arg(m_key, m_table));
}

qint64 RowSource::last()
{
    return number(QStringLiteral("SELECT seq FROM sqlite_sequence WHERE name = '%1'").arg(m_table));
}

QString RowSource::timeOf(qint64 row)
{
    QSqlQuery query =
        m_connection.exec(QStringLiteral("SELECT %1 FROM %2 WHERE %3 = %4").arg(m_time, m_table, m_key).arg(row));
    return query.next() ? query.value(0).toString() : QString();
}

qint64 RowSource::lastUntil(const QString& time)
{
    QSqlQuery query(m_connection.database());
    query.prepare(QStringLiteral("SELECT max(%1) FROM %2 WHERE %3 <= ?").arg(m_key, m_table, m_time));
    query.addBindValue(time);
    return m_connection.exec(query) && query.next() ? query.value(0).toLongLong() : 0;
}

RowBatch RowSource::read(qint64 after, qint64 upTo)
{
    RowBatch batch;
    batch.stream = m_stream;
    batch.after = after;
    append(batch, after, upTo, RowBatch::mostRows);
    const bool failed = m_connection.failed();
    const bool full = batch.size() == RowBatch::mostRows;
    const bool cutShort =
        cut(batch.lines, [](const PlantLine& line) { return 200 + 3 * line.text.size(); }) |
        cut(batch.parts, [](const PlantPart& part) { return 450 + 3 * part.internalRecipeId.size(); });
    batch.upTo = failed ? after : full || cutShort ? batch.lastRow() : upTo;
    return batch;
}
