#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <QFile>

#include <dlfcn.h>
#endif

#include <QCoreApplication>
#include <QFileInfo>
#include <QVarLengthArray>

namespace platform {

namespace {

QString withoutSuffix(const QString& base)
{
    const bool suffixed = base.endsWith(QLatin1String(".dll"), Qt::CaseInsensitive);
    return suffixed ? base.chopped(4) : base;
}

} // namespace

QString home()
{
    return HomeFiles::home();
}

QString inHome(const QString& pathText)
{
    QString tail = pathText;
    return home() + tail.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

QString moduleSuffix()
{
#ifdef Q_OS_WIN
    return QStringLiteral(".dll");
#else
    return QStringLiteral(".so");
#endif
}

QString moduleFile(const QString& base)
{
#ifdef Q_OS_WIN
    return base.endsWith(QLatin1String(".dll"), Qt::CaseInsensitive) ? base : base + moduleSuffix();
#else
    return withoutSuffix(base) + moduleSuffix();
#endif
}

QString moduleLoadName(const QString& base)
{
    QString name = withoutSuffix(base);
    if (name.contains(QLatin1Char('/')))
        return name;
    const QStringList folders = moduleFolders();
    for (const QString& folder : folders) {
        const QString beside = folder + QLatin1Char('/') + name;
        if (QFileInfo::exists(moduleFile(beside)))
            return beside;
    }
    return name;
}

QStringList moduleFolders()
{
    QStringList folders{QCoreApplication::applicationDirPath(), programFolder()};
    folders.removeDuplicates();
    return folders;
}

QString programFolder()
{
    QString file;
#ifdef Q_OS_WIN
    constexpr DWORD longestPath = 32767;
    HMODULE own = nullptr;
    QVarLengthArray<wchar_t> path(longestPath);
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&programFolder), &own);
    if (own && GetModuleFileNameW(own, path.data(), longestPath) > 0)
        file = QString::fromWCharArray(path.data());
#else
    Dl_info own{};
    if (::dladdr(reinterpret_cast<void*>(&programFolder), &own) != 0 && own.dli_fname)
        file = QFile::decodeName(own.dli_fname);
#endif
    const QString folder = QFileInfo(QFileInfo(file).canonicalFilePath()).path();
    return file.isEmpty() || folder == QLatin1String(".") ? QCoreApplication::applicationDirPath() : folder;
}

QString programFile(const QString& folder, const QString& name)
{
#ifdef Q_OS_WIN
    return folder + QLatin1Char('/') + name + QStringLiteral(".exe");
#else
    return folder + QLatin1Char('/') + name;
#endif
}

} // namespace platform
