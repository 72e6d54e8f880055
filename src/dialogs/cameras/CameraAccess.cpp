#include "dialogs/cameras/CameraAccess.h"

#include "config/ksGlobalConfig.h"

QVariantMap editedSettings(const QVariantMap& before, QVariantMap now)
{
    for (auto it = before.begin(); it != before.end(); ++it) {
        if (now.value(it.key()) == it.value())
            now.remove(it.key());
    }
    return now;
}

CameraAccess::CameraAccess(ICoreCtrl& coreCtrl, const ksGlobalConfig& globalConfig)
    : core(coreCtrl)
    , settings(extensionOf<ICameraSettings>(&coreCtrl))
    , described(extensionOf<ICameraParameters>(&coreCtrl))
    , list(extensionOf<ICameraList>(&coreCtrl))
    , preview(extensionOf<ICameraPreview>(&coreCtrl))
    , features(extensionOf<ICameraFeatures>(&coreCtrl))
    , discovery(extensionOf<ICameraDiscovery>(&coreCtrl))
    , config(globalConfig)
{
}

CameraStatus CameraAccess::status(const QString& key) const
{
    return settings ? settings->status(key) : CameraStatus();
}

QVariantMap CameraAccess::settingsOf(const QString& key) const
{
    return settings ? settings->settings(key) : QVariantMap();
}

/// A module of interface version 1.0 describes nothing; of its settings those are known that all modules share.
QVector<CameraParameter> CameraAccess::parameters(CameraType type, const QString& key) const
{
    if (described)
        return described->parameters(type, key);
    const bool present = has(key) && status(key).type == type;
    const QVariantMap settings = present || !list ? settingsOf(key) : list->defaultSettings(type);
    QVector<CameraParameter> known;
    for (CameraParameter parameter : {CameraParameter::exposure(), CameraParameter::gain(),
                                      CameraParameter::transferTime(), CameraParameter::imageFolder()}) {
        if (!settings.contains(parameter.name))
            continue;
        parameter.initial = settings.value(parameter.name);
        known.append(parameter);
    }
    return known;
}

QMap<QString, QString> CameraAccess::missingSettings(const QString& key) const
{
    return features ? features->missingSettings(key) : QMap<QString, QString>();
}

QString CameraAccess::stationsOf(const QString& key) const
{
    QStringList stations;
    for (int number = 1; number <= 2; ++number) {
        if (!key.isEmpty() && config.station(number).camKey == key)
            stations << tr("工位%1").arg(number);
    }
    return stations.join(tr("、"));
}

bool CameraAccess::isInProduction(const QString& key) const
{
    return config.onlineMode && config.stationOfCamera(key) != 0;
}
