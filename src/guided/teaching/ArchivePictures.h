#pragma once

#include <QString>
#include <QVector>

/// The last pictures that a station's camera took of parts, as the archive holds them. Pure functions; any thread.
namespace ArchivePictures {

/// Absolute paths, the latest first, at most `most`. `home`: without a separator at its end.
QStringList latest(const QString& home, int station, int most);

} // namespace ArchivePictures
