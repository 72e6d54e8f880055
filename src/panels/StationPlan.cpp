#include "panels/StationPlan.h"

#include "common/FingerSize.h"
#include "panels/OutcomeBand.h"

namespace {

constexpr int gap = StationPlan::gap;
constexpr int leastSide = 206;
constexpr int leastRow = 540;
constexpr int leastColumn = 440;
constexpr int leastFailures = 54;

QRect cut(QRect& room, int height)
{
    const QRect top(room.left(), room.top(), room.width(), qMax(0, height));
    room.setTop(top.bottom() + 1 + gap);
    return top;
}

QRect cutFoot(QRect& room, int height)
{
    const QRect foot(room.left(), room.bottom() + 1 - height, room.width(), height);
    room.setBottom(foot.top() - 1 - gap);
    return foot;
}

/// The place at the top left of a room of the largest picture of that shape.
QRect fitted(const QRect& room, double aspect)
{
    const int width = qMax(0, qMin(room.width(), int(room.height() * aspect)));
    return {room.left(), room.top(), width, qMin(qMax(0, room.height()), int(width / aspect))};
}

/// One of several columns with equal gaps between them, by their shares.
QRect share(const QRect& room, int from, int to, int all)
{
    const int left = room.left() + (room.width() + gap) * from / all;
    const int right = room.left() + (room.width() + gap) * to / all - gap;
    return {left, room.top(), qMax(0, right - left), room.height()};
}

void placeFoot(StationPlan& plan, const QRect& foot)
{
    const QRect counts = share(foot, 0, 60, 100);
    plan.hours = share(foot, 60, 100, 100);
    plan.shift = cut(plan.hours, fingerSize);
    plan.found = share(counts, 0, 24, 100);
    plan.notFound = share(counts, 24, 47, 100);
    plan.refused = share(counts, 47, 70, 100);
    plan.yield = share(counts, 70, 100, 100);
}

void placeFailures(StationPlan& plan, const QRect& room)
{
    if (room.height() >= leastFailures && room.width() >= leastFailures)
        plan.failures = room;
}

void placeRow(StationPlan& plan, const QRect& row)
{
    plan.angle = share(row, 0, 40, 100);
    plan.x = share(row, 40, 70, 100);
    plan.y = share(row, 70, 100, 100);
}

/// Angle over X and Y, and what is left over for the failures.
void placeSide(StationPlan& plan, QRect side)
{
    const int height = side.height();
    const bool wide = side.width() >= leastRow;
    plan.angle = cut(side, qBound(52, height * 28 / 100, 120));
    const int digits = qBound(40, height * 18 / 100, 72);
    if (wide) {
        const QRect row = cut(side, digits + 8);
        plan.x = share(row, 0, 1, 2);
        plan.y = share(row, 1, 2, 2);
    } else {
        plan.x = cut(side, digits);
        plan.y = cut(side, digits);
    }
    placeFailures(plan, side);
}

/// The picture over the whole height, all else in a column beside it.
StationPlan inColumn(StationPlan plan, const QRect& rest, int strip, int foot, double aspect)
{
    plan.picture = fitted(rest.adjusted(0, 0, -leastColumn - gap, 0), aspect);
    QRect side = rest.adjusted(plan.picture.width() + gap, 0, 0, 0);
    plan.strip = cut(side, strip);
    placeFoot(plan, cutFoot(side, foot));
    placeRow(plan, cut(side, qBound(60, side.height() * 35 / 100, 150)));
    placeFailures(plan, side);
    return plan;
}

/// Digits and failures beside the picture, all else over the whole width.
StationPlan beside(StationPlan plan, QRect rest, int strip, int foot, double aspect)
{
    placeFoot(plan, cutFoot(rest, foot));
    plan.strip = cutFoot(rest, strip);
    plan.picture = fitted(rest.adjusted(0, 0, -leastSide - gap, 0), aspect);
    placeSide(plan, rest.adjusted(plan.picture.width() + gap, 0, 0, 0));
    const QRect below(rest.left(), plan.picture.bottom() + 1 + gap, plan.picture.width(),
                      rest.bottom() - plan.picture.bottom() - gap);
    if (plan.failures.isEmpty())
        placeFailures(plan, below);
    return plan;
}

/// Digits in a row below the picture.
StationPlan below(StationPlan plan, QRect rest, int strip, int foot, double aspect)
{
    placeFoot(plan, cutFoot(rest, foot));
    plan.strip = cutFoot(rest, strip);
    placeRow(plan, cutFoot(rest, qBound(56, rest.height() / 6, 110)));
    plan.picture = fitted(rest, aspect);
    const QRect side = rest.adjusted(plan.picture.width() + gap, 0, 0, 0);
    const QRect under = rest.adjusted(0, plan.picture.height() + gap, 0, 0);
    placeFailures(plan, side.width() * side.height() > under.width() * under.height() ? side : under);
    return plan;
}

int area(const StationPlan& plan)
{
    return plan.picture.width() * plan.picture.height();
}

StationPlan withHeader(QRect& rest, StationPlan::Header header)
{
    StationPlan plan;
    const QRect first = cut(rest, header.height);
    plan.station = QRect(first.left(), first.top(), qMin(first.width(), header.stationWidth), first.height());
    plan.model = first.adjusted(plan.station.width() + gap, 0, 0, 0);
    return plan;
}

} // namespace

StationPlan StationPlan::of(const QRect& room, double aspect, Header header)
{
    QRect rest = room;
    StationPlan plan = withHeader(rest, header);
    plan.band = cut(rest, qBound(OutcomeBand::leastHeight, rest.height() / 7, 104));
    const int strip = qBound(20, rest.height() / 16, 36);
    const int foot = qBound(76, rest.height() / 5, 120);
    const StationPlan plans[] = {beside(plan, rest, strip, foot, aspect), inColumn(plan, rest, strip, foot, aspect),
                                 below(plan, rest, strip, foot, aspect)};
    const StationPlan* best = &plans[0];
    for (const StationPlan& each : plans) {
        if (area(each) * 10 > area(*best) * 11) // for a little more nothing is moved
            best = &each;
    }
    return *best;
}

StationPlan StationPlan::ofPicture(const QRect& room, double aspect, Header header)
{
    QRect rest = room;
    StationPlan plan = withHeader(rest, header);
    plan.picture = fitted(rest, aspect);
    plan.picture.moveCenter(rest.center());
    return plan;
}
