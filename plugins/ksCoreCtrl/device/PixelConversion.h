#pragma once

#include <QImage>

/// One picture as a device delivers it.
struct RawImage
{
    const uchar* data = nullptr;
    size_t size = 0; ///< bytes
    int width = 0;
    int height = 0;
    quint32 format = 0;  ///< a code of the Pixel Format Naming Convention of GenICam
    int linePadding = 0; ///< bytes behind each line
};

/// From the pixel formats of cameras to those of the program. Pure functions.
///
/// Gray of any depth becomes Format_Grayscale8: of 10 to 16 bits the upper 8 are kept, since the engine judges 8 bits,
/// and images travel and are stored in half the time. Colour filter arrays, YUV and RGB become Format_RGB888 or
/// Format_BGR888.
namespace PixelConversion {

/// The standard's name, or the code in hexadecimal digits.
QString name(quint32 format);
bool isKnown(quint32 format);

/// Whether the lines can be used as they are, as Format_Grayscale8.
bool isPlainGray(quint32 format);
/// The bytes that such a picture has at least; 0 for an unknown format or a size that makes no sense.
size_t bytesNeeded(const RawImage& raw);

/// An image with memory of its own; null for an unknown format, or when data are missing.
QImage convert(const RawImage& raw);

} // namespace PixelConversion
