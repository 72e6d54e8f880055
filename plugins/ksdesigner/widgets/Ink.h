#pragma once

#include <QWidget>

/// Text colours that can be read on the window as it looks at present, light or dark.
enum class Ink { Caution, Trouble };

/// As a style sheet for a text on `ground`.
inline QString inkStyle(Ink ink, const QWidget& ground)
{
    const bool dark = ground.palette().color(QPalette::Window).lightness() < 128;
    if (ink == Ink::Caution)
        return dark ? QStringLiteral("color: #ffc861;") : QStringLiteral("color: #855000;");
    return dark ? QStringLiteral("color: #ff9086;") : QStringLiteral("color: #b3261e;");
}
