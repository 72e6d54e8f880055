#include "CameraFile.h"

#include <valvecell/HomeFiles.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QSet>

#include <cmath>

namespace {

const auto kCameras = QStringLiteral("cameras");
const auto kKey = QStringLiteral("key");
const auto kType = QStringLiteral("type");

int typeCode(const QJsonValue& value)
{
    const double code = value.toDouble(-1);
    return code >= 0 && code < 1000 && code == std::floor(code) ? int(code) : -1;
}

CameraConfig configOf(const QJsonObject& entry)
{
    CameraConfig config{entry[kKey].toString(), typeCode(entry[kType]), entry.toVariantMap()};
    config.settings.remove(kKey);
    config.settings.remove(kType);
    return config;
}

bool changeEntry(QJsonObject* file, const QString& key, const QVariantMap& settings)
{
    QJsonArray entries = (*file)[kCameras].toArray();
    for (QJsonValueRef value : entries) {
        QJsonObject entry = value.toObject();
        if (entry[kKey].toString() != key)
            continue;
        for (auto it = settings.begin(); it != settings.end(); ++it)
            entry[it.key()] = QJsonValue::fromVariant(it.value());
        value = entry;
        (*file)[kCameras] = entries;
        return true;
    }
    return false;
}

} // namespace

CameraFile::CameraFile(QString path)
    : m_path(std::move(path))
{
}

QVector<CameraConfig> CameraFile::read()
{
    const auto file = HomeFiles::readJson(m_path);
    if (file.state != HomeFiles::JsonRead::Good) {
        qWarning("camera configuration %s", qUtf8Printable(file.error));
        return {};
    }
    m_lastRead = file.object;
    if (!file.object[kCameras].isArray())
        warn(kCameras, "missing, or no list");

    QVector<CameraConfig> configs;
    QSet<QString> known;
    const QJsonArray entries = file.object[kCameras].toArray();
    for (int i = 0; i < entries.size(); ++i) {
        const auto place = QStringLiteral("cameras[%1]").arg(i);
        const CameraConfig config = configOf(entries[i].toObject());
        if (configs.size() == maxCameras) {
            warn(place, "too many cameras, left out from here on");
            break;
        }
        if (config.key.trimmed().isEmpty())
            warn(place, "no object with a \"key\", left out");
        else if (known.contains(config.key))
            warn(place, "the key is taken by an entry above, left out");
        else
            configs.append(config);
        known.insert(config.key);
    }
    return configs;
}

bool CameraFile::store(const QString& key, const QVariantMap& settings, QString* error)
{
    const auto present = HomeFiles::readJson(m_path);
    QJsonObject file = present.state == HomeFiles::JsonRead::Good ? present.object : m_lastRead;
    if (changeEntry(&file, key, settings))
        return HomeFiles::writeJson(m_path, file, error);
    if (error)
        *error = QCoreApplication::translate("CameraFile", "%1 中没有相机“%2”").arg(m_path, key);
    return false;
}

void CameraFile::warn(const QString& place, const char* what) const
{
    qWarning("camera configuration %s, %s: %s", qUtf8Printable(m_path), qUtf8Printable(place), what);
}
