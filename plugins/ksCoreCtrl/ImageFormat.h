#pragma once

#include <valvecell/CameraCodes.h>

#include <QImage>

/// The code that stands for the format of an image in a camera's status.
PixelFormat pixelFormat(const QImage& image);
