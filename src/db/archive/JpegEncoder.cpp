#include "db/archive/JpegEncoder.h"

#include <QSysInfo>

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <jpeglib.h>
#include <memory>
#include <vector>

#ifndef JCS_EXTENSIONS
#error "libjpeg-turbo is needed: it takes pixels as they lie in memory"
#endif

namespace {

/// The pixels as the library takes them; a palette turns each byte of an image into a pixel of four.
struct Pixels
{
    QImage image;
    J_COLOR_SPACE order = JCS_GRAYSCALE;
    int bytesAPixel = 1;
    std::vector<quint32> palette;
};

struct Failure
{
    jpeg_error_mgr manager;
    std::jmp_buf escape;
    char text[JMSG_LENGTH_MAX];
};

extern "C" void leaveLibrary(j_common_ptr jpeg)
{
    auto* const failure = reinterpret_cast<Failure*>(jpeg->err);
    jpeg->err->format_message(jpeg, failure->text);
    std::longjmp(failure->escape, 1);
}

/// A pixel of RGB32 is one number, so its bytes lie as the processor orders them.
constexpr J_COLOR_SPACE rgb32Order = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRX : JCS_EXT_XRGB;

Pixels ofPalette(const QImage& image)
{
    if (image.allGray())
        return {image.convertToFormat(QImage::Format_Grayscale8), JCS_GRAYSCALE, 1, {}};
    Pixels pixels{image, rgb32Order, 4, std::vector<quint32>(256, 0)};
    for (int i = 0; i < qMin(image.colorCount(), 256); ++i)
        pixels.palette[static_cast<std::size_t>(i)] = image.color(i);
    return pixels;
}

/// The byte order in memory as libjpeg names it, so that the usual formats are compressed without a copy.
Pixels pixelsOf(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Grayscale8:
        return {image, JCS_GRAYSCALE, 1, {}};
    case QImage::Format_Grayscale16:
        return {image.convertToFormat(QImage::Format_Grayscale8), JCS_GRAYSCALE, 1, {}};
    case QImage::Format_Indexed8:
        return ofPalette(image);
    case QImage::Format_RGB888:
        return {image, JCS_RGB, 3, {}};
    case QImage::Format_BGR888:
        return {image, JCS_EXT_BGR, 3, {}};
    case QImage::Format_RGBX8888:
    case QImage::Format_RGBA8888:
        return {image, JCS_EXT_RGBX, 4, {}};
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
        return {image, rgb32Order, 4, {}};
    default:
        return {image.convertToFormat(QImage::Format_RGB32), rgb32Order, 4, {}};
    }
}

void fillRow(const Pixels& pixels, int y, quint32* row)
{
    const uchar* const line = pixels.image.constScanLine(y);
    const quint32* const palette = pixels.palette.data();
    const int width = pixels.image.width();
    for (int x = 0; x < width; ++x)
        row[x] = palette[line[x]];
}

/// Only the rows of a palette image need `row`; all others are compressed from where they lie.
void writeRows(jpeg_compress_struct* jpeg, const Pixels& pixels, quint32* row)
{
    while (jpeg->next_scanline < jpeg->image_height) {
        const int y = static_cast<int>(jpeg->next_scanline);
        auto* line = const_cast<JSAMPROW>(pixels.image.constScanLine(y));
        if (!pixels.palette.empty()) {
            fillRow(pixels, y, row);
            line = reinterpret_cast<JSAMPROW>(row);
        }
        jpeg_write_scanlines(jpeg, &line, 1);
    }
}

/// Fills `bytes`, which the caller frees. No object with a destructor lives here: an error of the library jumps out.
bool compress(const Pixels& pixels, quint32* row, int quality, Failure* failure, unsigned char** bytes,
              unsigned long* size)
{
    jpeg_compress_struct jpeg;
    jpeg.err = jpeg_std_error(&failure->manager);
    failure->manager.error_exit = leaveLibrary;
    jpeg_create_compress(&jpeg);
    if (setjmp(failure->escape) != 0) {
        jpeg_destroy_compress(&jpeg);
        return false;
    }
    jpeg_mem_dest(&jpeg, bytes, size);
    jpeg.image_width = static_cast<JDIMENSION>(pixels.image.width());
    jpeg.image_height = static_cast<JDIMENSION>(pixels.image.height());
    jpeg.input_components = pixels.bytesAPixel;
    jpeg.in_color_space = pixels.order;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, quality, TRUE);
    jpeg_start_compress(&jpeg, TRUE);
    writeRows(&jpeg, pixels, row);
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    return true;
}

} // namespace

QByteArray encodeJpeg(const QImage& image, int quality, QString* error)
{
    const Pixels pixels = pixelsOf(image);
    std::vector<quint32> row(pixels.palette.empty() ? 0 : static_cast<std::size_t>(image.width()));
    const auto failure = std::make_unique<Failure>();
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    const bool good = !pixels.image.isNull() && compress(pixels, row.data(), quality, failure.get(), &bytes, &size);
    QByteArray file;
    if (good)
        file = QByteArray(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    else
        *error = pixels.image.isNull() ? QStringLiteral("no image") : QString::fromLocal8Bit(failure->text);
    std::free(bytes);
    return file;
}
