#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

class Scheduler;

/// Calls a function every 25 ms on a thread of its own, whatever the GUI thread does; never where no threads may be
/// started. Deleting it waits for a call that runs.
class Watchdog
{
public:
    Watchdog(const Scheduler& scheduler, std::function<void()> look);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    void watch();

    const std::function<void()> m_look;
    std::mutex m_mutex; // protects m_ending
    std::condition_variable m_changed;
    bool m_ending = false;
    std::thread m_thread;
};
