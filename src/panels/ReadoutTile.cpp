#include "panels/ReadoutTile.h"

#include "common/LookColors.h"

#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int captionPixels = 13;
constexpr int smallestDigits = 11;
constexpr int margin = 6;

LookColors::Sign colorsOf(ReadoutTile::Sign sign)
{
    const LookColors& colors = lookColors();
    switch (sign) {
    case ReadoutTile::Good:
        return colors.good;
    case ReadoutTile::Caution:
        return colors.caution;
    case ReadoutTile::Bad:
        return colors.bad;
    case ReadoutTile::Faint:
        return {colors.faint, colors.window};
    case ReadoutTile::Plain:
        break;
    }
    return {colors.text, colors.window};
}

QFont captionFont(QFont font)
{
    font.setPixelSize(captionPixels);
    return font;
}

} // namespace

ReadoutTile::ReadoutTile(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void ReadoutTile::setCaption(const QString& caption)
{
    m_caption = caption;
    update();
}

void ReadoutTile::setValue(const QString& value, Sign sign)
{
    if (value == m_value && sign == m_sign)
        return;
    m_value = value;
    m_sign = sign;
    update();
}

void ReadoutTile::setLeadsOn(bool leadsOn, const QString& tip)
{
    m_leadsOn = leadsOn;
    setCursor(leadsOn ? Qt::PointingHandCursor : Qt::ArrowCursor);
    setToolTip(tip);
}

void ReadoutTile::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_leadsOn && event->button() == Qt::LeftButton && rect().contains(event->pos()))
        emit clicked();
}

QSize ReadoutTile::sizeHint() const
{
    return {2 * minimumSizeHint().width(), minimumSizeHint().height()};
}

QSize ReadoutTile::minimumSizeHint() const
{
    const int digits = qMin(m_maximumDigits, 24);
    return {3 * digits, digits + 2 * margin + (m_caption.isEmpty() ? 0 : captionPixels)};
}

QFont ReadoutTile::fitting(const QRect& room) const
{
    QFont result = font();
    result.setBold(true);
    result.setPixelSize(qBound(smallestDigits, room.height() * 9 / 10, m_maximumDigits));
    while (result.pixelSize() > smallestDigits && QFontMetrics(result).horizontalAdvance(m_value) > room.width())
        result.setPixelSize(result.pixelSize() - 1);
    return result;
}

void ReadoutTile::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const LookColors::Sign colors = colorsOf(m_sign);
    if (m_grounded) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.ground);
        painter.drawRoundedRect(QRectF(rect()), 6, 6);
    }
    QRect room = rect().adjusted(margin, 2, -margin, -2);
    if (!m_caption.isEmpty()) {
        painter.setFont(captionFont(font()));
        painter.setPen(lookColors().faint);
        const int height = painter.fontMetrics().height();
        painter.drawText(room.left(), room.top() + painter.fontMetrics().ascent(), m_caption);
        room.setTop(room.top() + height);
    }
    painter.setFont(fitting(room));
    painter.setPen(colors.ink);
    const int alignment = m_caption.isEmpty() ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter;
    // Digits are never cut off: a wrong value would be read. Only a long text, which is as small as it gets, may be.
    const bool cut = painter.font().pixelSize() <= smallestDigits;
    painter.drawText(room, alignment | Qt::TextDontClip,
                     cut ? painter.fontMetrics().elidedText(m_value, Qt::ElideRight, room.width()) : m_value);
}
