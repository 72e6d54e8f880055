#pragma once

#include "Mailbox.h"

#include <QThreadPool>

/// Threads for the slow work of one object: reading files, computing. Jobs start in the order of the calls. Make it a
/// member of the object: it is then gone before the object is.
class Background
{
public:
    explicit Background(QObject* owner, int threads = 1)
        : m_mailbox(owner)
    {
        m_pool.setMaxThreadCount(threads);
    }
    /// Waits for the jobs in hand and drops the others.
    ~Background()
    {
        m_mailbox.close();
        m_pool.clear();
        m_pool.waitForDone();
    }

    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Runs `work` on a thread and then `done`, with the value that it returned, on the owner's thread. `work` shares
    /// nothing with the owner.
    template <typename Work, typename Done>
    void run(Work work, Done done)
    {
        m_pool.start([work = std::move(work), done = std::move(done), mailbox = m_mailbox] {
            mailbox.post([value = work(), done] { done(value); });
        });
    }

    /// Drops the jobs that did not begin.
    void clear() { m_pool.clear(); }

private:
    Mailbox m_mailbox;
    QThreadPool m_pool;
};
