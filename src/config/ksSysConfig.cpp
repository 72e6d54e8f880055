#include "config/ksSysConfig.h"

#include "config/IniFile.h"
#include "platform/AppHome.h"

// The doubled separators are kept as plants know the path; a file system takes them as single ones.
ksSysConfig::ksSysConfig()
    : appDir(platform::home())
    , filePath(appDir + QStringLiteral("//user//systemConfig.ini"))
{
    DefaultsVisitor defaults;
    visit(defaults);
}

bool ksSysConfig::load(QString* problem)
{
    IniFile ini(filePath);
    IniReadVisitor reader(ini.settings());
    visit(reader);
    if (problem)
        *problem = ini.problem();
    return ini.problem().isEmpty();
}

bool ksSysConfig::save()
{
    IniFile ini(filePath);
    IniWriteVisitor writer(ini.settings());
    visit(writer);
    return ini.commit();
}
