#include "Engine.h"

#include "Task.h"

#include <opencv2/core/utility.hpp>

#include <cstring>

Engine::Engine(const QString& folder)
    : m_store(folder)
    , m_examples(&m_store)
    , m_trials(&m_store)
{
    // Both stations run side by side; a task that spreads over all cores would only slow the other station down.
    cv::setNumThreads(1);
}

Engine::~Engine()
{
    m_trials.stop();
    for (auto& entry : m_threads)
        entry.second->stop();
}

void Engine::initialise()
{
    m_store.read();
}

ITaskList* Engine::taskList()
{
    return &m_store;
}

TaskThread& Engine::threadOf(const QString& solution)
{
    auto& thread = m_threads[solution];
    if (!thread)
        thread = std::make_unique<TaskThread>();
    return *thread;
}

void Engine::runTask(const QVariantMap& input, const QString& solution, const QString& model, ResultCallback callback)
{
    Task task;
    task.input = input;
    task.solution = solution;
    task.model = model;
    task.known = m_store.lookUp(solution, model, &task.parameters, &task.answer);
    task.refusal = m_store.trouble(solution);
    // All unknown solutions share one thread, so that wrong names cannot pile up threads.
    threadOf(m_store.list().contains(solution) ? solution : QString())
        .add([task = std::move(task), callback = std::move(callback)](finder::Finder& finder) {
            const QVariantMap result = ::runTask(task, finder);
            if (callback)
                callback(result);
        });
}

void* Engine::extension(const char* id)
{
    if (std::strcmp(id, ISolutionStore::id) == 0)
        return static_cast<ISolutionStore*>(&m_store);
    if (std::strcmp(id, IModelTeacher::id) == 0)
        return static_cast<IModelTeacher*>(&m_teacher);
    if (std::strcmp(id, IModelProposer::id) == 0)
        return static_cast<IModelProposer*>(&m_proposer);
    if (std::strcmp(id, IModelTrial::id) == 0)
        return static_cast<IModelTrial*>(&m_trials);
    if (std::strcmp(id, IModelExamples::id) == 0)
        return static_cast<IModelExamples*>(&m_examples);
    return nullptr;
}
