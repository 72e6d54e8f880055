#include "db/log/ksSysLog.h"

#include "db/log/LogLine.h"

#include <QCoreApplication>

namespace SystemLog {

ksSysLog::ksSysLog()
{
    m_database.start();
    // The object outlives the application; its thread must not outlive the database driver.
    qAddPostRoutine([] { instance()->stop(); });
    setOutput([](int type, const char* message, int length) { instance()->database().append(type, message, length); });
}

void ksSysLog::stop()
{
    setOutput(nullptr);
    m_database.stop();
}

} // namespace SystemLog
