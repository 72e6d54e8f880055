#include "db/log/ksSysLog.h"

#include "db/log/LogLine.h"

#include <QCoreApplication>

#include <atomic>

namespace SystemLog {
namespace {

std::atomic<QtMessageHandler> s_before{nullptr};

/// Handed on to whoever handled the stream before, in any case.
void forward(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const bool ownLine = qstrcmp(context.category, ownCategory) == 0;
    if ((type == QtWarningMsg || type == QtCriticalMsg) && !ownLine)
        LogLine(type == QtWarningMsg ? Warning : Error).stream() << text;
    if (const QtMessageHandler before = s_before.load(std::memory_order_acquire))
        before(type, context, text);
}

} // namespace

ksSysLog::ksSysLog()
{
    // The object outlives the application; its thread must not outlive the database driver.
    qAddPostRoutine([] { instance()->stop(); });
    start();
}

void ksSysLog::start()
{
    if (m_database.isRunning())
        return;
    m_database.startAgain();
    setOutput([](int type, const char* message, int length) { instance()->database().append(type, message, length); });
}

void ksSysLog::stop()
{
    setOutput(nullptr);
    m_database.stop();
}

WarningForward::WarningForward()
{
    s_before.store(qInstallMessageHandler(forward), std::memory_order_release);
}

WarningForward::~WarningForward()
{
    qInstallMessageHandler(s_before.load(std::memory_order_acquire));
}

} // namespace SystemLog
