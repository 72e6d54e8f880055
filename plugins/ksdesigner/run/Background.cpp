#include "Background.h"

Background::Background(int threads)
    : m_threadCount(threads)
{
}

Background::~Background()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

void Background::clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_jobs.clear();
}

void Background::add(Mailbox::Work job)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_one();
    if (static_cast<int>(m_threads.size()) < m_threadCount)
        m_threads.emplace_back([this] { serve(); });
}

void Background::serve()
{
    while (const Mailbox::Work job = next())
        job();
}

Mailbox::Work Background::next()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_stopping || !m_jobs.empty(); });
    if (m_stopping)
        return nullptr;
    Mailbox::Work job = std::move(m_jobs.front());
    m_jobs.pop_front();
    return job;
}
