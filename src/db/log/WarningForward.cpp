#include "db/log/WarningForward.h"

#include "db/log/LogLine.h"

#include <QtGlobal>

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

WarningForward::WarningForward()
{
    s_before.store(qInstallMessageHandler(forward), std::memory_order_release);
}

WarningForward::~WarningForward()
{
    qInstallMessageHandler(s_before.load(std::memory_order_acquire));
}

} // namespace SystemLog
