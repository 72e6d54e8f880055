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

void TaskThread::add(Task task)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_waiting.push_back(std::move(task));
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

bool TaskThread::take(Task* task)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_stopping || !m_waiting.empty(); });
    if (m_stopping)
        return false;
    *task = std::move(m_waiting.front());
    m_waiting.pop_front();
    return true;
}

void TaskThread::run()
{
    finder::Finder finder;
    for (Task task; take(&task); task = Task()) {
        const QVariantMap result = runTask(task, finder);
        if (task.callback)
            task.callback(result);
    }
}
