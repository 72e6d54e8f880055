#include "shell/StatePill.h"

#include "common/LookColors.h"
#include "look/LookIcon.h"

#include <QEvent>
#include <QIcon>
#include <QPainter>

namespace {

constexpr int pillHeight = 44;
constexpr int symbol = 22;
constexpr int margin = 7;
constexpr int captionPixels = 12;
constexpr int wordPixels = 15;

LookColors::Sign inkOf(StateFace::Sign sign)
{
    const LookColors& colors = lookColors();
    switch (sign) {
    case StateFace::Off:
        return {colors.faint, colors.window};
    case StateFace::Good:
        return {colors.good.ink, colors.card};
    case StateFace::Caution:
        return colors.caution;
    case StateFace::Bad:
        break;
    }
    return colors.bad;
}

QFont fontOf(QFont font, int pixels, bool bold)
{
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

bool isSame(const StateFace& a, const StateFace& b)
{
    return a.name == b.name && a.icon == b.icon && a.sign == b.sign && a.word == b.word && a.caption == b.caption &&
           a.hint == b.hint;
}

} // namespace

StatePill::StatePill(QWidget* parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
}

void StatePill::setFace(const StateFace& face)
{
    if (isSame(face, m_face))
        return;
    m_face = face;
    setObjectName(QLatin1String(face.name));
    describe();
    update();
}

/// A reader of the screen hears what the eye sees.
void StatePill::describe()
{
    setAccessibleName(m_face.caption + QLatin1Char(' ') + m_face.word);
    setToolTip(QStringLiteral("%1: %2\n%3").arg(m_face.caption, m_face.word, m_face.hint));
    setText(m_face.word);
}

QSize StatePill::sizeHint() const
{
    const int caption = QFontMetrics(fontOf(font(), captionPixels, false)).horizontalAdvance(m_face.caption);
    const int word = QFontMetrics(fontOf(font(), wordPixels, true)).horizontalAdvance(m_face.word);
    return {3 * margin + symbol + qMax(caption, word), pillHeight};
}

QSize StatePill::minimumSizeHint() const
{
    return {3 * margin + symbol + 30, pillHeight};
}

void StatePill::paintEvent(QPaintEvent*)
{
    const LookColors::Sign sign = inkOf(m_face.sign);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool stands = hasFocus() || underMouse();
    painter.setPen(QPen(hasFocus() ? lookColors().accent
                        : stands   ? sign.ink
                                   : lookColors().border,
                        hasFocus() ? 2 : 1));
    painter.setBrush(isDown() ? lookColors().border : sign.ground);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 7, 7);
    const QIcon drawn(QStringLiteral(":/toolbar/Resource/toolBar/%1.png").arg(QLatin1String(m_face.icon)));
    LookIcon::tinted(drawn, sign.ink).paint(&painter, margin, (pillHeight - symbol) / 2, symbol, symbol);
    const int left = 2 * margin + symbol;
    const int room = width() - left - margin;
    const auto write = [&](const QString& text, int top, int pixels, bool bold, const QColor& ink) {
        painter.setFont(fontOf(font(), pixels, bold));
        painter.setPen(ink);
        const QString shown = painter.fontMetrics().elidedText(text, Qt::ElideRight, room);
        painter.drawText(QRect(left, top, room, pillHeight / 2), Qt::AlignVCenter | Qt::AlignLeft, shown);
    };
    write(m_face.caption, 2, captionPixels, false, m_face.sign >= StateFace::Caution ? sign.ink : lookColors().faint);
    write(m_face.word, pillHeight / 2 - 3, wordPixels, true, sign.ink);
}

void StatePill::changeEvent(QEvent* event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        update();
}
