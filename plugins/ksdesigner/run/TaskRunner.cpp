#include "TaskRunner.h"

#include <valvecell/IEngine.h>
#include <valvecell/ResultKeys.h>

TaskRunner::TaskRunner(IEngine* engine, QObject* parent)
    : QObject(parent)
    , m_engine(engine)
    , m_mailbox(this)
{
}

TaskRunner::~TaskRunner()
{
    m_mailbox.close();
}

void TaskRunner::run(const QImage& image, const ModelId& id, std::function<void(const TaskResult&)> done)
{
    const QVariantMap input{{QString::fromLatin1(ResultKeys::originImage), image}};
    m_engine->runTask(input, id.solution, id.model, [mailbox = m_mailbox, done](const QVariantMap& result) {
        mailbox.post([done, result] { done(TaskResult::fromMap(result)); });
    });
}
