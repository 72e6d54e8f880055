#include "TaskRunner.h"

#include <valvecell/Extension.h>
#include <valvecell/IEngine.h>
#include <valvecell/ResultKeys.h>

TaskRunner::TaskRunner(IEngine* engine, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_trial(extensionOf<IModelTrial>(engine))
{
}

void TaskRunner::run(const QImage& image, const Recipe& recipe, bool withStages,
                     const std::function<void(const Trial&)>& done)
{
    if (m_trial && !recipe.parameters.isEmpty()) {
        m_trial->runTrial(
            image, recipe.id.solution, recipe.parameters, withStages,
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
