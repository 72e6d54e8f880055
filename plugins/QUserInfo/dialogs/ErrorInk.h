#pragma once

#include <QWidget>

/// A style sheet for what went wrong, to be read on `ground` as it looks at present, light or dark.
inline QString errorInk(const QWidget& ground)
{
    const bool dark = ground.palette().color(QPalette::Window).lightness() < 128;
    return dark ? QStringLiteral("color: #ff9086;") : QStringLiteral("color: #b3211c;");
}
