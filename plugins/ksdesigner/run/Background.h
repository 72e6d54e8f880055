#pragma once

#include "Mailbox.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

/// Threads for the slow work of one object: reading files, computing. Jobs start in the order of the calls. Make it a
/// member of the object: it is then gone before the object is.
class Background
{
public:
    explicit Background(int threads = 1);
    /// Waits for the jobs in hand and drops the others.
    ~Background();

    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Runs `work` on a thread and then `done`, with the value that it returned, on the thread that made this object.
    /// `work` shares nothing with the owner.
    template <typename Work, typename Done>
    void run(Work work, Done done)
    {
        add([work = std::move(work), done = std::move(done), slot = m_mailbox.slot()] {
            slot.post([value = work(), done] { done(value); });
        });
    }

    /// Drops the jobs that did not begin.
    void clear();

private:
    void add(Mailbox::Work job);
    void serve();
    Mailbox::Work next();

    Mailbox m_mailbox;
    const int m_threadCount;
    std::vector<std::thread> m_threads; ///< started with the first job
    std::mutex m_mutex;                 // protects m_jobs and m_stopping
    std::condition_variable m_changed;
    std::deque<Mailbox::Work> m_jobs;
    bool m_stopping = false;
};
