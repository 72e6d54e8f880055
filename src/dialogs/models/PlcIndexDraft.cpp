#include "dialogs/models/PlcIndexDraft.h"

#include "common/forms/NumberField.h"
#include "workflow/ModelManager.h"

#include <algorithm>

namespace {

constexpr int mostSentences = 3; // more would push the table off the screen

using StationTable = PlcIndexTable::StationTable;

QString indexText(const StationTable& table, const QString& name)
{
    return table.contains(name) ? QString::number(table.value(name)) : QString();
}

AuditChanges differences(const QString& station, const StationTable& before, const StationTable& after)
{
    AuditChanges changes;
    QStringList names = before.keys() + after.keys();
    names.sort();
    names.removeDuplicates();
    for (const QString& name : qAsConst(names)) {
        if (indexText(before, name) != indexText(after, name))
            changes.append(
                {QStringLiteral("plcIndex/%1/%2").arg(station, name), indexText(before, name), indexText(after, name)});
    }
    return changes;
}

} // namespace

PlcIndexDraft::PlcIndexDraft(ModelManager& models, const PlcIndexTable& stored)
    : m_models(models)
    , m_stored(stored)
{
}

void PlcIndexDraft::setStations(const QStringList& stations)
{
    m_stations = stations;
    m_stations.removeAll(QString());
    m_stations.removeDuplicates();
    refresh();
}

void PlcIndexDraft::refresh()
{
    m_names.clear();
    for (int row = 0; row < m_models.modelCount(); ++row)
        m_names.append(m_models.modelName(row));
    m_library = QSet<QString>(m_names.begin(), m_names.end());
    for (const QString& station : qAsConst(m_stations))
        m_names += m_stored.table(station).keys();
    for (auto it = m_typed.begin(); it != m_typed.end(); ++it)
        m_names.append(it.key().second);
    m_names.sort();
    m_names.removeDuplicates();
    countOwners();
}

void PlcIndexDraft::forgetTyped()
{
    m_typed.clear();
    refresh();
}

void PlcIndexDraft::type(const QVector<Cell>& cells, const QString& text)
{
    for (const Cell& cell : cells)
        put(cell, text);
    countOwners();
}

QString PlcIndexDraft::storedText(const Cell& cell) const
{
    return indexText(m_stored.table(cell.first), cell.second);
}

void PlcIndexDraft::put(const Cell& cell, const QString& text)
{
    const QString typed = text.trimmed();
    if (typed == storedText(cell))
        m_typed.remove(cell);
    else
        m_typed.insert(cell, typed);
}

PlcIndexDraft::Mark PlcIndexDraft::mark(const Cell& cell) const
{
    const QString text = this->text(cell);
    if (text.isEmpty())
        return Mark::None;
    if (!WholeNumber::problem(text, lowestIndex, highestIndex).isEmpty())
        return Mark::Wrong;
    if (!m_library.contains(cell.second))
        return Mark::Missing;
    return owners(cell).size() < 2 ? Mark::None : Mark::Shared;
}

/// The models of the station that have the cell's index, in name order.
QStringList PlcIndexDraft::owners(const Cell& cell) const
{
    QStringList names = m_owners.value(cell.first).values(WholeNumber::parse(text(cell)).value_or(0));
    names.sort();
    return names;
}

void PlcIndexDraft::countOwners()
{
    m_owners.clear();
    for (const QString& station : qAsConst(m_stations)) {
        for (const QString& name : qAsConst(m_names)) {
            const std::optional<qint64> index = WholeNumber::parse(text({station, name}));
            if (index)
                m_owners[station].insert(*index, name);
        }
    }
}

QString PlcIndexDraft::explanation(const Cell& cell) const
{
    const QString& name = cell.second;
    switch (mark(cell)) {
    case Mark::None:
        break;
    case Mark::Wrong:
        return tr("%1，%2：%3").arg(cell.first, name, WholeNumber::problem(text(cell), lowestIndex, highestIndex));
    case Mark::Missing:
        return tr("%1：型号库中没有“%2”，请清除其索引或添加此型号").arg(cell.first, name);
    case Mark::Shared: {
        const QStringList names = owners(cell);
        return tr("%1：索引%2被%3共用，实际使用“%4”").arg(cell.first, text(cell), names.join(tr("、")), names.first());
    }
    }
    return {};
}

QString PlcIndexDraft::problem() const
{
    for (const QString& station : m_stations) {
        for (const QString& name : m_names) {
            const Mark mark = this->mark({station, name});
            if (mark == Mark::Wrong || mark == Mark::Missing)
                return explanation({station, name});
        }
    }
    return {};
}

QString PlcIndexDraft::warning() const
{
    QStringList sentences;
    for (const QString& station : m_stations) {
        for (const QString& name : m_names) {
            if (mark({station, name}) == Mark::Shared)
                sentences.append(explanation({station, name}));
        }
    }
    sentences.removeDuplicates();
    if (sentences.size() > mostSentences)
        sentences = sentences.mid(0, mostSentences) << QStringLiteral("…");
    return sentences.join(QLatin1Char('\n'));
}

bool PlcIndexDraft::isEdited() const
{
    return std::any_of(m_stations.begin(), m_stations.end(),
                       [this](const QString& station) { return typedTable(station) != m_stored.table(station); });
}

StationTable PlcIndexDraft::typedTable(const QString& station) const
{
    StationTable table;
    for (const QString& name : m_names) {
        const QString text = this->text({station, name});
        if (!text.isEmpty())
            table.insert(name, qint32(WholeNumber::parse(text).value_or(0)));
    }
    return table;
}

bool PlcIndexDraft::store(AuditChanges* changes, QString* error)
{
    QMap<QString, StationTable> before;
    QMap<QString, StationTable> after;
    for (const QString& station : qAsConst(m_stations)) {
        before.insert(station, m_stored.table(station));
        after.insert(station, typedTable(station));
    }
    for (const QString& station : qAsConst(m_stations)) {
        if (after[station] == before[station] || m_models.setStationTable(station, after[station], error))
            continue;
        QString ignored;
        for (const QString& done : m_stations.mid(0, m_stations.indexOf(station)))
            m_models.setStationTable(done, before[done], &ignored);
        return false;
    }
    for (const QString& station : qAsConst(m_stations))
        *changes += differences(station, before[station], after[station]);
    return true;
}

PlcIndexTable PlcIndexDraft::fileTables() const
{
    PlcIndexTable file = m_stored;
    file.load();
    return file;
}

bool PlcIndexDraft::isFileForeign() const
{
    const PlcIndexTable file = fileTables();
    return std::any_of(m_stations.begin(), m_stations.end(), [&](const QString& station) {
        const StationTable table = file.table(station);
        return table != m_stored.table(station) && table != typedTable(station);
    });
}

bool PlcIndexDraft::hasFileIndices() const
{
    const PlcIndexTable file = fileTables();
    return std::any_of(m_stations.begin(), m_stations.end(),
                       [&](const QString& station) { return !file.table(station).isEmpty(); });
}

void PlcIndexDraft::typeFile()
{
    const PlcIndexTable file = fileTables();
    m_typed.clear();
    refresh();
    for (const QString& station : qAsConst(m_stations)) {
        const StationTable table = file.table(station);
        for (const QString& name : qAsConst(m_names))
            put({station, name}, indexText(table, name));
        for (auto it = table.begin(); it != table.end(); ++it)
            put({station, it.key()}, QString::number(it.value()));
    }
    refresh();
}
