#pragma once

#include <QImage>
#include <QString>

/// Writes an image in one step, so that a file is whole or not there; its folder is made. Returns false with file and
/// reason. Any thread.
/// \param format as in "jpg"; empty: by the file's suffix
bool writeImageFile(const QImage& image, const QString& path, const QByteArray& format, QString* error);
