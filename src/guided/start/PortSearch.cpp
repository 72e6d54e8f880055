#include "guided/start/PortSearch.h"

#include <utility>

namespace {
constexpr int lookMs = 200;
}

PortSearch::PortSearch(Line line, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_line(std::move(line))
    , m_timer(scheduler.timer(Scheduler::Repeating, [this] { look(); }))
{
}

PortSearch::~PortSearch()
{
    stop();
}

void PortSearch::start(const QStringList& ports, const QString& present)
{
    stop();
    m_waiting = ports;
    m_present = present;
    tryNext();
}

void PortSearch::stop()
{
    if (!isRunning())
        return;
    m_timer->stop();
    m_line.open(m_present);
}

void PortSearch::tryNext()
{
    if (m_waiting.isEmpty()) {
        m_timer->stop();
        m_line.open(m_present);
        emit nothingFound();
        return;
    }
    m_port = m_waiting.takeFirst();
    m_listened = 0;
    m_line.open(m_port);
    m_before = m_line.framesIn();
    m_timer->start(lookMs);
    emit trying(m_port);
}

void PortSearch::look()
{
    m_listened += lookMs;
    if (m_line.framesIn() > m_before) {
        m_timer->stop();
        emit found(m_port);
    } else if (m_listened >= listenMs) {
        tryNext();
    }
}
