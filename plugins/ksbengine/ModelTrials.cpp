#include "ModelTrials.h"

#include "Task.h"
#include "TrialStages.h"
#include "finder/ImageConversion.h"

#include <valvecell/IModelExamples.h>
#include <valvecell/ResultKeys.h>

#include <QDebug>

#include <exception>

namespace {

/// A finder of its own, so that no stage of a former trial is left where this one did not come to it.
IModelTrial::Outcome runWithStages(const Task& task)
{
    finder::Finder finder;
    finder::FindResult found;
    IModelTrial::Outcome outcome;
    outcome.result = runTask(task, finder, &found);
    if (!task.known || !task.refusal.isEmpty())
        return outcome;
    try {
        const QImage origin = task.input.value(QString::fromLatin1(ResultKeys::originImage)).value<QImage>();
        outcome.stages = trialStages(finder::toGray(origin).gray, finder, found, task.parameters);
    } catch (const std::exception& problem) {
        qWarning("the stages cannot be shown: %s", problem.what());
    }
    return outcome;
}

} // namespace

ModelTrials::ModelTrials(const SolutionStore* store)
    : m_store(store)
{
}

void ModelTrials::runTrial(const QImage& image, const QString& solution, const QVariantMap& parameters, bool withStages,
                           Callback callback)
{
    Task task;
    task.input = {{QString::fromLatin1(ResultKeys::originImage), image}};
    task.solution = solution;
    // The built-in model is in every solution, so this asks for the solution's settings.
    task.known = m_store->lookUp(solution, finder::autoModelName(), &task.parameters, &task.answer);
    task.parameters = {};
    const QString shown = parameters.value(QString::fromLatin1(IModelExamples::examplesOf)).toString();
    task.parameters.examples = m_store->examples(solution, shown);
    finder::applyParameters(parameters, &task.parameters, &task.refusal);
    m_thread.add([task, withStages, callback = std::move(callback)](finder::Finder& finder) {
        const Outcome outcome = withStages ? runWithStages(task) : Outcome{runTask(task, finder), {}};
        if (callback)
            callback(outcome);
    });
}
