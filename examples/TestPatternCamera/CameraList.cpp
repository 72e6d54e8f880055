#include "CameraList.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>

#include <algorithm>

namespace CameraList {
namespace {

QString filePath()
{
    return HomeFiles::home() + QStringLiteral("/user/camera.json");
}

QString keyOf(const QJsonValue& entry)
{
    return entry.toObject()[QStringLiteral("key")].toString().trimmed();
}

CameraParameter pixels(const char* name, const QString& caption, int initial)
{
    const QString unit = QCoreApplication::translate("CameraList", "像素");
    return {QString::fromLatin1(name), caption, CameraParameter::Kind::Whole, initial, 16, 10000, unit, {}, {}};
}

QVariantMap settingsOf(const QString& key, const QVariantMap& entry)
{
    QVariantMap settings = CameraParameters::initialValues(parameters());
    const QStringList names = settings.keys();
    for (const QString& name : names) {
        if (!entry.contains(name))
            continue;
        const QString problem = CameraParameters::problem(key, parameters(), {{name, entry[name]}});
        if (problem.isEmpty())
            settings[name] = entry[name];
        else
            qWarning("camera.json: %s", qUtf8Printable(problem));
    }
    return settings;
}

} // namespace

QVector<CameraParameter> parameters()
{
    CameraParameter exposure = CameraParameter::exposure();
    exposure.maximum = 3600000;
    return {pixels("width", QCoreApplication::translate("CameraList", "宽度(&W)"), 1280),
            pixels("height", QCoreApplication::translate("CameraList", "高度(&H)"), 1024), exposure};
}

QVector<Entry> read()
{
    const auto file = HomeFiles::readJson(filePath());
    if (file.state != HomeFiles::JsonRead::Good) {
        qWarning("%s", qUtf8Printable(file.error));
        return {};
    }
    QVector<Entry> cameras;
    const QJsonArray entries = file.object[QStringLiteral("cameras")].toArray();
    for (int i = 0; i < entries.size(); ++i) {
        const QString key = keyOf(entries[i]);
        const bool taken =
            std::any_of(cameras.cbegin(), cameras.cend(), [&key](const Entry& other) { return other.key == key; });
        if (key.isEmpty() || taken)
            qWarning("camera.json, cameras[%d]: no \"key\" of its own, left out", i);
        else
            cameras.append({key, settingsOf(key, entries[i].toObject().toVariantMap())});
    }
    return cameras;
}

bool store(const QString& key, const QVariantMap& settings, QString* error)
{
    QJsonObject file = HomeFiles::readJson(filePath()).object;
    QJsonArray entries = file[QStringLiteral("cameras")].toArray();
    for (int i = 0; i < entries.size(); ++i) {
        if (keyOf(entries[i]) != key)
            continue;
        QJsonObject entry = entries[i].toObject();
        for (auto it = settings.begin(); it != settings.end(); ++it)
            entry[it.key()] = QJsonValue::fromVariant(it.value());
        entries[i] = entry;
        file[QStringLiteral("cameras")] = entries;
        return HomeFiles::writeJson(filePath(), file, error);
    }
    if (error)
        *error = QCoreApplication::translate("CameraList", "camera.json 中没有相机“%1”").arg(key);
    return false;
}

} // namespace CameraList
