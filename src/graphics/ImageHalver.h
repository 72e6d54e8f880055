#pragma once

#include <QImage>

/// The image at half its size, rounded up: each pixel is the mean of up to four. Gray8, RGB32 or premultiplied ARGB32.
/// Any thread.
QImage halved(const QImage& image);
