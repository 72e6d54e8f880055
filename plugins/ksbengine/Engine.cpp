#include "Engine.h"

#include <opencv2/core/utility.hpp>

#include <cstring>

Engine::Engine(const QString& folder)
    : m_store(folder)
{
    // Both stations run side by side; a task that spreads over all cores would only slow the other station down.
    cv::setNumThreads(1);
}

Engine::~Engine()
{
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
    task.callback = std::move(callback);
    // All unknown solutions share one thread, so that wrong names cannot pile up threads.
    threadOf(m_store.list().contains(solution) ? solution : QString()).add(std::move(task));
}

void* Engine::extension(const char* id)
{
    if (std::strcmp(id, ISolutionStore::id) == 0)
        return static_cast<ISolutionStore*>(&m_store);
    return nullptr;
}
