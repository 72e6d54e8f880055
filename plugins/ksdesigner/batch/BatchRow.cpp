#include "BatchRow.h"

#include <QCoreApplication>
#include <QStringList>

#include <cmath>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(BatchSummary)
};

} // namespace

BatchRow::Change BatchRow::change() const
{
    if (!problem.isEmpty())
        return Change::Unreadable;
    if (!compared)
        return Change::None;
    if (first.found != second.found)
        return first.found ? Change::Lost : Change::Gained;
    if (!first.found)
        return Change::BothMissed;
    return movedBy() > movedPixels || turnedBy() > movedDegrees ? Change::Moved : Change::Same;
}

double BatchRow::movedBy() const
{
    const QPointF way = second.center - first.center;
    return bothFound() ? std::hypot(way.x(), way.y()) : 0;
}

double BatchRow::turnedBy() const
{
    return bothFound() ? std::abs(std::remainder(second.angle - first.angle, 360.0)) : 0;
}

void BatchSummary::add(const BatchRow& row)
{
    const BatchRow::Change change = row.change();
    ++images;
    compared = compared || row.compared;
    unreadable += change == BatchRow::Change::Unreadable;
    foundFirst += row.first.found;
    foundSecond += row.second.found;
    gained += change == BatchRow::Change::Gained;
    lost += change == BatchRow::Change::Lost;
    moved += change == BatchRow::Change::Moved;
    largestMove = std::max(largestMove, row.movedBy());
    slowestSecond = std::max(slowestSecond, row.second.taskTime);
    if (row.first.taskTime > slowestFirst) {
        slowestFirst = row.first.taskTime;
        slowestName = row.name;
    }
}

QString BatchSummary::text() const
{
    QStringList parts{Tr::tr("共 %1 张").arg(images)};
    if (unreadable > 0)
        parts.append(Tr::tr("无法读取 %1").arg(unreadable));
    if (compared) {
        parts.append(Tr::tr("找到 %1 → %2").arg(foundFirst).arg(foundSecond));
        parts.append(Tr::tr("新找到 %1").arg(gained));
        parts.append(Tr::tr("丢失 %1").arg(lost));
        parts.append(Tr::tr("移动 %1（最大 %2 px）").arg(moved).arg(largestMove, 0, 'f', 2));
        parts.append(Tr::tr("最慢 %1 → %2 ms").arg(slowestFirst, 0, 'f', 1).arg(slowestSecond, 0, 'f', 1));
    } else {
        parts.append(Tr::tr("找到 %1").arg(foundFirst));
        parts.append(Tr::tr("未找到 %1").arg(images - unreadable - foundFirst));
        parts.append(Tr::tr("最慢 %1 ms（%2）").arg(slowestFirst, 0, 'f', 1).arg(slowestName));
    }
    return parts.join(Tr::tr("，"));
}
