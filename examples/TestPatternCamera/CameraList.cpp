#include "CameraList.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>

#include <algorithm>

namespace {

int numberOf(const QJsonObject& entry, const QString& name, int low, int high, int fallback)
{
    const int number = entry[name].toInt(fallback);
    return number >= low && number <= high ? number : fallback;
}

CameraEntry entryOf(const QJsonObject& entry)
{
    const QSize size(numberOf(entry, QStringLiteral("width"), 16, 10000, 1280),
                     numberOf(entry, QStringLiteral("height"), 16, 10000, 1024));
    const int exposure = numberOf(entry, QStringLiteral("exposure_ms"), 0, 3600000, 5);
    return {entry[QStringLiteral("key")].toString().trimmed(), size, std::chrono::milliseconds(exposure)};
}

} // namespace

QVector<CameraEntry> readCameraList()
{
    const auto file = HomeFiles::readJson(HomeFiles::home() + QStringLiteral("/user/camera.json"));
    if (file.state != HomeFiles::JsonRead::Good) {
        qWarning("%s", qUtf8Printable(file.error));
        return {};
    }
    QVector<CameraEntry> cameras;
    const QJsonArray entries = file.object[QStringLiteral("cameras")].toArray();
    for (int i = 0; i < entries.size(); ++i) {
        const CameraEntry camera = entryOf(entries[i].toObject());
        const bool taken = std::any_of(cameras.cbegin(), cameras.cend(),
                                       [&camera](const CameraEntry& other) { return other.key == camera.key; });
        if (camera.key.isEmpty() || taken)
            qWarning("camera.json, cameras[%d]: no \"key\" of its own, left out", i);
        else
            cameras.append(camera);
    }
    return cameras;
}
