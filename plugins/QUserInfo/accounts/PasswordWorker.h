#pragma once

#include <QObject>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// Does the costly work on passwords on a thread of its own, one piece after the other. Used from one thread, on which
/// the results arrive; deleting it waits for the piece in hand, and no result arrives any more.
class PasswordWorker : public QObject
{
    Q_OBJECT

public:
    ~PasswordWorker() override;

    /// Calls `work()` on the worker's thread, then `done(result)` on the owner's.
    template <typename Work, typename Done>
    void run(Work work, Done done)
    {
        add([work, done]() -> Answer { return [done, result = work()] { done(result); }; });
    }

private:
    using Answer = std::function<void()>;
    using Task = std::function<Answer()>;

    void add(Task task);
    void runTasks();
    void deliver();

    std::thread m_thread;

    std::mutex m_mutex; // protects everything below
    std::condition_variable m_wake;
    bool m_stopping = false;
    std::deque<Task> m_tasks;
    std::deque<Answer> m_answers;
};
