#include "ModelDrafts.h"

#include "ExampleStore.h"
#include "ParameterRules.h"
#include "common/LookAlike.h"

#include <valvecell/ISolutionStore.h>

ModelDrafts::ModelDrafts(ISolutionStore* store, ExampleStore* examples, QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_examples(examples)
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

bool ModelDrafts::attach(const ModelId& id, const QVariantMap& example, QString* error)
{
    if (!isUnsaved(id))
        return m_examples->add(id, ExampleStore::Kind::Hole, example, error);
    m_attached.insert(id, example);
    return true;
}

void ModelDrafts::revert(const ModelId& id)
{
    m_attached.remove(id);
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
    const auto attached = m_attached.constFind(id);
    if (attached != m_attached.constEnd() && !m_examples->add(id, ExampleStore::Kind::Hole, *attached, error))
        return false;
    m_attached.remove(id);
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

bool ModelDrafts::storeAs(const ModelId& id, const QString& name, const QVariantMap& parameters, QString* error)
{
    *error = nameProblem(id.solution, name);
    if (!error->isEmpty() || !m_store->saveModel(id.solution, name, parameters, error))
        return false;
    if (m_examples->copy(id, name, error))
        return true;
    QString ignored;
    m_store->removeModel(id.solution, name, &ignored);
    return false;
}

bool ModelDrafts::copy(const ModelId& id, const QString& name, QString* error)
{
    if (!storeAs(id, name, parameters(id), error))
        return false;
    emit listChanged();
    return true;
}

bool ModelDrafts::rename(const ModelId& id, const QString& name, QString* error)
{
    const ModelId renamed{id.solution, name};
    if (!storeAs(id, name, stored(id), error))
        return false;
    if (!m_store->removeModel(id.solution, id.model, error)) {
        QString ignored;
        m_store->removeModel(id.solution, name, &ignored);
        emit listChanged();
        return false;
    }
    if (isUnsaved(id))
        m_drafts.insert(renamed, m_drafts.take(id));
    if (m_attached.contains(id))
        m_attached.insert(renamed, m_attached.take(id));
    emit listChanged();
    return true;
}

bool ModelDrafts::remove(const ModelId& id, QString* error)
{
    if (!m_store->removeModel(id.solution, id.model, error))
        return false;
    m_drafts.remove(id);
    m_attached.remove(id);
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
    if (LookAlike::hasInvisible(name))
        return tr("名称中含有看不见的字符");
    const QString alike = m_store->isBuiltIn(name) ? name : LookAlike::find(models(solution), name);
    return alike.isEmpty() ? QString() : tr("已有名为“%1”的型号").arg(alike);
}
