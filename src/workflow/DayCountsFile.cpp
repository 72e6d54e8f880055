#include "workflow/DayCountsFile.h"

#include "common/Scheduler.h"
#include "db/ResultReader.h"
#include "workflow/PlcFrames.h"

#include <valvecell/HomeFiles.h>

#include <QDateTime>
#include <QJsonArray>
#include <QRunnable>

namespace {

const auto dayKey = QStringLiteral("day");
const auto stationsKey = QStringLiteral("stations");
const auto foundKey = QStringLiteral("found");
const auto notFoundKey = QStringLiteral("not_found");
const auto refusedKey = QStringLiteral("refused");

QJsonObject toJson(const DayCounts& counts)
{
    QJsonArray stations;
    for (int station = 1; station <= 2; ++station) {
        const DayCount& count = counts.of(station);
        stations.append(
            QJsonObject{{foundKey, count.found}, {notFoundKey, count.notFound}, {refusedKey, count.refused}});
    }
    return {{dayKey, counts.day().toString(Qt::ISODate)}, {stationsKey, stations}};
}

DayRecord recorded(const QString& path, const QDateTime& now)
{
    DayRecord record;
    ResultReader reader(path);
    if (!reader.open(nullptr))
        return record;
    for (int station = 1; station <= 2; ++station) {
        const QString name = QStringLiteral("Station_%1").arg(station);
        ResultReader::StationCount count;
        if (reader.countStation(name, now, plc::noticeAngle, plc::refusedAngle, &count))
            record.counts[station - 1] = {count.found, count.notFound, count.refused};
    }
    return record;
}

DayCount greater(const DayCount& a, const DayCount& b)
{
    return {qMax(a.found, b.found), qMax(a.notFound, b.notFound), qMax(a.refused, b.refused)};
}

DayRecord countedBefore(const DayCountsFile::Places& places, const QDateTime& now)
{
    DayRecord day = recorded(places.database, now);
    day.day = now.date();
    const DayRecord kept = DayCountsFile::read(places.file);
    for (int i = 0; kept.day == day.day && i < 2; ++i)
        day.counts[i] = greater(day.counts[i], kept.counts[i]);
    return day;
}

} // namespace

DayCountsFile::DayCountsFile(DayCounts& counts, Places places, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_counts(counts)
    , m_places(std::move(places))
    , m_scheduler(scheduler)
{
    m_worker.setMaxThreadCount(1);
    connect(&counts, &DayCounts::changed, this, [this] { m_isNew = true; });
}

DayCountsFile::~DayCountsFile()
{
    m_worker.waitForDone();
    write();
}

void DayCountsFile::run(const std::function<void()>& job)
{
    if (m_scheduler.usesThreads())
        m_worker.start(QRunnable::create(job));
    else
        job();
}

void DayCountsFile::start(const QDateTime& start)
{
    if (std::exchange(m_asked, true))
        return;
    run([this, places = m_places, start] {
        const DayRecord earlier = countedBefore(places, start);
        QMetaObject::invokeMethod(
            this, [this, earlier] { takeIn(earlier); }, Qt::QueuedConnection);
    });
}

void DayCountsFile::takeIn(const DayRecord& earlier)
{
    for (int i = 0; i < 2; ++i)
        m_counts.addEarlier(earlier.day, i + 1, earlier.counts[i]);
    m_started = true;
    emit started();
}

DayRecord DayCountsFile::read(const QString& path)
{
    const QJsonObject file = HomeFiles::readJson(path).object;
    const QJsonArray stations = file[stationsKey].toArray();
    DayRecord record;
    record.day = QDate::fromString(file[dayKey].toString(), Qt::ISODate);
    for (int i = 0; i < 2; ++i) {
        const auto number = [entry = stations[i].toObject()](const QString& key) {
            return qMax(0, entry[key].toInt());
        };
        record.counts[i] = {number(foundKey), number(notFoundKey), number(refusedKey)};
    }
    return record;
}

void DayCountsFile::tick()
{
    if (++m_seconds >= secondsBetweenWrites)
        write();
}

void DayCountsFile::write()
{
    if (!m_started || !m_isNew)
        return;
    m_isNew = false;
    m_seconds = 0;
    run([path = m_places.file, content = toJson(m_counts)] {
        QString error;
        if (!HomeFiles::writeJson(path, content, &error))
            qWarning("counts of the day: %s", qUtf8Printable(error));
    });
}
