#pragma once

#include <QString>
#include <QVariantMap>

/// One entry of camera.json.
struct CameraConfig
{
    QString key;          ///< the name by which the program knows the camera; never blank
    int type = 0;         ///< a type code of CameraCodes.h as written; -1 when it is no whole number
    QVariantMap settings; ///< everything else of the entry
};
