#include "modules/DllLoader.h"

#include "platform/AppHome.h"

#include <QFileInfo>

namespace {

/// Where no folder has the file, the last one is named, so that the message says where it was looked for.
QString findModule(const QString& baseName, const QStringList& searchDirs)
{
    QString candidate = baseName;
    for (const QString& dir : searchDirs) {
        candidate =
            dir.isEmpty() || dir.endsWith(QLatin1Char('/')) ? dir + baseName : dir + QLatin1Char('/') + baseName;
        if (QFileInfo::exists(platform::moduleFile(candidate)))
            break;
    }
    return candidate;
}

} // namespace

DllLoader::DllLoader(const QString& baseName, const char* initSymbol, const char* freeSymbol,
                     const QStringList& searchDirs)
{
    setFileName(platform::moduleLoadName(findModule(baseName, searchDirs)));
    if (!loadModule(*this))
        qDebug("DllLoader Error: %s", qUtf8Printable(errorString()));
    m_info = describeModule(baseName, *this, initSymbol);
    if (!m_info.problem.isEmpty()) {
        qWarning("module %s: %s: %s", qUtf8Printable(baseName), qUtf8Printable(m_info.file),
                 qUtf8Printable(m_info.problem));
        return;
    }
    m_init = reinterpret_cast<InitFunction>(resolve(initSymbol));
    m_free = reinterpret_cast<FreeFunction>(resolve(freeSymbol));
}

DllLoader::~DllLoader()
{
    unload();
}

void* DllLoader::instance(void* argument)
{
    if (!m_init) {
        qDebug("fail to get Init Function in dll:%s", qUtf8Printable(fileName()));
        return nullptr;
    }
    void* made = nullptr;
    callModule(fileName(), [&] { made = m_init(argument); });
    return made;
}
