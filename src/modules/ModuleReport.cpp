#include "modules/ModuleReport.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ModuleReport)
};

} // namespace

/// A module need not tell its version.
ModuleInfo describeModule(const QString& name, QLibrary& library, const char* symbol)
{
    using VersionFunction = const char* (*)();
    ModuleInfo info{name, false, QDir::toNativeSeparators(library.fileName()), {}, {}};
    if (!library.isLoaded())
        info.problem = library.errorString();
    else if (!library.resolve(symbol))
        info.problem = Tr::tr("文件中没有函数 %1").arg(QLatin1String(symbol));
    if (!info.problem.isEmpty())
        return info;
    if (const auto version = reinterpret_cast<VersionFunction>(library.resolve("Lib_Version")))
        info.version = QString::fromUtf8(version());
    return info;
}

ModuleInfo withObject(ModuleInfo info, bool made)
{
    info.working = made;
    if (!made && info.problem.isEmpty())
        info.problem = Tr::tr("模块未能启动，原因见系统日志");
    return info;
}
