#include "CameraFile.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

const auto camerasKey = QStringLiteral("cameras");
const auto keyKey = QStringLiteral("key");
const auto typeKey = QStringLiteral("type");

int typeCode(const QJsonValue& value)
{
    const double code = value.toDouble(-1);
    return code >= 0 && code < 1000 && code == std::floor(code) ? int(code) : -1;
}

CameraConfig configOf(const QJsonObject& entry)
{
    CameraConfig config{entry[keyKey].toString(), typeCode(entry[typeKey]), entry.toVariantMap()};
    config.settings.remove(keyKey);
    config.settings.remove(typeKey);
    return config;
}

QJsonObject merged(QJsonObject entry, const QVariantMap& settings)
{
    for (auto it = settings.begin(); it != settings.end(); ++it)
        entry[it.key()] = QJsonValue::fromVariant(it.value());
    return entry;
}

QJsonObject merged(QJsonObject entry, const CameraConfig& config)
{
    entry[keyKey] = config.key;
    entry[typeKey] = config.type;
    return merged(entry, config.settings);
}

/// The place of a camera among the entries; -1 when there is none.
int indexOf(const QJsonArray& entries, const QString& key)
{
    for (int i = 0; i < entries.size(); ++i) {
        if (entries[i].toObject()[keyKey].toString() == key)
            return i;
    }
    return -1;
}

} // namespace

CameraFile::CameraFile(QString path)
    : m_path(std::move(path))
{
}

/// A key may end up in the name of a file, on any system.
QString CameraFile::keyProblem(const QString& key)
{
    constexpr int longest = 64;
    if (key.trimmed().isEmpty())
        return tr("相机名称不能为空");
    if (key != key.trimmed() || key.startsWith(QLatin1Char('.')) || key.endsWith(QLatin1Char('.')))
        return tr("相机名称不能以空格或点开头或结尾");
    if (key.size() > longest)
        return tr("相机名称不能超过 %1 个字符").arg(longest);
    const auto bad = std::find_if(key.begin(), key.end(),
                                  [](QChar c) { return !c.isPrint() || QStringLiteral("/\\:*?\"<>|'").contains(c); });
    return bad == key.end() ? QString() : tr("相机名称不能含有字符“%1”").arg(*bad);
}

QVector<CameraConfig> CameraFile::read()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto file = HomeFiles::readJson(m_path);
    if (file.state != HomeFiles::JsonRead::Good) {
        qWarning("camera configuration %s", qUtf8Printable(file.error));
        return {};
    }
    m_lastRead = file.object;
    if (!file.object[camerasKey].isArray())
        warn(camerasKey, "missing, or no list");

    QVector<CameraConfig> configs;
    QSet<QString> known;
    const QJsonArray entries = file.object[camerasKey].toArray();
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

QJsonObject CameraFile::present() const
{
    const auto file = HomeFiles::readJson(m_path);
    return file.state == HomeFiles::JsonRead::Good ? file.object : m_lastRead;
}

bool CameraFile::fail(QString* error, const QString& reason)
{
    if (error)
        *error = reason;
    return false;
}

bool CameraFile::store(const QString& key, const QVariantMap& settings, QString* error)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QJsonObject file = present();
    QJsonArray entries = file[camerasKey].toArray();
    const int at = indexOf(entries, key);
    if (at < 0)
        return fail(error, tr("%1 中没有相机“%2”").arg(m_path, key));
    entries[at] = merged(entries[at].toObject(), settings);
    file[camerasKey] = entries;
    return HomeFiles::writeJson(m_path, file, error);
}

bool CameraFile::change(QVector<CameraConfig>* known, const QVector<CameraConfig>& added, const QStringList& removed,
                        QString* error)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QJsonObject file = present();
    QJsonArray entries = file[camerasKey].toArray();
    for (const QString& key : removed) {
        for (int at; (at = indexOf(entries, key)) >= 0;) // a key may be there twice, of which the first counted
            entries.removeAt(at);
    }
    for (CameraConfig& config : *known) {
        const int at = indexOf(entries, config.key);
        if (at < 0)
            return fail(error, tr("%1 中没有相机“%2”").arg(m_path, config.key));
        entries[at] = merged(entries[at].toObject(), config);
        config = configOf(entries[at].toObject());
    }
    for (const CameraConfig& config : added) {
        if (indexOf(entries, config.key) >= 0)
            return fail(error, tr("%1 中已有相机“%2”，重新启动后生效").arg(m_path, config.key));
        entries.append(merged(QJsonObject(), config));
    }
    if (entries.isEmpty() || entries.size() > maxCameras)
        return fail(error, tr("相机数量必须在 1 到 %1 之间").arg(maxCameras));
    file[camerasKey] = entries;
    return HomeFiles::writeJson(m_path, file, error);
}

void CameraFile::warn(const QString& place, const char* what) const
{
    qWarning("camera configuration %s, %s: %s", qUtf8Printable(m_path), qUtf8Printable(place), what);
}
