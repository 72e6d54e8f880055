#include "Ledger.h"
#include "workflow/PlcFrames.h"
#include "workflow/ResultHandler.h"

#include <algorithm>

namespace Simulation {
namespace {

/// By more than the thousandth that is cut.
bool differ(double a, double b)
{
    return std::abs(a - b) > 0.0011;
}

} // namespace

void Ledger::sent(const SComFrame& frame)
{
    if (frame.command == plc::Heartbeat)
        return;
    const bool notice = frame.command == plc::NotFound;
    const int station = notice ? frame.data[0] - 5 : frame.command == plc::Result1 ? 1 : 2;
    std::optional<Reply>& own = m_replies[station == 1 ? 0 : 1];
    if (notice) {
        if (!own || own->noticed || own->angle < plc::noticeAngle)
            return fail(QStringLiteral("a notice of station %1 that belongs to no answer").arg(station));
        own->noticed = true;
        return;
    }
    if (own)
        return fail(QStringLiteral("two answers of station %1 to one trigger").arg(station));
    own = Reply{frame.data[2] + frame.data[3] / 1000.0, frame.data[4] + frame.data[5] / 1000.0,
                frame.data[6] + frame.data[7] / 1000.0, false};
}

/// 361 without a reason of its own: the deadline, or a camera that still owes a picture.
bool Ledger::mayFail(const Part& part) const
{
    const bool owed = std::any_of(m_captures.begin(), m_captures.end(), [&](const Capture& capture) {
        return capture.camera == part.camera && capture.part != part.number && ms() <= capture.doubtfulUntil;
    });
    return part.excused || ms() >= part.deadlineMs || (owed && part.picture == 0);
}

/// By the picture that the answer names; what names none, by what failed, and else by what may.
Part* Ledger::owner(int station, const StationReading& reading)
{
    const bool named = reading.angle < plc::nothingFoundAngle || reading.angle == plc::noAngleAngle;
    const auto find = [&](auto isIt) {
        const auto own = std::find_if(m_live.begin(), m_live.end(), [&](const Part& part) {
            return part.station == station && part.test == reading.test && isIt(part);
        });
        return own == m_live.end() ? nullptr : &*own;
    };
    if (named)
        return find([&](const Part& part) {
            return part.inspected && part.got && plc::cutText(xOf(part.picture)) == plc::cutText(reading.x);
        });
    Part* const told = find([](const Part& part) { return part.excused; });
    return told ? told : find([this](const Part& part) { return mayFail(part); });
}

void Ledger::checkReply(const Part& part, const StationReading& reading)
{
    const bool delivered = !part.test && part.session == line;
    std::optional<Reply>& reply = m_replies[part.station - 1];
    const QString who = QStringLiteral("part %1 of station %2").arg(part.number).arg(part.station);
    if (delivered != bool(reply))
        fail(who + QLatin1String(delivered ? ": shown, and not sent" : ": sent, on a line that is not its own"));
    else if (reply &&
             (differ(reply->angle, reading.angle) || differ(reply->x, reading.x) || differ(reply->y, reading.y)))
        fail(who + QStringLiteral(": sent %1, shown %2").arg(reply->angle).arg(reading.angle));
    else if (reply && reply->noticed != (reply->angle >= plc::noticeAngle))
        fail(who + QStringLiteral(": a notice too few or too many"));
    reply.reset();
    if (!delivered && !part.test && reading.found)
        fail(who + QStringLiteral(": counted as found, and nothing was sent"));
}

void Ledger::shown(int station, const StationReading& reading)
{
    if (station == 0) {
        if (--m_strangers < 0)
            fail(QStringLiteral("a reading of no station"));
        return;
    }
    if (Part* const own = owner(station, reading))
        return end(*own, reading);
    fail(QStringLiteral("station %1 shows %2 (x %3, \"%4\"), which is no part's that waits")
             .arg(QString::number(station), QString::number(reading.angle), QString::number(reading.x), reading.tip));
}

void Ledger::end(Part& part, const StationReading& reading)
{
    const QString who = QStringLiteral("part %1 of station %2").arg(part.number).arg(part.station);
    checkReply(part, reading);
    const bool good = part.got == Answer::Good || part.got == Answer::Doubled || part.got == Answer::Late;
    if (reading.angle < plc::noticeAngle &&
        (!good || plc::cutText(reading.angle) != plc::cutText(angleOf(part.picture)) ||
         differ(reading.y, yOf(part.solution, part.model))))
        fail(who + QStringLiteral(": answered %1, %2, which is not its own").arg(reading.angle).arg(reading.y));
    const bool recorded = part.got != Answer::NotTaught && part.got != Answer::NoTask;
    if (!part.test) {
        count(part.station, reading.found ? &DayCount::found : &DayCount::notFound);
        if (recorded)
            record(part.station, part.model, part.plcIndex, reading, part.session == line);
    }
    m_found += reading.found && !part.test ? 1 : 0;
    ++ends;
    const int number = part.number;
    m_live.erase(
        std::find_if(m_live.begin(), m_live.end(), [number](const Part& each) { return each.number == number; }));
}

void Ledger::refused(int station)
{
    std::optional<bool>& due = m_refusal[station - 1];
    std::optional<Reply>& reply = m_replies[station - 1];
    if (!due)
        return fail(QStringLiteral("a trigger of station %1 was refused, and may not have been").arg(station));
    if (*due != bool(reply))
        fail(QStringLiteral("station %1 refused a trigger, and the PLC %2")
                 .arg(station)
                 .arg(QLatin1String(reply ? "was not to know" : "does not know")));
    if (reply && (reply->angle != plc::refusedAngle || !reply->noticed))
        fail(QStringLiteral("station %1 refused with angle %2").arg(station).arg(reply->angle));
    due.reset();
    reply.reset();
    StationReading reading;
    reading.angle = plc::refusedAngle;
    record(station, m_refusedModel, stations[station - 1].plcIndex, reading, true);
    count(station, &DayCount::refused);
    ++ends;
}

/// The row has what was sent; of what was sent to nobody, that nothing was found.
void Ledger::record(int station, const QString& model, int plcIndex, const StationReading& reading, bool delivered)
{
    const QString angle = plc::cutText(delivered ? reading.angle : plc::nothingFoundAngle);
    rows.push_back(
        {QStringLiteral("%1 %2_%3 %4 plc=%5;x=%6;y=%7")
             .arg(m_scheduler.now().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss zzz")), QString::number(station),
                  model, angle, QString::number(plcIndex), plc::cutText(reading.x), plc::cutText(reading.y)),
         ms()});
}

void Ledger::count(int station, int DayCount::*kind)
{
    if (m_scheduler.now().date() != day) {
        day = m_scheduler.now().date();
        counts[0] = counts[1] = {};
    }
    ++(counts[station - 1].*kind);
}

} // namespace Simulation
