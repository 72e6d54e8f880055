#include "RoadLog.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

/// A part's line is written after its answer, so the last ones may still be on their way.
constexpr int lookMs = 50;
/// For lines that the program has yet to write; then the report does without them.
constexpr int patienceMs = 5000;

} // namespace

RoadLog::RoadLog(const QString& path)
    : m_path(path)
{
    connect(&m_look, &QTimer::timeout, this, &RoadLog::look);
}

std::optional<RoadTiming> RoadLog::parse(const QString& line)
{
    static const QRegularExpression form(
        QStringLiteral("valvecell\\.road: station=(\\d) engine_ms=([\\d.]+) capture_ms=([\\d.]+) total_ms=([\\d.]+) "
                       "rss_kib=(\\d+)\\s*$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return {};
    return RoadTiming{match.captured(1).toInt(), match.captured(2).toDouble(), match.captured(3).toDouble(),
                      match.captured(4).toDouble(), match.captured(5).toLongLong()};
}

void RoadLog::begin()
{
    m_begin = QFileInfo(m_path).size();
}

void RoadLog::collect(int count)
{
    m_wanted = count;
    m_since.start();
    m_look.start(lookMs);
}

void RoadLog::look()
{
    const QVector<RoadTiming> timings = readNew();
    if (timings.size() < m_wanted && !m_since.hasExpired(patienceMs))
        return;
    m_look.stop();
    emit collected(timings);
}

/// The program writes on while this reads: a line without its end is read the next time.
QVector<RoadTiming> RoadLog::readNew() const
{
    QVector<RoadTiming> timings;
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_begin))
        return timings;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const auto timing = parse(QString::fromUtf8(line));
        if (timing && line.endsWith('\n'))
            timings.append(*timing);
    }
    return timings;
}
