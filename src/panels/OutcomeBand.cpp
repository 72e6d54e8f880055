#include "panels/OutcomeBand.h"

#include "common/LookColors.h"
#include "panels/TextFit.h"

#include <QPainter>

namespace {

constexpr int bandMargin = 12;

void paintHatch(QPainter& painter, const QRect& room, QColor ink)
{
    ink.setAlpha(70);
    painter.setBrush(QBrush(ink, Qt::BDiagPattern));
    painter.setPen(QPen(ink, 6, Qt::DashLine));
    painter.drawRoundedRect(room.adjusted(3, 3, -3, -3), 6, 6);
}

} // namespace

OutcomeBand::OutcomeBand(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void OutcomeBand::setContent(const Content& content)
{
    m_content = content;
    setToolTip(content.part.isEmpty() ? QString() : content.part + QLatin1Char('\n') + content.sent);
    setAccessibleName(content.word);
    update();
}

void OutcomeBand::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const LampColors colors = lampColors(m_content.lamp);
    painter.setPen(lookColors().border);
    painter.setBrush(colors.ground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
    if (m_content.test)
        paintHatch(painter, rect(), colors.ink);

    const int side = height() * 6 / 10;
    paintLampSymbol(painter, m_content.lamp, QRectF(bandMargin, (height() - side) / 2.0, side, side), colors.ink);

    painter.setPen(colors.ink);
    const QRect room = rect().adjusted(2 * bandMargin + side, 4, -bandMargin, -4);
    QFont large = font();
    large.setBold(true);
    const bool alone = m_content.part.isEmpty() && m_content.sent.isEmpty();
    const int most = height() / 2;
    large = fittedFont(large, m_content.word, alone ? room.width() : room.width() * 48 / 100, most, 15);
    painter.setFont(large);
    const int wordWidth = QFontMetrics(large).horizontalAdvance(m_content.word);
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetrics(large).elidedText(m_content.word, Qt::ElideRight, room.width()));
    if (alone)
        return;
    const QRect lines = room.adjusted(wordWidth + bandMargin, 0, 0, 0);
    const QRect upper(lines.left(), lines.top(), lines.width(), lines.height() / 2);
    const int small = qBound(13, height() / 4, 22);
    painter.setFont(font());
    drawFitted(painter, upper, Qt::AlignRight | Qt::AlignVCenter, m_content.part, small, 12);
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    drawFitted(painter, upper.translated(0, upper.height()), Qt::AlignRight | Qt::AlignVCenter, m_content.sent, small,
               12);
}
