#include "platform/Memory.h"

#include <QFile>

#ifdef Q_OS_WIN
#include <psapi.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace platform {

qint64 residentMemoryKiB()
{
#ifdef Q_OS_WIN
    PROCESS_MEMORY_COUNTERS counters;
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ? counters.WorkingSetSize / 1024 : 0;
#else
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toLongLong() * sysconf(_SC_PAGESIZE) / 1024 : 0;
#endif
}

} // namespace platform
