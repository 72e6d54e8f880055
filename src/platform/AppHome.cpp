#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

#include <QCoreApplication>
#include <QFileInfo>

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
    const QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
    return QFileInfo::exists(moduleFile(beside)) ? beside : name;
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
