#include "ModelDrafts.h"

#include "ParameterRules.h"

#include <valvecell/ISolutionStore.h>

ModelDrafts::ModelDrafts(ISolutionStore* store, QObject* parent)
    : QObject(parent)
    , m_store(store)
{
}

QStringList ModelDrafts::models(const QString& solution) const
{
    return m_store->models(solution);
}

bool ModelDrafts::isBuiltIn(const ModelId& id) const
{
    return m_store->isBuiltIn(id.model);
}

QVariantMap ModelDrafts::stored(const ModelId& id) const
{
    return m_store->parameters(id.solution, id.model);
}

QVariantMap ModelDrafts::parameters(const ModelId& id) const
{
    const auto draft = m_drafts.constFind(id);
    return draft == m_drafts.constEnd() ? stored(id) : *draft;
}

void ModelDrafts::edit(const ModelId& id, const QVariantMap& parameters)
{
    if (isBuiltIn(id))
        return;
    if (parameters == stored(id))
        m_drafts.remove(id);
    else
        m_drafts.insert(id, parameters);
    emit changed(id);
}

void ModelDrafts::revert(const ModelId& id)
{
    if (m_drafts.remove(id) > 0)
        emit changed(id);
}

bool ModelDrafts::save(const ModelId& id, QString* error)
{
    const QVariantMap wanted = parameters(id);
    const auto problems = ParameterRules::problems(wanted);
    if (!problems.isEmpty()) {
        *error = tr("%1：%2").arg(ParameterRules::label(problems.firstKey()), problems.first());
        return false;
    }
    if (!m_store->saveModel(id.solution, id.model, wanted, error))
        return false;
    m_drafts.remove(id);
    emit changed(id);
    return true;
}

bool ModelDrafts::add(const ModelId& id, const QVariantMap& parameters, QString* error)
{
    *error = nameProblem(id.solution, id.model);
    if (!error->isEmpty() || !m_store->saveModel(id.solution, id.model, parameters, error))
        return false;
    emit listChanged();
    return true;
}

bool ModelDrafts::rename(const ModelId& id, const QString& name, QString* error)
{
    const ModelId renamed{id.solution, name};
    *error = nameProblem(id.solution, name);
    if (!error->isEmpty() || !m_store->saveModel(id.solution, name, stored(id), error))
        return false;
    if (!m_store->removeModel(id.solution, id.model, error)) {
        QString ignored;
        m_store->removeModel(id.solution, name, &ignored);
        emit listChanged();
        return false;
    }
    if (isUnsaved(id))
        m_drafts.insert(renamed, m_drafts.take(id));
    emit listChanged();
    return true;
}

bool ModelDrafts::remove(const ModelId& id, QString* error)
{
    if (!m_store->removeModel(id.solution, id.model, error))
        return false;
    m_drafts.remove(id);
    emit listChanged();
    return true;
}

bool ModelDrafts::addSolution(const QString& solution, QString* error)
{
    if (!m_store->addSolution(solution, error))
        return false;
    emit listChanged();
    return true;
}

QVariantMap ModelDrafts::freshParameters(const QString& solution) const
{
    const QStringList known = models(solution);
    for (const QString& model : known) {
        if (!m_store->isBuiltIn(model))
            continue;
        QVariantMap fresh = m_store->parameters(solution, model);
        if (fresh.contains(ParameterRules::taughtName))
            fresh[ParameterRules::taughtName] = false;
        return fresh;
    }
    return {};
}

QString ModelDrafts::nameProblem(const QString& solution, const QString& name) const
{
    if (name.trimmed().isEmpty())
        return tr("请输入名称");
    if (name != name.trimmed())
        return tr("名称首尾不能有空格");
    if (m_store->isBuiltIn(name) || models(solution).contains(name))
        return tr("已有名为“%1”的型号").arg(name);
    return {};
}
