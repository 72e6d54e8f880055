#pragma once

#include <QFont>
#include <QString>

class QPainter;
class QRect;

/// The font in the largest size, from `most` down to `least` pixels, in which the text is no wider than `width`.
QFont fittedFont(QFont font, const QString& text, int width, int most, int least);

/// The text on one line in such a font; where even the smallest is too wide, it ends in an ellipsis.
void drawFitted(QPainter& painter, const QRect& room, int alignment, const QString& text, int most, int least);

/// A number whose digits all have the width of the widest, so that none moves when another changes. Ends at the right
/// edge of a text `widest`, which begins at the left of the room; a text without digits begins there itself.
void drawTabular(QPainter& painter, const QRect& room, const QString& text, const QString& widest);
int tabularWidth(const QFont& font, const QString& text);
