#pragma once

#include <QImage>
#include <QString>

/// The picture of a station's field of view that its calibration is made on, kept as a JPEG file in the home.
namespace ReferenceImage {

/// Of station 1 or 2.
QString path(int station);

/// Reads any image file, by its content and not by its suffix. Empty, with the reason, when it is missing, damaged, no
/// image or larger than 200 megapixels. Any thread.
QImage read(const QString& path, QString* error = nullptr);

struct Replaced
{
    QImage image;  ///< the chosen one; empty when it could not be read
    QString error; ///< why it could not be read or kept
};

/// Deletes `target`, then reads `chosen` and writes it to `target`. In this order on purpose: whoever chooses the
/// target itself has no reference image afterwards. Any thread.
Replaced replace(const QString& target, const QString& chosen);

} // namespace ReferenceImage
