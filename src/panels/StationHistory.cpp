#include "panels/StationHistory.h"

#include "db/PartTable.h"
#include "results/data/PartReader.h"
#include "results/data/ShiftStore.h"

#include <valvecell/HomeFiles.h>

#include <QTimer>

namespace {

constexpr int shiftLookMs = 5000;
constexpr int ticksBetweenLooks = 12;
const QString resetForm = QStringLiteral("yyyy-MM-dd hh:mm:ss");

QString resetFile(const QString& home)
{
    return home + QStringLiteral("/user/shiftReset.json");
}

QString resetKey(int station)
{
    return QStringLiteral("station%1").arg(station);
}

QString textOf(const DayCount& count)
{
    return QStringLiteral("%1/%2/%3").arg(count.found).arg(count.notFound).arg(count.refused);
}

} // namespace

StationHistory::StationHistory(QObject* parent)
    : QObject(parent)
    , m_timer(new QTimer(this))
    , m_reading(Background::AtEnd::Wait)
    , m_writing(Background::AtEnd::Finish)
{
    m_timer->setInterval(shiftLookMs);
    connect(m_timer, &QTimer::timeout, this, &StationHistory::tick);
    m_timer->start();
    for (StationTally& tally : m_tallies)
        tally.setNow(PartTable::wallNow());
}

StationHistory::~StationHistory() = default;

void StationHistory::start(const QString& home)
{
    m_home = home;
    m_reading.run([home, now = PartTable::wallNow()] { return readAll(home, now); },
                  [this](const Begin& begin) { takeIn(begin); });
}

StationHistory::Begin StationHistory::readAll(const QString& home, qint64 now)
{
    Begin begin;
    begin.shifts = ShiftStore::load(home);
    const QJsonObject resets = HomeFiles::readJson(resetFile(home)).object;
    for (int station = 1; station <= 2; ++station) {
        const QString text = resets.value(resetKey(station)).toString();
        begin.resets[station - 1] = PartTable::wallOf(QDateTime::fromString(text, resetForm));
        begin.earlier[station - 1] = read(home, station, begin.shifts, now);
    }
    return begin;
}

StationTally::Earlier StationHistory::read(const QString& home, int station, const Shifts& shifts, qint64 now)
{
    StationTally::Earlier earlier;
    PartReader reader(home);
    if (!reader.open())
        return earlier;
    PartFilter filter;
    filter.station = station;
    earlier.recent = reader.last(filter, StationTally::partsKept);
    filter.from = PartTable::timeOf(shifts.at(now).begin);
    earlier.series = reader.series(filter, {});
    filter.from = {};
    filter.found = filter.refused = false;
    filter.pictured = true;
    earlier.failures = reader.last(filter, StationTally::failuresKept);
    return earlier;
}

void StationHistory::takeIn(const Begin& begin)
{
    m_shifts = begin.shifts.toText();
    for (int station = 1; station <= 2; ++station) {
        StationTally& tally = m_tallies[station - 1];
        tally.setShifts(begin.shifts);
        tally.setNow(PartTable::wallNow());
        tally.reset(begin.resets[station - 1]);
        tally.addEarlier(begin.earlier[station - 1]);
        emit changed(station);
    }
}

void StationHistory::add(int station, const PartRow& part, bool hasPicture)
{
    if (station != 1 && station != 2)
        return;
    m_tallies[station - 1].add(part);
    if (hasPicture && part.part.outcome != PartOutcome::Found)
        m_tallies[station - 1].addFailure(part);
    emit changed(station);
}

AuditChanges StationHistory::resetShift(int station)
{
    StationTally& tally = m_tallies[station - 1];
    tally.setNow(PartTable::wallNow());
    const DayCount before = tally.shiftCount();
    tally.reset(PartTable::wallNow());
    keepResets();
    emit changed(station);
    return {{QStringLiteral("工位%1/本班计数").arg(station), textOf(before), textOf({})}};
}

void StationHistory::keepResets()
{
    if (m_home.isEmpty())
        return;
    QJsonObject resets;
    for (int station = 1; station <= 2; ++station) {
        if (const qint64 wall = of(station).resetAt())
            resets.insert(resetKey(station), PartTable::timeOf(wall).toString(resetForm));
    }
    m_writing.run(
        [path = resetFile(m_home), resets] {
            QString error;
            HomeFiles::writeJson(path, resets, &error);
            return error;
        },
        [](const QString& error) {
            if (!error.isEmpty())
                qWarning("counts of the shift: %s", qUtf8Printable(error));
        });
}

/// A shift without parts begins, too.
void StationHistory::tick()
{
    for (int station = 1; station <= 2; ++station) {
        if (m_tallies[station - 1].setNow(PartTable::wallNow()))
            emit changed(station);
    }
    if (++m_ticks % ticksBetweenLooks == 0 && !m_shifts.isEmpty())
        lookForShifts();
}

/// What was counted by the old ones is counted anew from the database.
void StationHistory::lookForShifts()
{
    m_reading.run([home = m_home] { return ShiftStore::load(home).toText(); },
                  [this](const QString& shifts) {
                      if (shifts == m_shifts)
                          return;
                      for (StationTally& tally : m_tallies)
                          tally = {};
                      start(m_home);
                  });
}
