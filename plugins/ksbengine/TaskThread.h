#pragma once

#include "finder/Finder.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// A thread with a finder of its own: runs its jobs one after another, in the order in which they came.
class TaskThread
{
public:
    using Job = std::function<void(finder::Finder&)>;

    TaskThread();
    /// Waits for the job in hand and drops the waiting ones.
    ~TaskThread();

    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    /// Any thread; returns at once.
    void add(Job job);
    /// Lets the thread end after the job in hand, without waiting for it.
    void stop();

private:
    void run();
    bool take(Job* job);

    std::mutex m_mutex; // protects m_waiting and m_stopping
    std::condition_variable m_changed;
    std::deque<Job> m_waiting;
    bool m_stopping = false;
    std::thread m_thread;
};
