#include "platform/AppHome.h"

#include <QCoreApplication>
#include <QDir>

namespace platform {

QString home()
{
    const QString named = qEnvironmentVariable("VALVECELL_HOME");
    return named.isEmpty() ? QCoreApplication::applicationDirPath() : QDir(named).absolutePath();
}

QString inHome(const QString& pathText)
{
    QString tail = pathText;
    return home() + tail.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

} // namespace platform
