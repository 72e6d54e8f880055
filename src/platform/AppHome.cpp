#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

namespace platform {

QString home()
{
    return HomeFiles::home();
}

QString inHome(const QString& pathText)
{
    QString tail = pathText;
    return home() + tail.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

} // namespace platform
