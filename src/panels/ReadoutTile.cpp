#include "panels/ReadoutTile.h"

#include "common/LookColors.h"
#include "panels/TextFit.h"

#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int captionPixels = 13;
constexpr int leastCaption = 10;
constexpr int flatShape = 5;    ///< width to height from which on the caption stands beside the value
constexpr int leastBeside = 56; ///< so that the values of tiles below each other begin alike
constexpr int smallestDigits = 11;
constexpr int margin = 6;

QColor inkOf(ReadoutTile::Sign sign)
{
    const LookColors& colors = lookColors();
    switch (sign) {
    case ReadoutTile::Good:
        return colors.good.ink;
    case ReadoutTile::Caution:
        return colors.caution.ink;
    case ReadoutTile::Bad:
        return colors.bad.ink;
    case ReadoutTile::Faint:
        return colors.faint;
    case ReadoutTile::Plain:
        break;
    }
    return colors.text;
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

void ReadoutTile::setFoot(const QString& foot)
{
    m_foot = foot;
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
    const auto width = [this](const QFont& font) {
        return m_widest.isEmpty() ? QFontMetrics(font).horizontalAdvance(m_value) : tabularWidth(font, m_widest);
    };
    while (result.pixelSize() > smallestDigits && width(result) > room.width())
        result.setPixelSize(result.pixelSize() - 1);
    return result;
}

void ReadoutTile::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QRect room = rect().adjusted(margin, 2, -margin, -2);
    painter.setPen(lookColors().faint);
    const int line = QFontMetrics(captionFont(font())).height();
    if (!m_caption.isEmpty() && width() > flatShape * height()) { // beside the value, which so is the larger
        const int beside = qMax(leastBeside, QFontMetrics(captionFont(font())).horizontalAdvance(m_caption) + margin);
        drawFitted(painter, QRect(room.left(), room.top(), beside, room.height()), Qt::AlignLeft | Qt::AlignVCenter,
                   m_caption, captionPixels, leastCaption);
        room.setLeft(room.left() + beside);
    } else if (!m_caption.isEmpty()) {
        drawFitted(painter, QRect(room.left(), room.top(), room.width(), line), Qt::AlignLeft | Qt::AlignVCenter,
                   m_caption, captionPixels, leastCaption);
        room.setTop(room.top() + line);
    }
    if (!m_foot.isEmpty()) {
        painter.setFont(font());
        drawFitted(painter, QRect(room.left(), room.bottom() + 1 - line, room.width(), line),
                   Qt::AlignLeft | Qt::AlignVCenter, m_foot, captionPixels, leastCaption);
        room.setBottom(room.bottom() - line);
    }
    painter.setFont(fitting(room));
    painter.setPen(inkOf(m_sign));
    paintNumber(painter, room);
}

/// Digits are never cut off: a wrong value would be read. Only a long text, which is as small as it gets, may be.
void ReadoutTile::paintNumber(QPainter& painter, const QRect& room) const
{
    if (!m_widest.isEmpty())
        return drawTabular(painter, room, m_value, m_widest);
    const bool cut = painter.font().pixelSize() <= smallestDigits;
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                     cut ? painter.fontMetrics().elidedText(m_value, Qt::ElideRight, room.width()) : m_value);
}
