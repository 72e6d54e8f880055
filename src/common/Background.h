#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// Carries work from any thread to the one on which the mailbox was made. What arrives after the mailbox is gone is
/// dropped, so an object keeps one as a member and hands out slots: whoever holds a slot may outlive the object.
class Mailbox
{
public:
    using Work = std::function<void()>;

    /// The posting end. Copies share one mailbox; any thread.
    class Slot
    {
    public:
        /// Runs `work` later on the mailbox's thread, in the order of the posts.
        void post(Work work) const;

    private:
        friend class Mailbox;
        struct State;
        std::shared_ptr<State> m_state;
    };

    Mailbox();
    /// On the mailbox's thread. Nothing posted runs afterwards, also when a posted work destroys the mailbox.
    ~Mailbox();

    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;

    Slot slot() const { return m_slot; }

private:
    class Receiver;

    Slot m_slot;
    std::unique_ptr<Receiver> m_receiver;
};

/// Threads for the slow work of one object: reading files, computing. Jobs start in the order of the calls. A member of
/// that object, declared last: results arrive on the object's thread, and none after it is gone. Used on that thread.
class Background
{
public:
    /// What becomes of the jobs when the object goes.
    enum class AtEnd {
        /// It waits for those in hand and drops the others. For jobs that end soon, and for all jobs of a module that
        /// may be unloaded.
        Wait,
        /// It does not wait; all are done nevertheless, and the application's end waits for them. For files that a
        /// person wants written.
        Finish,
        /// It does not wait, nor does the application's end: those in hand may never end, the others are dropped. For a
        /// look at a network drive; only in code that stays loaded.
        Abandon
    };

    explicit Background(AtEnd atEnd, int threads = 1);
    ~Background();

    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Runs `work` on a thread and then `done`, with the value that it returned, on the thread that made this object.
    /// `work` shares nothing with the owner and does not throw.
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
    /// What the threads share with the object; they may outlive it.
    struct Queue
    {
        std::mutex mutex; // protects jobs and ending
        std::condition_variable changed;
        std::deque<Mailbox::Work> jobs;
        bool ending = false;              // no job will follow
        std::vector<std::thread> threads; // the object's alone; started with the first job
    };

    void add(Mailbox::Work job);
    static void serve(Queue& queue);
    static Mailbox::Work next(Queue& queue);

    const AtEnd m_atEnd;
    const int m_threadCount;
    Mailbox m_mailbox;
    const std::shared_ptr<Queue> m_queue = std::make_shared<Queue>();
};
