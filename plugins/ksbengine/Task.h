#pragma once

#include "SolutionStore.h"
#include "finder/Finder.h"

#include <QVariantMap>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

/// One task as it was handed over: all that it needs, so that later edits of models do not touch it.
struct Task
{
    QVariantMap input;
    QString solution;
    QString model;
    bool known = false; ///< solution and model exist; without them there is no "AlgoResult"
    finder::HoleModel parameters;
    SolutionStore::Answer answer = SolutionStore::Answer::Hole;
    QString refusal; ///< why solution or parameters cannot be used, in the operator's language; empty when they can
};

/// Runs one task to its result map. `found`, if given, receives what the map was made of. Any thread, one finder a
/// thread.
QVariantMap runTask(const Task& task, finder::Finder& finder, finder::FindResult* found = nullptr);

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
