#pragma once

#include <QColor>

class QPainter;
class QRectF;
class QString;
enum class PartOutcome : int;

/// The lamp of a station: what its last part became, or that none is known.
enum class Lamp { Waiting, Found, NotFound, Refused };

/// The colours of a lamp, the same in every look, so that a station across the hall is read without knowing its look.
/// Each two grounds are at least 2 to 1 apart in relative luminance, for people without red, green or blue cones too;
/// ink on ground has a contrast of at least 4.5 to 1 (WCAG 2.1).
struct LampColors
{
    QColor ground;
    QColor ink;
};

LampColors lampColors(Lamp lamp);

Lamp lampOf(PartOutcome outcome);

/// Tick, cross, exclamation mark or three dots, drawn within a square, so that no font has to have it.
void paintLampSymbol(QPainter& painter, Lamp lamp, const QRectF& square, const QColor& ink);
