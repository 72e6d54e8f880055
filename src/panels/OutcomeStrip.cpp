#include "panels/OutcomeStrip.h"

#include "common/LookColors.h"
#include "panels/OutcomeColors.h"
#include "panels/PartWords.h"
#include "panels/StationTally.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

OutcomeStrip::OutcomeStrip(QWidget* parent)
    : QWidget(parent)
{
    setMouseTracking(true);
}

void OutcomeStrip::setParts(const QVector<PartRow>& parts)
{
    m_parts = parts;
    update();
}

/// All places together fill the width to the pixel.
QRect OutcomeStrip::barOf(int index) const
{
    constexpr int places = StationTally::partsKept;
    const int place = index + places - m_parts.size();
    const int left = width() * place / places;
    const int right = width() * (place + 1) / places;
    return {left, 0, right - left - 1, height()};
}

int OutcomeStrip::indexAt(const QPoint& position) const
{
    for (int i = 0; i < m_parts.size(); ++i) {
        if (barOf(i).adjusted(0, 0, 1, 0).contains(position))
            return i;
    }
    return -1;
}

void OutcomeStrip::hover(int index)
{
    if (index == m_hovered)
        return;
    m_hovered = index;
    setCursor(index >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    update();
}

bool OutcomeStrip::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    auto* help = static_cast<QHelpEvent*>(event);
    const int index = indexAt(help->pos());
    if (index < 0)
        QToolTip::hideText();
    else
        QToolTip::showText(help->globalPos(), PartWords::tip(m_parts.at(index)), this);
    return true;
}

void OutcomeStrip::mouseReleaseEvent(QMouseEvent* event)
{
    const int index = indexAt(event->pos());
    if (index >= 0 && event->button() == Qt::LeftButton)
        emit partWanted(m_parts.at(index).wall);
}

void OutcomeStrip::mouseMoveEvent(QMouseEvent* event)
{
    hover(indexAt(event->pos()));
}

void OutcomeStrip::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    hover(-1);
}

void OutcomeStrip::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor empty = lookColors().border;
    for (int i = m_parts.size() - StationTally::partsKept; i < 0; ++i) {
        const QRect bar = barOf(i);
        painter.fillRect(QRect(bar.left(), bar.bottom() - 2, bar.width(), 3), empty);
    }
    for (int i = 0; i < m_parts.size(); ++i) {
        const Lamp lamp = lampOf(m_parts.at(i).part.outcome);
        const LampColors colors = lampColors(lamp);
        QRect bar = barOf(i);
        if (lamp == Lamp::Found)
            bar.setTop(bar.bottom() - bar.height() * 6 / 10);
        painter.fillRect(bar, colors.ground);
        const int side = qMin(bar.width() - 2, bar.height() - 4);
        QRect square(0, 0, side, side);
        square.moveCenter(bar.center());
        if (side >= 5)
            paintLampSymbol(painter, lamp, square, colors.ink);
        if (i == m_hovered) {
            painter.setPen(QPen(lookColors().text, 2));
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(bar.adjusted(1, 1, -1, -1));
        }
    }
}
