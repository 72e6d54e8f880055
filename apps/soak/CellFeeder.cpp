#include "CellFeeder.h"

#include <QDateTime>

namespace {

constexpr int absentIndex = 98;

} // namespace

CellFeeder::CellFeeder(PlcLine& line, TriggerLedger& ledger, std::array<ImageCycle, 2> images, Pace pace)
    : m_line(line)
    , m_ledger(ledger)
    , m_fromStart(std::move(images))
    , m_pace(pace)
{
    for (int station = 1; station <= 2; ++station) {
        QTimer& timer = m_stations[station - 1].timer;
        timer.setTimerType(Qt::PreciseTimer);
        connect(&timer, &QTimer::timeout, this, [this, station] { onDue(station); });
    }
    connect(&line, &PlcLine::frameReceived, this, &CellFeeder::onFrame);
    setPace(m_pace);
}

/// A flood leaves images out, so the order goes with it.
void CellFeeder::setPace(Pace pace)
{
    m_pace = pace;
    if (m_pace.flood)
        loseOrder();
    for (Station& station : m_stations)
        station.timer.setInterval(qMax(1, static_cast<int>(2000 / m_pace.partsPerSecond)));
}

void CellFeeder::start(bool fresh)
{
    if (fresh) {
        m_ordered = !m_pace.flood;
        for (int i = 0; i < 2; ++i)
            m_stations[i].images = m_fromStart[i];
    }
    m_feeding = true;
    for (Station& station : m_stations) {
        station.announced = -1;
        station.due = false;
        station.timer.start();
    }
    onDue(1);
    onDue(2);
}

void CellFeeder::stop()
{
    m_feeding = false;
    for (Station& station : m_stations)
        station.timer.stop();
}

void CellFeeder::loseOrder()
{
    m_ordered = false;
}

void CellFeeder::onDue(int station)
{
    if (m_pace.flood || m_ledger.open(station) == 0)
        trigger(station);
    else
        m_stations[station - 1].due = true;
}

void CellFeeder::trigger(int station)
{
    Station& own = m_stations[station - 1];
    own.due = false;
    ++own.fed;
    announce();
    m_ledger.sent(station, QDateTime::currentMSecsSinceEpoch(), PlcLine::nowNs());
    m_line.send(PlcFrames::triggerOf(station));
}

/// Both stations' indices go in one frame, when one of them is another.
void CellFeeder::announce()
{
    const std::array<int, 2> indices{nextIndex(m_stations[0]), nextIndex(m_stations[1])};
    if (indices[0] != m_stations[0].announced || indices[1] != m_stations[1].announced)
        m_line.send(PlcFrames::models(indices[0], indices[1]));
    for (int i = 0; i < 2; ++i)
        m_stations[i].announced = indices[i];
}

int CellFeeder::nextIndex(const Station& station) const
{
    if (m_pace.refusalEvery > 0 && station.fed % m_pace.refusalEvery == m_pace.refusalEvery - 1)
        return absentIndex;
    return m_ordered ? station.images.next().index : KnownImage::unknownModel;
}

void CellFeeder::onFrame(const SComFrame& frame, qint64 atNs)
{
    for (int station = 1; station <= 2; ++station) {
        if (frame.command == PlcFrames::answerOf(station))
            onAnswer(station, PlcFrames::answerFrom(frame), atNs);
        else if (frame.command == PlcFrames::notice && frame.data[0] == station + 5)
            m_ledger.noticed(station);
    }
}

/// A refused trigger takes no image.
void CellFeeder::onAnswer(int station, const PlcFrames::Answer& answer, qint64 atNs)
{
    m_ledger.answered(station, answer, atNs);
    Station& own = m_stations[station - 1];
    if (answer.angle != PlcFrames::refusedAngle)
        own.images.advance();
    emit answered(station);
    if (own.due && m_feeding && m_ledger.open(station) == 0)
        trigger(station);
}
