#include "panels/HourYield.h"

#include "common/LookColors.h"
#include "db/PartTable.h"
#include "panels/OutcomeColors.h"

#include <QDateTime>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int footRoom = 13;

int total(const DayCount& count)
{
    return count.found + count.notFound + count.refused;
}

QString hourText(qint64 wall)
{
    return PartTable::timeOf(wall).toString(QStringLiteral("hh:mm"));
}

/// A part is always seen.
int barHeight(int parts, int most, int room)
{
    return parts > 0 ? qMax(2, int(qint64(parts) * room / qMax(1, most))) : 0;
}

} // namespace

HourYield::HourYield(QWidget* parent)
    : QWidget(parent)
{
}

void HourYield::setHours(const QVector<StationTally::Hour>& hours)
{
    m_hours = hours;
    update();
}

QRect HourYield::columnOf(int index) const
{
    const int left = width() * index / m_hours.size();
    const int right = width() * (index + 1) / m_hours.size();
    return {left, 0, right - left - 1, height() - footRoom};
}

QString HourYield::tipOf(const StationTally::Hour& hour)
{
    const double yield = hour.count.yield();
    return tr("%1–%2  检出率 %3\n找到%4，未找到%5，拒绝%6")
        .arg(hourText(hour.begin), hourText(hour.begin + StationTally::hourMs),
             yield < 0 ? QStringLiteral("—") : QString::number(yield, 'f', 1) + QStringLiteral(" %"))
        .arg(hour.count.found)
        .arg(hour.count.notFound)
        .arg(hour.count.refused);
}

bool HourYield::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    auto* help = static_cast<QHelpEvent*>(event);
    for (int i = 0; i < m_hours.size(); ++i) {
        const QRect column = columnOf(i);
        if (help->pos().x() >= column.left() && help->pos().x() <= column.right() + 1)
            QToolTip::showText(help->globalPos(), tipOf(m_hours.at(i)), this);
    }
    return true;
}

void HourYield::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const LookColors& look = lookColors();
    int most = 0;
    for (const StationTally::Hour& hour : qAsConst(m_hours))
        most = qMax(most, total(hour.count));
    QFont small = font();
    small.setPixelSize(10);
    painter.setFont(small);
    for (int i = 0; i < m_hours.size(); ++i) {
        const QRect column = columnOf(i);
        const DayCount& count = m_hours.at(i).count;
        painter.fillRect(QRect(column.left(), column.bottom(), column.width(), 1), look.border);
        int bottom = column.bottom();
        const std::pair<int, Lamp> shares[] = {
            {count.found, Lamp::Found}, {count.notFound, Lamp::NotFound}, {count.refused, Lamp::Refused}};
        for (const auto& [parts, lamp] : shares) {
            const int height = barHeight(parts, most, column.height() - 4);
            painter.fillRect(QRect(column.left(), bottom - height, column.width(), height), lampColors(lamp).ground);
            bottom -= height;
        }
        const double yield = count.yield();
        const QString text = yield < 0 ? hourText(m_hours.at(i).begin).left(2) : QString::number(int(yield));
        painter.setPen(yield < 0 ? look.faint : look.text);
        if (painter.fontMetrics().horizontalAdvance(text) <= column.width() + 1)
            painter.drawText(QRect(column.left(), height() - footRoom, column.width() + 1, footRoom), Qt::AlignCenter,
                             text);
    }
}
