#pragma once

#include "CameraCodes.h"

#include <QSize>
#include <QString>
#include <QVariantMap>

/// What a camera is and how it does, at the moment of asking.
struct CameraStatus
{
    CameraType type = CameraType::Unknown;
    CameraState state = CameraState::Uninitialized;
    PixelFormat format = PixelFormat::None; ///< of the last image
    QSize size;                             ///< of the last image, pixels; empty before the first
    QString message;                        ///< what is wrong, in the operator's language; empty when all is well
};

/// Optional interface of a core-control module: state and settings of its cameras. GUI thread; returns at once.
class ICameraSettings
{
public:
    static constexpr const char* id = "valvecell.ICameraSettings/1";

    /// The status of one camera; a default status for an unknown key.
    virtual CameraStatus status(const QString& cameraKey) = 0;

    /// The camera's settings by name, as ICameraParameters describes them. Of a module without that interface the
    /// dialogs show those that CameraParameter makes for all. A camera leaves out what it has not.
    virtual QVariantMap settings(const QString& cameraKey) = 0;

    /// Applies and stores the given settings, leaving others as they are. On failure nothing is changed, false is
    /// returned and `error` says which setting is wrong and why, as CameraParameters::problem() does.
    virtual bool applySettings(const QString& cameraKey, const QVariantMap& settings, QString* error) = 0;

protected:
    ~ICameraSettings() = default;
};
