#pragma once

#include <QImage>
#include <QString>

/// The text that tells an operator the pixel below the cursor: place, colour as RGB, hue (0 to 179), saturation and
/// value. One pixel past the right and the lower edge still counts as inside, with colour 0; farther out it says so.
QString pixelReadout(const QImage& image, const QPoint& pixel);
