#pragma once

#include <QByteArray>
#include <QImage>

/// The image as a JPEG file, without converting its pixels first where the format allows it: gray images become gray
/// files, and colours go in as they lie in memory. Quality 0 to 100. Empty on failure, with the reason. Any thread.
QByteArray encodeJpeg(const QImage& image, int quality, QString* error);
