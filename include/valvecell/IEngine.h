#pragma once

#include <QStringList>
#include <QVariantMap>

#include <functional>

/// The engine's list of what it can run.
class ITaskList
{
public:
    /// The names of all solutions, in the engine's order. GUI thread.
    virtual QStringList list() = 0;

protected:
    ~ITaskList() = default;
};

/// The inspection engine. Module file "ksbengine", symbols "Lib_Engine_Init" and "Lib_Engine_Free".
///
/// Threads: every operation is called from the GUI thread and returns at once; tasks run on the engine's own threads.
/// Tasks of different solutions may run side by side; the results of one solution are delivered in the order in which
/// its tasks were handed over. The result callback is called on a thread of the engine, exactly once a task, and for
/// no task after the engine was deleted; deleting waits for the tasks in hand and drops the waiting ones.
/// Ownership: the instance that the initialise function returns belongs to the caller, who deletes it.
class IEngine
{
public:
    /// Receives one result map, with the keys of ResultKeys.h.
    using ResultCallback = std::function<void(const QVariantMap& result)>;

    virtual ~IEngine() = default;

    /// Brings the engine up: reads its solutions. Called once, right after the instance was made.
    virtual void initialise() = 0;

    /// The task-list object; belongs to the engine.
    virtual ITaskList* taskList() = 0;

    /// Runs one task. `input` holds at least ResultKeys::originImage. A task that cannot run (unknown solution or
    /// model) still answers, with a map without ResultKeys::algoResult. An image that cannot be judged answers with an
    /// error code; no image may crash the engine.
    virtual void runTask(const QVariantMap& input, const QString& solution, const QString& model,
                         ResultCallback callback) = 0;

    /// An optional interface of this module by its id, or null; see Extension.h.
    virtual void* extension(const char* id)
    {
        Q_UNUSED(id)
        return nullptr;
    }
};

/// The signature of "Lib_Engine_Init"; the argument is reserved and null.
using EngineInitFunction = IEngine* (*)(void* reserved);
