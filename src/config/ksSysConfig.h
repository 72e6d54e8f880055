#pragma once

#include "config/ks_singleton_base.h"

#include <QObject>
#include <QString>

class QSettings;

/// The operator-level settings, kept in "//user//systemConfig.ini" below the home. Change the fields, then save().
/// GUI thread; only instance() may be called from any.
class ksSysConfig : public QObject, public ks_singleton_base<ksSysConfig>
{
    Q_OBJECT

public:
    ksSysConfig();

    QString comPort = QStringLiteral("COM3"); ///< serial port name or device path
    qint32 baudRate = 115200;
    QString language = QStringLiteral("Chinese");
    QString appDir;                        ///< the home; not stored
    qint32 cleanDays = 7;                  ///< days that images are kept
    qint32 cleanDirDays = 30;              ///< days that folders are kept
    qint32 minFreeSpace = 10;              ///< GiB that are to stay free
    bool cleanSrcImages = false;           ///< delete source images by age
    bool cleanRltImages = false;           ///< delete result images by age
    qint32 filterTime = 10;                ///< triggers that the burst filter refuses before it takes one
    bool saveSrcImage[2] = {false, false}; ///< archive source images of station 1, 2
    bool saveRltImage[2] = {false, false}; ///< archive result images of station 1, 2
    QString filePath;                      ///< not stored

    /// Reads all keys; a missing file or key, or a value that does not convert, yields the default.
    void load();

    /// Writes all thirteen keys, replacing the file in one step; other keys of the file stay. A file that is no INI
    /// file is kept beside it first. Returns false when the file could not be written.
    bool save();
};
