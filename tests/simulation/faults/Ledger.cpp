#include "Ledger.h"

#include <algorithm>

namespace Simulation {
namespace {

// What the cell promises.
constexpr int mayWait = 2;          ///< triggers of a station in hand
constexpr int deadlinesToDrain = 4; ///< that a camera which owes a picture is not asked

} // namespace

void Ledger::fail(const QString& what)
{
    if (broken.isEmpty())
        broken = what;
}

double Ledger::yOf(const QString& solution, const QString& model)
{
    uint hash = 5381;
    for (const QChar letter : solution + QLatin1Char('/') + model)
        hash = hash * 33 + letter.unicode();
    return hash % 30000;
}

void Ledger::indices(int index1, int index2)
{
    if (!online)
        return;
    for (Station& station : stations) {
        station.plcIndex = &station == stations ? index1 : index2;
        station.model = station.plcIndex < 1 ? QString() : tables[station.solution].key(station.plcIndex);
        if (!station.model.isEmpty())
            station.runModel = station.model;
    }
}

int Ledger::waiting(int station) const
{
    return static_cast<int>(
        std::count_if(m_live.begin(), m_live.end(), [station](const Part& part) { return part.station == station; }));
}

bool Ledger::add(int station, bool test, quint64 session, const Step& fate)
{
    if (waiting(station) >= mayWait)
        return false;
    const Station& own = stations[station - 1];
    Part part;
    part.number = ++m_parts;
    part.station = station;
    part.test = test;
    part.camera = own.camera;
    part.solution = own.solution;
    part.model = own.runModel;
    part.plcIndex = own.plcIndex;
    part.session = session;
    part.deadlineMs = ms() + deadlineMs;
    part.fate = fate;
    m_live.push_back(part);
    return true;
}

void Ledger::trigger(int station, quint64 session, const Step& fate)
{
    ++triggers;
    Station& own = stations[station - 1];
    if (ms() < own.filteredUntil)
        return;
    own.filteredUntil = ms() + filterMs;
    const bool mayCapture = !online || !protection || !own.model.isEmpty();
    if (mayCapture && add(station, false, session, fate))
        return;
    m_refusal[station - 1] = (mayCapture || own.plcIndex >= 1) && session == line;
    m_refusedModel = mayCapture ? own.runModel : own.model;
}

void Ledger::triggerTaken()
{
    for (int i = 0; i < 2; ++i) {
        if (m_refusal[i])
            fail(QStringLiteral("a trigger of station %1 that had to be refused was not").arg(i + 1));
    }
}

void Ledger::snap(int station, const Step& fate)
{
    add(station, true, line, fate);
}

void Ledger::restarted()
{
    m_live.clear();
    m_captures.clear();
    for (Station& station : stations) {
        station.plcIndex = 0;
        station.model.clear();
        station.filteredUntil = -1;
    }
}

Part* Ledger::part(int number)
{
    const auto own =
        std::find_if(m_live.begin(), m_live.end(), [number](const Part& part) { return part.number == number; });
    return own == m_live.end() ? nullptr : &*own;
}

Part* Ledger::captureStarted(const QString& camera)
{
    const auto own = std::find_if(m_live.begin(), m_live.end(),
                                  [&](const Part& part) { return part.camera == camera && part.picture == 0; });
    if (own == m_live.end()) {
        fail(QStringLiteral("camera %1 was asked, and no trigger waits for it").arg(camera));
        return nullptr;
    }
    own->picture = ++m_pictures;
    const qint64 drained = own->deadlineMs + deadlinesToDrain * longestDeadlineMs;
    m_captures.push_back({own->picture, camera, drained, own->number});
    return &*own;
}

void Ledger::captureEnded(int picture, bool delivered)
{
    const auto capture = std::find_if(m_captures.begin(), m_captures.end(),
                                      [picture](const Capture& each) { return each.picture == picture; });
    if (capture == m_captures.end())
        return;
    if (Part* const own = delivered ? nullptr : part(capture->part))
        own->excused = true;
    m_captures.erase(capture);
}

bool Ledger::isIdle(const QString& camera) const
{
    return std::none_of(m_captures.begin(), m_captures.end(),
                        [&camera](const Capture& capture) { return capture.camera == camera; });
}

Part* Ledger::inspected(int picture, const QString& solution, const QString& model)
{
    const auto own = std::find_if(m_live.begin(), m_live.end(), [picture](const Part& part) {
        return part.picture == picture && picture > 0 && !part.inspected;
    });
    if (own == m_live.end()) {
        fail(QStringLiteral("the engine got picture %1, which is no part's that waits").arg(picture));
        return nullptr;
    }
    own->inspected = true;
    if (own->solution != solution || own->model != model)
        fail(QStringLiteral("part %1 of station %2 came as %3/%4 and is judged as %5/%6")
                 .arg(QString::number(own->number), QString::number(own->station), own->solution, own->model, solution,
                      model));
    return &*own;
}

void Ledger::answered(int number, Answer answer)
{
    Part* const own = part(number);
    if (!own)
        return;
    own->got = answer;
    own->excused |= answer == Answer::NothingFound || answer == Answer::OtherSolution || answer == Answer::FarAway ||
                    answer == Answer::NotTaught || answer == Answer::NoTask;
    m_strangers += answer == Answer::OtherSolution ? 1 : 0;
}

void Ledger::check(const DayCounts& shown)
{
    for (int station = 1; station <= 2; ++station) {
        if (m_replies[station - 1])
            fail(QStringLiteral("an answer of station %1 was sent, and not shown").arg(station));
        if (m_refusal[station - 1])
            fail(QStringLiteral("a refusal of station %1 is missing").arg(station));
        if (waiting(station) > mayWait)
            fail(QStringLiteral("station %1 has too many triggers in hand").arg(station));
    }
    for (const Part& part : m_live) {
        if (ms() > part.deadlineMs)
            fail(QStringLiteral("part %1 of station %2 has no end at its deadline").arg(part.number).arg(part.station));
    }
    const auto isOver = [this](const Capture& capture) { return ms() > capture.doubtfulUntil; };
    m_captures.erase(std::remove_if(m_captures.begin(), m_captures.end(), isOver), m_captures.end());
    if (shown.day() != m_scheduler.now().date())
        return; // it looks once a second
    if (day != m_scheduler.now().date()) {
        day = m_scheduler.now().date();
        counts[0] = counts[1] = {};
    }
    for (int i = 0; i < 2; ++i) {
        const DayCount& own = shown.of(i + 1);
        if (own.found != counts[i].found || own.notFound != counts[i].notFound || own.refused != counts[i].refused)
            fail(QStringLiteral("station %1 counts %2 found, %3 not, %4 refused; there were %5, %6, %7")
                     .arg(i + 1)
                     .arg(own.found)
                     .arg(own.notFound)
                     .arg(own.refused)
                     .arg(counts[i].found)
                     .arg(counts[i].notFound)
                     .arg(counts[i].refused));
    }
}

} // namespace Simulation
