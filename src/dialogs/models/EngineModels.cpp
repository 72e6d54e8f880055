#include "dialogs/models/EngineModels.h"

#include <valvecell/Extension.h>
#include <valvecell/IEngine.h>
#include <valvecell/IModelExamples.h>
#include <valvecell/ISolutionStore.h>

#include <algorithm>

EngineModels::EngineModels(IEngine* engine)
    : m_engine(engine)
    , m_store(extensionOf<ISolutionStore>(engine))
    , m_examples(extensionOf<IModelExamples>(engine))
{
}

QStringList EngineModels::solutions() const
{
    return m_store ? m_engine->taskList()->list() : QStringList();
}

SolutionParameters EngineModels::parameters(const QString& model) const
{
    SolutionParameters found;
    const QStringList names = solutions();
    for (const QString& solution : names) {
        if (!m_store->isBuiltIn(model) && m_store->models(solution).contains(model))
            found.insert(solution, m_store->parameters(solution, model));
    }
    return found;
}

bool EngineModels::isTaught(const QString& model) const
{
    const SolutionParameters found = parameters(model);
    return std::any_of(found.begin(), found.end(),
                       [](const QVariantMap& own) { return own.value(QStringLiteral("taught")).toBool(); });
}

bool EngineModels::save(const QString& model, const SolutionParameters& parameters, QString* error)
{
    const SolutionParameters before = this->parameters(model);
    QStringList stored;
    for (auto it = parameters.begin(); it != parameters.end(); ++it) {
        QString reason;
        if (!m_store || !m_store->saveModel(it.key(), model, it.value(), &reason)) {
            *error = QStringLiteral("%1: %2").arg(it.key(), reason);
            putBack(model, before, stored);
            return false;
        }
        stored.append(it.key());
    }
    return true;
}

bool EngineModels::copyExamples(const QString& from, const QString& to, QString* error)
{
    const SolutionParameters source = parameters(from);
    const SolutionParameters target = parameters(to);
    for (auto it = source.begin(); m_examples && it != source.end(); ++it) {
        QString reason;
        if (target.contains(it.key()) && !m_examples->copyExamples(it.key(), from, to, &reason)) {
            *error = QStringLiteral("%1: %2").arg(it.key(), reason);
            return false;
        }
    }
    return true;
}

bool EngineModels::remove(const QString& model, QString* error)
{
    const SolutionParameters before = parameters(model);
    QStringList removed;
    for (auto it = before.begin(); it != before.end(); ++it) {
        QString reason;
        if (!m_store->removeModel(it.key(), model, &reason)) {
            *error = QStringLiteral("%1: %2").arg(it.key(), reason);
            putBack(model, before, removed);
            return false;
        }
        removed.append(it.key());
    }
    return true;
}

void EngineModels::putBack(const QString& model, const SolutionParameters& before, const QStringList& solutions)
{
    for (const QString& solution : solutions) {
        QString reason;
        const bool done = before.contains(solution)
                              ? m_store->saveModel(solution, model, before.value(solution), &reason)
                              : m_store->removeModel(solution, model, &reason);
        if (!done)
            qWarning("model %s of %s could not be put back: %s", qUtf8Printable(model), qUtf8Printable(solution),
                     qUtf8Printable(reason));
    }
}
