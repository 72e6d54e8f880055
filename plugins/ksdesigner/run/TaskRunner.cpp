#include "TaskRunner.h"

#include <valvecell/Extension.h>
#include <valvecell/IEngine.h>
#include <valvecell/IModelExamples.h>
#include <valvecell/ResultKeys.h>

TaskRunner::TaskRunner(IEngine* engine, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_trial(extensionOf<IModelTrial>(engine))
    , m_keepsExamples(extensionOf<IModelExamples>(engine))
{
}

void TaskRunner::run(const QImage& image, const Recipe& recipe, bool withStages,
                     const std::function<void(const Trial&)>& done)
{
    if (m_trial && !recipe.parameters.isEmpty()) {
        QVariantMap parameters = recipe.parameters;
        if (m_keepsExamples)
            parameters.insert(QString::fromLatin1(IModelExamples::examplesOf), recipe.id.model);
        m_trial->runTrial(
            image, recipe.id.solution, parameters, withStages,
            [slot = m_mailbox.slot(), done](const IModelTrial::Outcome& outcome) {
                slot.post([done, outcome] { done({TaskResult::fromMap(outcome.result), outcome.stages}); });
            });
        return;
    }
    const QVariantMap input{{QString::fromLatin1(ResultKeys::originImage), image}};
    m_engine->runTask(input, recipe.id.solution, recipe.id.model,
                      [slot = m_mailbox.slot(), done](const QVariantMap& map) {
                          slot.post([done, map] { done({TaskResult::fromMap(map), {}}); });
                      });
}
