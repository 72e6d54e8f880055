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
    const QStringList lost = ini.strays() + reader.problems();
    for (const QString& what : lost)
        qWarning("%s", qUtf8Printable(what));
    if (problem)
        *problem = ini.problem();
    return ini.problem().isEmpty();
}

bool ksSysConfig::save()
{
    IniFile ini(filePath);
    IniReadVisitor stored(ini.settings());
    ksSysConfig().visit(stored);
    IniWriteVisitor writer(ini.settings());
    visit(writer);
    return ini.commit(!stored.problems().isEmpty());
}
