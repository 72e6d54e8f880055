#pragma once

#include "CameraCodes.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

/// A configured camera.
struct CameraEntry
{
    QString key; ///< the name by which stations and images refer to it
    CameraType type = CameraType::Unknown;
    QVariantMap settings; ///< by the names of ICameraSettings
};

/// Optional interface of a core-control module: which cameras there are. GUI thread; returns at once.
class ICameraList
{
public:
    static constexpr const char* id = "valvecell.ICameraList/1";

    /// The types of camera that the module can drive.
    virtual QVector<CameraType> drivenTypes() = 0;

    /// All settings that a camera of that type has, with the values that a new one starts with: those of
    /// CameraParameters::initialValues(). Empty for a type that the module cannot drive.
    virtual QVariantMap defaultSettings(CameraType type) = 0;

    /// Whether a new camera may have that key; if not, `error` says why. Keys hold up to 64 characters, none of which
    /// is a control character or has a meaning in file names.
    virtual bool isNewKey(const QString& key, QString* error) = 0;

    /// Removes cameras, and adds those of `put` or changes those whose key is known already, in one step; what is
    /// stored of all other cameras stays as it is, what was changed in their file by hand included. A changed camera
    /// keeps those settings that are not named; one that changes its type starts with the named ones. Takes effect at
    /// once: cameraKeys() names the new list when the call returns, and a capture in hand of a camera that goes may
    /// still be delivered. At least one camera has to stay. On failure nothing is changed, false is returned and
    /// `error` says what is wrong and why.
    virtual bool changeCameras(const QVector<CameraEntry>& put, const QStringList& removed, QString* error) = 0;

protected:
    ~ICameraList() = default;
};
