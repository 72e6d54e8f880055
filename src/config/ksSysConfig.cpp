#include "config/ksSysConfig.h"

#include "config/IniFile.h"
#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

#include <QSettings>

namespace {

qint32 toInt(const QVariant& value, qint32 fallback)
{
    bool good = false;
    const qint32 number = value.toString().toInt(&good); // a variant's own conversion would wrap a large number
    return good ? number : fallback;
}

/// Settings written by hand have capitals, blanks, or 1 and 0.
bool toBool(const QVariant& value, bool fallback)
{
    const QString text = value.toString().trimmed().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    return fallback;
}

const QString kLanguage = QStringLiteral("language/select");
const QString kPort = QStringLiteral("COM/Port");
const QString kBaud = QStringLiteral("COM/Baute"); // spelled so in every plant's file
const QString kDays = QStringLiteral("CheckThread/days");
const QString kDirDays = QStringLiteral("CheckThread/days_dir");
const QString kSpace = QStringLiteral("CheckThread/spacesize");
const QString kCleanRlt = QStringLiteral("CheckThread/Enable_RltImg");
const QString kCleanSrc = QStringLiteral("CheckThread/Enable_SrcImg");
const QString kFilter = QStringLiteral("TrigDetector/FilterTime");
const QString kSaveSrc[2] = {QStringLiteral("Image/SrcImgSave_st1"), QStringLiteral("Image/SrcImgSave_st2")};
const QString kSaveRlt[2] = {QStringLiteral("Image/RltImgSave_st1"), QStringLiteral("Image/RltImgSave_st2")};

} // namespace

// The doubled separators are kept as plants know the path; a file system takes them as single ones.
ksSysConfig::ksSysConfig()
    : appDir(platform::home())
    , filePath(appDir + QStringLiteral("//user//systemConfig.ini"))
{
}

void ksSysConfig::load()
{
    IniFile ini(filePath);
    const QSettings& file = ini.settings();
    language = file.value(kLanguage, QStringLiteral("Chinese")).toString();
    comPort = file.value(kPort, QStringLiteral("COM3")).toString();
    baudRate = toInt(file.value(kBaud), 115200);
    cleanDays = toInt(file.value(kDays), 7);
    cleanDirDays = toInt(file.value(kDirDays), 30);
    minFreeSpace = toInt(file.value(kSpace), 10);
    cleanRltImages = toBool(file.value(kCleanRlt), false);
    cleanSrcImages = toBool(file.value(kCleanSrc), false);
    filterTime = toInt(file.value(kFilter), 10);
    for (int i = 0; i < 2; ++i) {
        saveSrcImage[i] = toBool(file.value(kSaveSrc[i]), false);
        saveRltImage[i] = toBool(file.value(kSaveRlt[i]), false);
    }
}

bool ksSysConfig::save()
{
    IniFile ini(filePath);
    QSettings& file = ini.settings();
    file.setValue(kLanguage, language);
    file.setValue(kPort, comPort);
    file.setValue(kBaud, baudRate);
    file.setValue(kDays, cleanDays);
    file.setValue(kDirDays, cleanDirDays);
    file.setValue(kSpace, minFreeSpace);
    file.setValue(kCleanRlt, cleanRltImages);
    file.setValue(kCleanSrc, cleanSrcImages);
    file.setValue(kFilter, filterTime);
    for (int i = 0; i < 2; ++i)
        file.setValue(kSaveSrc[i], saveSrcImage[i]);
    for (int i = 0; i < 2; ++i)
        file.setValue(kSaveRlt[i], saveRltImage[i]);
    return ini.commit();
}
