#include "accounts/PasswordWorker.h"

PasswordWorker::~PasswordWorker()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

void PasswordWorker::add(Task task)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_all();
    if (!m_thread.joinable())
        m_thread = std::thread([this] { runTasks(); });
}

void PasswordWorker::runTasks()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_stopping) {
        if (m_tasks.empty()) {
            m_wake.wait(lock);
            continue;
        }
        Task task = std::move(m_tasks.front());
        m_tasks.pop_front();
        lock.unlock();
        Answer answer = task();
        task = nullptr;
        lock.lock();
        m_answers.push_back(std::move(answer));
        QMetaObject::invokeMethod(this, &PasswordWorker::deliver, Qt::QueuedConnection);
    }
}

void PasswordWorker::deliver()
{
    std::deque<Answer> answers;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        answers.swap(m_answers);
    }
    for (const Answer& answer : answers)
        answer();
}
