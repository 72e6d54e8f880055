#pragma once

#include "ModelExamples.h"
#include "ModelProposer.h"
#include "ModelTeacher.h"
#include "ModelTrials.h"
#include "SolutionStore.h"
#include "Task.h"

#include <valvecell/IEngine.h>

#include <map>
#include <memory>

/// The bundled inspection engine: a store of solutions, one thread for each solution that was run, and one for trials.
class Engine : public IEngine
{
public:
    /// `folder` holds the solutions, see SolutionStore.
    explicit Engine(const QString& folder);
    ~Engine() override;

    void initialise() override;
    ITaskList* taskList() override;
    void runTask(const QVariantMap& input, const QString& solution, const QString& model,
                 ResultCallback callback) override;
    void* extension(const char* id) override;

private:
    TaskThread& threadOf(const QString& solution);

    SolutionStore m_store;
    ModelTeacher m_teacher;
    ModelProposer m_proposer{&m_teacher};
    ModelExamples m_examples;
    ModelTrials m_trials;
    std::map<QString, std::unique_ptr<TaskThread>> m_threads;
};
