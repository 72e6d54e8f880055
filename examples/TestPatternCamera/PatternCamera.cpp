#include "PatternCamera.h"

#include "TestPattern.h"

PatternCamera::PatternCamera(CameraEntry entry, Deliver deliver)
    : m_entry(std::move(entry))
    , m_deliver(std::move(deliver))
    , m_thread([this] { run(); })
{
}

PatternCamera::~PatternCamera()
{
    requestStop();
    m_thread.join();
}

void PatternCamera::trigger()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_waiting;
    }
    m_changed.notify_one();
}

void PatternCamera::requestStop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_one();
}

void PatternCamera::run()
{
    for (int number = 0; waitForTrigger(); ++number) {
        expose();
        m_deliver(m_entry.key, testPattern(m_entry.size, number));
    }
}

bool PatternCamera::waitForTrigger()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_stopping || m_waiting > 0; });
    if (m_stopping)
        return false;
    --m_waiting;
    return true;
}

// Waits on the condition, not for the time alone, so that the program never waits for a long exposure when it ends.
void PatternCamera::expose()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, m_entry.exposure, [this] { return m_stopping; });
}
