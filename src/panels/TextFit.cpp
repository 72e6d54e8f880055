#include "panels/TextFit.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {

int digitWidth(const QFontMetrics& metrics)
{
    int width = 0;
    for (char digit = '0'; digit <= '9'; ++digit)
        width = qMax(width, metrics.horizontalAdvance(QLatin1Char(digit)));
    return width;
}

int cellWidth(const QFontMetrics& metrics, QChar character, int digit)
{
    return character.isDigit() ? digit : metrics.horizontalAdvance(character);
}

} // namespace

QFont fittedFont(QFont font, const QString& text, int width, int most, int least)
{
    font.setPixelSize(qMax(most, least));
    while (font.pixelSize() > least && QFontMetrics(font).horizontalAdvance(text) + 1 > width)
        font.setPixelSize(font.pixelSize() - 1);
    return font;
}

void drawFitted(QPainter& painter, const QRect& room, int alignment, const QString& text, int most, int least)
{
    painter.setFont(fittedFont(painter.font(), text, room.width(), most, least));
    painter.drawText(room, alignment, painter.fontMetrics().elidedText(text, Qt::ElideRight, room.width()));
}

int tabularWidth(const QFont& font, const QString& text)
{
    const QFontMetrics metrics(font);
    const int digit = digitWidth(metrics);
    int width = 0;
    for (const QChar character : text)
        width += cellWidth(metrics, character, digit);
    return width;
}

void drawTabular(QPainter& painter, const QRect& room, const QString& text, const QString& widest)
{
    const QFontMetrics metrics = painter.fontMetrics();
    if (std::none_of(text.begin(), text.end(), [](QChar character) { return character.isDigit(); })) {
        painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter, text);
        return;
    }
    const int digit = digitWidth(metrics);
    const int baseline = room.top() + (room.height() + metrics.capHeight()) / 2;
    int x = room.left() + qMax(0, tabularWidth(painter.font(), widest) - tabularWidth(painter.font(), text));
    for (const QChar character : text) {
        const int width = cellWidth(metrics, character, digit);
        painter.drawText(x + (width - metrics.horizontalAdvance(character)) / 2, baseline, character);
        x += width;
    }
}
