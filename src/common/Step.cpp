#include "common/Step.h"

#include "common/Scheduler.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>

namespace {

std::atomic<const char*> s_current{nullptr};
// The GUI thread's alone.
qint64 s_innerNs = 0; ///< of the steps within the present one that ended
Step::Longest s_longest;

bool onGuiThread()
{
    return QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread();
}

} // namespace

Step::Step(const char* name)
    : m_counts(onGuiThread())
{
    if (!m_counts)
        return;
    m_outer = s_current.exchange(name);
    m_outerInnerNs = std::exchange(s_innerNs, 0);
    m_startNs = Scheduler::system().elapsedNs();
}

Step::~Step()
{
    if (!m_counts)
        return;
    const qint64 ns = Scheduler::system().elapsedNs() - m_startNs;
    if (ns - s_innerNs > s_longest.ns)
        s_longest = {s_current, ns - s_innerNs};
    s_innerNs = m_outerInnerNs + ns;
    s_current = m_outer;
}

const char* Step::current()
{
    return s_current;
}

Step::Longest Step::takeLongest()
{
    return std::exchange(s_longest, {});
}
