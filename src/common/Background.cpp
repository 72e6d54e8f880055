#include "common/Background.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThreadPool>

struct Mailbox::Slot::State
{
    std::mutex mutex; // protects the members below
    std::deque<Work> waiting;
    QObject* receiver = nullptr;
};

/// Empties the mailbox when the event of a post arrives.
class Mailbox::Receiver : public QObject
{
public:
    explicit Receiver(std::shared_ptr<Slot::State> state)
        : m_state(std::move(state))
    {
    }

    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        // A work may destroy the mailbox and this object with it.
        const auto state = m_state;
        while (const Work work = next(*state))
            work();
        return true;
    }

private:
    static Work next(Slot::State& state)
    {
        const std::lock_guard<std::mutex> lock(state.mutex);
        if (state.waiting.empty())
            return nullptr;
        Work work = std::move(state.waiting.front());
        state.waiting.pop_front();
        return work;
    }

    std::shared_ptr<Slot::State> m_state;
};

void Mailbox::Slot::post(Work work) const
{
    // Under the lock, so that the receiver cannot go between the look and the hand-over.
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    if (!m_state->receiver)
        return;
    m_state->waiting.push_back(std::move(work));
    if (m_state->waiting.size() == 1)
        QCoreApplication::postEvent(m_state->receiver, new QEvent(QEvent::User));
}

Mailbox::Mailbox()
{
    m_slot.m_state = std::make_shared<Slot::State>();
    m_receiver = std::make_unique<Receiver>(m_slot.m_state);
    m_slot.m_state->receiver = m_receiver.get();
}

Mailbox::~Mailbox()
{
    std::deque<Work> dropped;
    const std::lock_guard<std::mutex> lock(m_slot.m_state->mutex);
    m_slot.m_state->receiver = nullptr;
    dropped.swap(m_slot.m_state->waiting);
}

Background::Background(AtEnd atEnd, int threads)
    : m_atEnd(atEnd)
    , m_threadCount(threads)
{
}

Background::~Background()
{
    if (m_atEnd != AtEnd::Finish)
        clear();
    {
        const std::lock_guard<std::mutex> lock(m_queue->mutex);
        m_queue->ending = true;
    }
    m_queue->changed.notify_all();
    const auto join = [queue = m_queue] {
        for (std::thread& thread : queue->threads)
            thread.join();
    };
    switch (m_atEnd) {
    case AtEnd::Wait:
        join();
        break;
    case AtEnd::Finish: // the application ends after the jobs of Qt's pool
        if (!m_queue->threads.empty())
            QThreadPool::globalInstance()->start(join);
        break;
    case AtEnd::Abandon:
        for (std::thread& thread : m_queue->threads)
            thread.detach();
        break;
    }
}

void Background::clear()
{
    std::deque<Mailbox::Work> dropped;
    const std::lock_guard<std::mutex> lock(m_queue->mutex);
    dropped.swap(m_queue->jobs);
}

void Background::add(Mailbox::Work job)
{
    {
        const std::lock_guard<std::mutex> lock(m_queue->mutex);
        m_queue->jobs.push_back(std::move(job));
    }
    m_queue->changed.notify_one();
    if (static_cast<int>(m_queue->threads.size()) < m_threadCount)
        m_queue->threads.emplace_back([queue = m_queue] { serve(*queue); });
}

void Background::serve(Queue& queue)
{
    while (const Mailbox::Work job = next(queue))
        job();
}

Mailbox::Work Background::next(Queue& queue)
{
    std::unique_lock<std::mutex> lock(queue.mutex);
    queue.changed.wait(lock, [&queue] { return queue.ending || !queue.jobs.empty(); });
    if (queue.jobs.empty())
        return nullptr;
    Mailbox::Work job = std::move(queue.jobs.front());
    queue.jobs.pop_front();
    return job;
}
