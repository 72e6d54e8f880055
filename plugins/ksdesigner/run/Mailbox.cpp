#include "Mailbox.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <deque>
#include <mutex>

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
