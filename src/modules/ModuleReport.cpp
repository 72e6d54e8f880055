#include "modules/ModuleReport.h"

#include "platform/AppHome.h"

#include <valvecell/Export.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibrary>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ModuleReport)
};

using VersionFunction = const char* (*)();

QString majorOf(const QString& version)
{
    return version.section(QLatin1Char('.'), 0, 0);
}

} // namespace

QString qtProblem(const QString& file)
{
    QFile library(file);
    if (!library.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = library.readAll();
    // Put together here: as a text of its own, the name would stand in this program's files as well.
    for (const char major : {'6', '7'}) {
        if (content.contains(QByteArray("Qt") + major + "Core"))
            return Tr::tr("模块用 Qt %1 编译，本程序使用 Qt %2").arg(QLatin1Char(major)).arg(QLatin1String(qVersion()));
    }
    return {};
}

bool loadModule(QLibrary& library)
{
    if (!qtProblem(platform::moduleFile(library.fileName())).isEmpty())
        return false;
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    return library.load();
}

QString interfaceProblem(QLibrary& library)
{
    const auto function = reinterpret_cast<VersionFunction>(library.resolve("Lib_InterfaceVersion"));
    const QString own = QStringLiteral(VALVECELL_INTERFACE_VERSION);
    const char* text = VALVECELL_INTERFACE_VERSION;
    if (function && !callModule(library.fileName(), [&] { text = function(); }))
        text = nullptr;
    const QString built = text ? QString::fromUtf8(text) : QString();
    return majorOf(built) == majorOf(own) ? QString()
                                          : Tr::tr("模块按接口版本 %1 编译，本程序的接口版本为 %2").arg(built, own);
}

/// With where it was looked for, of a file that is nowhere.
static QString loadProblem(const QLibrary& library)
{
    const QString other = qtProblem(platform::moduleFile(library.fileName()));
    if (!other.isEmpty() || library.fileName().contains(QLatin1Char('/')))
        return other.isEmpty() ? library.errorString() : other;
    return Tr::tr("%1；查找过：%2，以及系统的库目录")
        .arg(library.errorString(), QDir::toNativeSeparators(platform::moduleFolders().join(QStringLiteral(", "))));
}

/// A module need not have a version.
ModuleInfo describeModule(const QString& name, QLibrary& library, const char* symbol)
{
    ModuleInfo info{name, false, QDir::toNativeSeparators(library.fileName()), {}, {}};
    if (!library.isLoaded())
        info.problem = loadProblem(library);
    else if (const QString other = interfaceProblem(library); !other.isEmpty())
        info.problem = other;
    else if (!library.resolve(symbol))
        info.problem = Tr::tr("文件中没有函数 %1").arg(QLatin1String(symbol));
    if (!info.problem.isEmpty())
        return info;
    if (const auto version = reinterpret_cast<VersionFunction>(library.resolve("Lib_Version")))
        callModule(info.file, [&] { info.version = QString::fromUtf8(version()); });
    return info;
}

ModuleInfo withObject(ModuleInfo info, bool made)
{
    info.working = made;
    if (!made && info.problem.isEmpty())
        info.problem = Tr::tr("模块未能启动，原因见系统日志");
    return info;
}
