#include "dialogs/models/ModelActions.h"

#include "db/SqlText.h"
#include "workflow/ModelManager.h"

#include <utility>

namespace {

constexpr int highestIndex = 32767;

QString yesNo(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

ModelActions::ModelActions(ModelManager& models, IEngine* engine)
    : m_models(models)
    , m_engine(engine)
{
}

ModelEntry ModelActions::entry(const QString& name) const
{
    for (int row = 0; row < m_models.modelCount(); ++row) {
        if (m_models.modelName(row) == name)
            return {name, m_models.plcIndex(row), m_models.isCalibrated(row)};
    }
    return {};
}

ModelEntry ModelActions::proposal(const QString& wanted) const
{
    ModelEntry entry{wanted, 1, false};
    for (int i = 2; !m_models.isNewName(entry.name, nullptr) && i <= highestIndex; ++i) {
        const QString suffix = QStringLiteral(" %1").arg(i);
        entry.name = wanted.left(SqlText::maxNameLength - suffix.size()) + suffix;
    }
    while (entry.index < highestIndex && !m_models.isFreeIndex(entry.index, entry.name, nullptr))
        ++entry.index;
    return entry;
}

void ModelActions::note(const QString& what, const QString& before, const QString& after)
{
    m_audit.append({what, before, after});
}

AuditChanges ModelActions::takeAudit()
{
    return std::exchange(m_audit, {});
}

bool ModelActions::add(const ModelEntry& entry, QString* error)
{
    return addWithParameters(entry, {}, {}, error);
}

bool ModelActions::copy(const QString& source, const ModelEntry& entry, QString* error)
{
    if (!m_models.contains(source)) {
        *error = tr("型号%1不存在").arg(source);
        return false;
    }
    return addWithParameters(entry, m_engine.parameters(source), source, error);
}

bool ModelActions::import(const ModelFile& file, const ModelEntry& entry, QString* error)
{
    SolutionParameters parameters = file.parameters;
    const QStringList unknown = unknownSolutions(file);
    for (const QString& solution : unknown)
        parameters.remove(solution);
    return addWithParameters(entry, parameters, {}, error);
}

bool ModelActions::teach(const ModelEntry& entry, const SolutionParameters& parameters, QString* error)
{
    if (!m_models.contains(entry.name))
        return addWithParameters(entry, parameters, {}, error);
    ModelEntry before = this->entry(entry.name);
    before.calibrated = entry.calibrated; // the engineer's mark stays
    const SolutionParameters former = m_engine.parameters(entry.name);
    if (!m_engine.save(entry.name, parameters, error))
        return false;
    if (changeValues(before, entry, error)) {
        const QString solutions = QStringList(parameters.keys()).join(QLatin1Char(' '));
        note(QStringLiteral("model/%1/taught").arg(entry.name), {}, solutions);
        return true;
    }
    QString ignored;
    m_engine.remove(entry.name, &ignored);
    m_engine.save(entry.name, former, &ignored);
    return false;
}

/// The engine first: a model that only the engine has is never run, one that only the library has is refused there.
bool ModelActions::addWithParameters(const ModelEntry& entry, const SolutionParameters& parameters,
                                     const QString& source, QString* error)
{
    if (!m_models.isNewName(entry.name, error) || !m_models.isFreeIndex(entry.index, entry.name, error))
        return false;
    const SolutionParameters before = m_engine.parameters(entry.name);
    if (!m_engine.save(entry.name, parameters, error))
        return false;
    const bool added = (source.isEmpty() || m_engine.copyExamples(source, entry.name, error)) &&
                       m_models.addModel(entry.name, entry.index, error);
    if (added && (!entry.calibrated || m_models.setCalibrated(entry.name, true, error))) {
        note(QStringLiteral("model/") + entry.name, {}, QString::number(entry.index));
        return true;
    }
    QString ignored;
    if (added)
        m_models.removeModel(entry.name, &ignored);
    if (!parameters.isEmpty()) {
        m_engine.remove(entry.name, &ignored);
        m_engine.save(entry.name, before, &ignored);
    }
    return false;
}

bool ModelActions::modify(const QString& name, const ModelEntry& entry, QString* error)
{
    ModelEntry before = this->entry(name);
    if (before.name.isEmpty()) {
        *error = tr("型号%1不存在").arg(name);
        return false;
    }
    const bool renamed = entry.name != name;
    if (renamed && !rename(name, entry.name, error))
        return false;
    before.name = entry.name;
    if (changeValues(before, entry, error)) {
        if (renamed)
            note(QStringLiteral("model/") + name, name, entry.name);
        return true;
    }
    QString ignored;
    if (renamed)
        rename(entry.name, name, &ignored);
    return false;
}

bool ModelActions::rename(const QString& name, const QString& newName, QString* error)
{
    const SolutionParameters overwritten = m_engine.parameters(newName);
    const SolutionParameters parameters = m_engine.parameters(name);
    if (newName.compare(name, Qt::CaseInsensitive) == 0 && !parameters.isEmpty()) {
        *error = tr("新旧名称只差大小写，引擎的文件可能无法区分，请先改为别的名称");
        return false;
    }
    if (!m_models.isNewName(newName, error, name) || !m_engine.save(newName, parameters, error))
        return false;
    const bool renamed = m_engine.copyExamples(name, newName, error) && m_models.renameModel(name, newName, error);
    if (renamed && m_engine.remove(name, error))
        return true;
    QString ignored;
    if (renamed)
        m_models.renameModel(newName, name, &ignored);
    if (!parameters.isEmpty()) {
        m_engine.remove(newName, &ignored);
        m_engine.save(newName, overwritten, &ignored);
    }
    return false;
}

/// The index last: its change goes to every table, and cannot be taken back where the stations' indices differed.
bool ModelActions::changeValues(const ModelEntry& before, const ModelEntry& after, QString* error)
{
    const bool marked = after.calibrated != before.calibrated;
    if (marked && !m_models.setCalibrated(after.name, after.calibrated, error))
        return false;
    if (after.index != before.index && !m_models.changeIndex(after.name, after.index, error)) {
        QString ignored;
        if (marked)
            m_models.setCalibrated(after.name, before.calibrated, &ignored);
        return false;
    }
    const QString key = QStringLiteral("model/%1/").arg(after.name);
    if (after.index != before.index)
        note(key + QStringLiteral("plcIndex"), QString::number(before.index), QString::number(after.index));
    if (marked)
        note(key + QStringLiteral("calibrated"), yesNo(before.calibrated), yesNo(after.calibrated));
    return true;
}

bool ModelActions::remove(const QString& name, bool withParameters, QString* error)
{
    const ModelEntry before = entry(name);
    const SolutionParameters parameters = m_engine.parameters(name);
    if (withParameters && !m_engine.remove(name, error))
        return false;
    if (!m_models.removeModel(name, error)) {
        QString ignored;
        if (withParameters)
            m_engine.save(name, parameters, &ignored);
        return false;
    }
    note(QStringLiteral("model/") + name, QString::number(before.index), {});
    return true;
}

bool ModelActions::exportTo(const QString& path, const QString& name, QString* error) const
{
    const ModelFile file{entry(name), m_engine.parameters(name)};
    if (!file.entry.name.isEmpty())
        return file.write(path, error);
    *error = tr("型号%1不存在").arg(name);
    return false;
}

QStringList ModelActions::unknownSolutions(const ModelFile& file) const
{
    QStringList unknown = file.parameters.keys();
    const QStringList known = m_engine.solutions();
    for (const QString& solution : known)
        unknown.removeAll(solution);
    return unknown;
}
