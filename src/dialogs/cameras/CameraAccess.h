#pragma once

#include <valvecell/Extension.h>
#include <valvecell/ICameraDiscovery.h>
#include <valvecell/ICameraFeatures.h>
#include <valvecell/ICameraList.h>
#include <valvecell/ICameraParameters.h>
#include <valvecell/ICameraPreview.h>
#include <valvecell/ICameraSettings.h>
#include <valvecell/ICoreCtrl.h>

#include <QCoreApplication>

class ksGlobalConfig;

/// Of settings as they stand now those that were edited, so that what another window changed meanwhile stays.
QVariantMap editedSettings(const QVariantMap& before, QVariantMap now);

/// The cameras as the dialogs reach them, through a core control that may offer any of its optional interfaces or
/// none. GUI thread.
struct CameraAccess
{
    Q_DECLARE_TR_FUNCTIONS(CameraAccess)

public:
    /// Both outlive the access.
    CameraAccess(ICoreCtrl& core, const ksGlobalConfig& config);

    bool has(const QString& key) const { return core.cameraKeys().contains(key); }
    CameraStatus status(const QString& key) const;
    QVariantMap settingsOf(const QString& key) const;
    /// What cameras of a type can be set to; `key` is empty for a new one.
    QVector<CameraParameter> parameters(CameraType type, const QString& key) const;

    /// The settings that a camera has not, and why.
    QMap<QString, QString> missingSettings(const QString& key) const;

    /// The stations that use a camera, in the operator's language; empty for none.
    QString stationsOf(const QString& key) const;
    /// Whether a picture to look at could cost a part its time: the camera is a station's, and the cell runs online.
    bool isInProduction(const QString& key) const;

    ICoreCtrl& core;
    ICameraSettings* settings; ///< may be null, as the next five
    ICameraParameters* described;
    ICameraList* list;
    ICameraPreview* preview;
    ICameraFeatures* features;
    ICameraDiscovery* discovery;
    const ksGlobalConfig& config;
};
