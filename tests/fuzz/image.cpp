#include "Harness.h"
#include "common/ImageFile.h"
#include "finder/ImageConversion.h"

/// An image file as a camera's folder or a person gives it, up to what the engine makes of it.
FUZZ_TARGET(image)
{
    const ImageFile file = ImageFile::read(fuzz::homeFile("/image", bytes));
    fuzz::require(file.image.isNull() == !file.reason.isEmpty(), "an image that is refused has its reason");
    if (file.image.isNull())
        return;
    const qint64 pixels = qint64(file.image.width()) * file.image.height();
    fuzz::require(pixels <= ImageFile::maxPixels, "no larger image than can be held");
    if (pixels < 1'000'000) {
        const finder::GrayImage gray = finder::toGray(file.image);
        fuzz::require(gray.gray.cols == file.image.width() && gray.gray.rows == file.image.height(),
                      "the engine sees the whole image");
    }
}
