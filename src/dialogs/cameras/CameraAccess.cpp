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
    , list(extensionOf<ICameraList>(&coreCtrl))
    , preview(extensionOf<ICameraPreview>(&coreCtrl))
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
