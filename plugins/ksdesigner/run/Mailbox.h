#pragma once

#include <QMetaObject>
#include <QObject>

#include <functional>
#include <memory>
#include <mutex>

/// Hands work over to the thread of an object that may die at any moment: what arrives later is dropped. Copies share
/// one state; the object's owner closes it, any thread may post.
class Mailbox
{
public:
    /// `receiver` lives until close().
    explicit Mailbox(QObject* receiver)
        : m_state(std::make_shared<State>())
    {
        m_state->receiver = receiver;
    }

    /// Runs `work` later on the receiver's thread, unless the mailbox is closed or the receiver deleted by then.
    void post(std::function<void()> work) const
    {
        // Under the lock, so that the receiver cannot go between the look and the hand-over.
        const std::lock_guard<std::mutex> lock(m_state->mutex);
        if (m_state->receiver)
            QMetaObject::invokeMethod(m_state->receiver, std::move(work), Qt::QueuedConnection);
    }

    /// On the receiver's thread, before it goes. Nothing posted runs afterwards.
    void close()
    {
        const std::lock_guard<std::mutex> lock(m_state->mutex);
        m_state->receiver = nullptr;
    }

private:
    struct State
    {
        std::mutex mutex;
        QObject* receiver = nullptr; // protected by mutex
    };
    std::shared_ptr<State> m_state;
};
