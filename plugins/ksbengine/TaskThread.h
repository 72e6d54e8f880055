#pragma once

#include "Task.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

/// The thread of one solution: runs its tasks one after another, in the order in which they came.
class TaskThread
{
public:
    TaskThread();
    /// Waits for the task in hand and drops the waiting ones.
    ~TaskThread();

    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    /// Any thread; returns at once.
    void add(Task task);
    /// Lets the thread end after the task in hand, without waiting for it.
    void stop();

private:
    void run();
    bool take(Task* task);

    std::mutex m_mutex; // protects m_waiting and m_stopping
    std::condition_variable m_changed;
    std::deque<Task> m_waiting;
    bool m_stopping = false;
    std::thread m_thread;
};
