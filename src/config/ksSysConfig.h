#pragma once

#include "config/ConfigVisitors.h"
#include "config/ks_singleton_base.h"

#include <QObject>

/// The operator-level settings, kept in "//user//systemConfig.ini" below the home. Change the fields, then save().
/// GUI thread; only instance() may be called from any.
class ksSysConfig : public QObject, public ks_singleton_base<ksSysConfig>
{
    Q_OBJECT

public:
    /// Gives every field its default.
    ksSysConfig();

    QString comPort; ///< serial port name or device path
    qint32 baudRate{};
    QString language;          ///< the name of its folder
    QString appDir;            ///< the home; not stored
    qint32 cleanDays{};        ///< days that images are kept
    qint32 cleanDirDays{};     ///< days that folders are kept
    qint32 failedDays{};       ///< days that images of parts that were not found are kept; 0: as the others
    qint32 recordDays{};       ///< days that results and the system log are kept; 0: for ever
    qint32 minFreeSpace{};     ///< GiB that are to stay free
    bool cleanSrcImages{};     ///< delete source images by age
    bool cleanRltImages{};     ///< delete result images by age
    qint32 filterTime{};       ///< triggers that the burst filter refuses before it takes one
    bool saveSrcImage[2] = {}; ///< archive source images of station 1, 2
    bool saveRltImage[2] = {}; ///< archive result images of station 1, 2
    bool saveOnlyFailed{};     ///< of both, only those of parts that were not found
    QString loadProblem;       ///< what load() found wrong at the start; not stored
    QString filePath;          ///< not stored

    /// What the keys of a group begin with, for those who act when one of them changes.
    static constexpr const char* languageGroup = "language/";
    static constexpr const char* lineGroup = "COM/";
    static constexpr const char* cleanerGroup = "CheckThread/";

    /// Reads all keys; a missing file or key, or a value that does not convert, yields the default. The latter and
    /// lines that are none of an INI file are warnings, with file and place. Returns false with the reason in `problem`
    /// when the file is no INI file and was kept aside.
    bool load(QString* problem = nullptr);

    /// Writes all keys, replacing the file in one step; other keys of the file stay. A file of which something would be
    /// lost, such as a value that does not convert, is kept beside it first. Returns false when the file could not be
    /// written.
    bool save();

    /// Every key of the file, in the order in which they are read and written; see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        visitor.setting({languageGroup, "select"}, language, "Chinese");
        visitor.setting({lineGroup, "Port"}, comPort, "COM3");
        visitor.setting({lineGroup, "Baute"}, baudRate, 115200, {1, 10000000}); // spelled so in every plant's file
        visitor.setting({cleanerGroup, "days"}, cleanDays, 7, {1, 36500});
        visitor.setting({cleanerGroup, "days_dir"}, cleanDirDays, 30, {1, 36500});
        visitor.addition({cleanerGroup, "days_failed"}, failedDays, 0, {0, 36500});
        visitor.addition({cleanerGroup, "days_records"}, recordDays, 1095, {0, 36500});
        visitor.setting({cleanerGroup, "spacesize"}, minFreeSpace, 10, {0, 1000000});
        visitor.setting({cleanerGroup, "Enable_RltImg"}, cleanRltImages, false);
        visitor.setting({cleanerGroup, "Enable_SrcImg"}, cleanSrcImages, false);
        visitor.setting("TrigDetector/FilterTime", filterTime, 10, {0, 1000});
        for (int i = 0; i < 2; ++i)
            visitor.setting({"Image/SrcImgSave_st#", i + 1}, saveSrcImage[i], false);
        for (int i = 0; i < 2; ++i)
            visitor.setting({"Image/RltImgSave_st#", i + 1}, saveRltImage[i], false);
        visitor.addition("Image/OnlyFailed", saveOnlyFailed, false);
    }
};
