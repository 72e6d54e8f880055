#include "CameraFile.h"
#include "CameraSettings.h"
#include "Harness.h"

namespace {

QVector<CameraParameter> parameters()
{
    return {CameraParameter::exposure(), CameraParameter::gain(), CameraParameter::transferTime(),
            CameraParameter::imageFolder()};
}

} // namespace

FUZZ_TARGET(cameras)
{
    CameraFile file(fuzz::homeFile("/user/camera.json", bytes));
    const QVector<CameraConfig> cameras = file.read();
    fuzz::require(cameras.size() <= CameraFile::maxCameras, "no more cameras than a cell has");
    QStringList keys;
    for (const CameraConfig& camera : cameras) {
        fuzz::require(!camera.key.trimmed().isEmpty() && !keys.contains(camera.key), "each camera has its own key");
        fuzz::require(camera.type >= -1 && camera.type < 1000, "a type is a code or none");
        keys << camera.key;
        CameraSettings settings(camera.key, parameters);
        settings.takeOver(camera.settings);
        for (const CameraParameter& parameter : parameters())
            fuzz::require(parameter.isRight(settings.values().value(parameter.name)) ||
                              settings.values().value(parameter.name) == parameter.initial,
                          "a setting is right, or that of a new camera");
    }
}
