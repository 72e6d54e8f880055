#include "workflow/Watchdog.h"

#include "common/Scheduler.h"

namespace {
constexpr std::chrono::milliseconds pause{25};
}

Watchdog::Watchdog(const Scheduler& scheduler, std::function<void()> look)
    : m_look(std::move(look))
{
    if (scheduler.usesThreads())
        m_thread = std::thread([this] { watch(); });
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void Watchdog::watch()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_changed.wait_for(lock, pause, [this] { return m_ending; }))
        m_look();
}
