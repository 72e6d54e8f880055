#pragma once

#include <valvecell/ICameraParameters.h>

/// The cameras as the plant configured them in "user/camera.json" in the home, the file of the bundled core control:
///
///     {"cameras": [{"key": "cam1", "width": 1280, "height": 1024, "exposure_ms": 5}, ...]}
namespace CameraList {

/// One camera: the name by which the program knows it, and a value for each parameter.
struct Entry
{
    QString key;
    QVariantMap settings;
};

/// What each camera can be set to; the dialogs show a field for each, and the file is checked by them.
QVector<CameraParameter> parameters();

/// "key" alone is needed; a setting that is missing or wrong gets its initial value. Empty when the file cannot be
/// read. What is wrong is reported by a warning that names file and place.
QVector<Entry> read();

/// Stores some settings of one camera and leaves all else in the file as it is. False with the reason when it cannot be
/// written.
bool store(const QString& key, const QVariantMap& settings, QString* error);

} // namespace CameraList
