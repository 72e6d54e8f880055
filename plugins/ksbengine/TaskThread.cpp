#include "TaskThread.h"

TaskThread::TaskThread()
    : m_thread([this] { run(); })
{
}

TaskThread::~TaskThread()
{
    stop();
    m_thread.join();
}

void TaskThread::add(Job job)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_waiting.push_back(std::move(job));
    }
    m_changed.notify_one();
}

void TaskThread::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_one();
}

bool TaskThread::take(Job* job)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_stopping || !m_waiting.empty(); });
    if (m_stopping)
        return false;
    *job = std::move(m_waiting.front());
    m_waiting.pop_front();
    return true;
}

void TaskThread::run()
{
    finder::Finder finder;
    // Each job goes before the next is waited for: it may hold an image of many megabytes.
    for (Job job; take(&job); job = nullptr)
        job(finder);
}
