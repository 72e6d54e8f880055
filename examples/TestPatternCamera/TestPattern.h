#pragma once

#include <QImage>
#include <QSize>

/// A bright disc, and in it a dark one that goes around by 15 degrees an image, counter-clockwise as seen on the
/// screen, and stands at the right in image 0. Grayscale, 8 bits; null when there is no memory for it. Any thread.
QImage testPattern(const QSize& size, int number);
