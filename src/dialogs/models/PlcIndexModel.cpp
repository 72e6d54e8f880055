#include "dialogs/models/PlcIndexModel.h"

#include "dialogs/fields/Tone.h"
#include "dialogs/fields/WholeNumber.h"
#include "workflow/ModelManager.h"

#include <algorithm>

namespace {

constexpr int kMostSentences = 3; // more would push the table off the screen

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

PlcIndexModel::PlcIndexModel(ModelManager& models, const PlcIndexTable& stored, QObject* parent)
    : QAbstractTableModel(parent)
    , m_models(models)
    , m_stored(stored)
{
    connect(&m_models, &ModelManager::changed, this, &PlcIndexModel::refresh);
}

void PlcIndexModel::setStations(const QStringList& stations)
{
    m_stations = stations;
    m_stations.removeAll(QString());
    m_stations.removeDuplicates();
    refresh();
}

void PlcIndexModel::refresh()
{
    beginResetModel();
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
    endResetModel();
}

void PlcIndexModel::clear(const QModelIndexList& cells)
{
    for (const QModelIndex& cell : cells) {
        if (cell.column() > 0)
            type(cellOf(cell), QString());
    }
    countOwners();
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void PlcIndexModel::forgetTyped()
{
    m_typed.clear();
    refresh();
}

QString PlcIndexModel::storedText(const Cell& cell) const
{
    return indexText(m_stored.table(cell.first), cell.second);
}

void PlcIndexModel::type(const Cell& cell, const QString& text)
{
    const QString typed = text.trimmed();
    if (typed == storedText(cell))
        m_typed.remove(cell);
    else
        m_typed.insert(cell, typed);
}

PlcIndexModel::Cell PlcIndexModel::cellOf(const QModelIndex& index) const
{
    return {m_stations.value(index.column() - 1), m_names.value(index.row())};
}

PlcIndexModel::Mark PlcIndexModel::mark(const Cell& cell) const
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
QStringList PlcIndexModel::owners(const Cell& cell) const
{
    QStringList names = m_owners.value(cell.first).values(WholeNumber::parse(text(cell)).value_or(0));
    names.sort();
    return names;
}

void PlcIndexModel::countOwners()
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

QString PlcIndexModel::explanation(const Cell& cell) const
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

QString PlcIndexModel::problem() const
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

QString PlcIndexModel::warning() const
{
    QStringList sentences;
    for (const QString& station : m_stations) {
        for (const QString& name : m_names) {
            if (mark({station, name}) == Mark::Shared)
                sentences.append(explanation({station, name}));
        }
    }
    sentences.removeDuplicates();
    if (sentences.size() > kMostSentences)
        sentences = sentences.mid(0, kMostSentences) << QStringLiteral("…");
    return sentences.join(QLatin1Char('\n'));
}

bool PlcIndexModel::isEdited() const
{
    return std::any_of(m_stations.begin(), m_stations.end(),
                       [this](const QString& station) { return typedTable(station) != m_stored.table(station); });
}

StationTable PlcIndexModel::typedTable(const QString& station) const
{
    StationTable table;
    for (const QString& name : m_names) {
        const QString text = this->text({station, name});
        if (!text.isEmpty())
            table.insert(name, qint32(WholeNumber::parse(text).value_or(0)));
    }
    return table;
}

bool PlcIndexModel::store(AuditChanges* changes, QString* error)
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
    forgetTyped();
    return true;
}

PlcIndexTable PlcIndexModel::fileTables() const
{
    PlcIndexTable file = m_stored;
    file.load();
    return file;
}

bool PlcIndexModel::isFileForeign() const
{
    const PlcIndexTable file = fileTables();
    return std::any_of(m_stations.begin(), m_stations.end(), [&](const QString& station) {
        const StationTable table = file.table(station);
        return table != m_stored.table(station) && table != typedTable(station);
    });
}

bool PlcIndexModel::hasFileIndices() const
{
    const PlcIndexTable file = fileTables();
    return std::any_of(m_stations.begin(), m_stations.end(),
                       [&](const QString& station) { return !file.table(station).isEmpty(); });
}

void PlcIndexModel::typeFile()
{
    const PlcIndexTable file = fileTables();
    m_typed.clear();
    refresh();
    for (const QString& station : qAsConst(m_stations)) {
        const StationTable table = file.table(station);
        for (const QString& name : qAsConst(m_names))
            type({station, name}, indexText(table, name));
        for (auto it = table.begin(); it != table.end(); ++it)
            type({station, it.key()}, QString::number(it.value()));
    }
    refresh();
}

int PlcIndexModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_names.size();
}

int PlcIndexModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1 + m_stations.size();
}

QVariant PlcIndexModel::ground(const Cell& cell) const
{
    const Mark mark = this->mark(cell);
    if (mark == Mark::None)
        return {};
    return toneGround(mark == Mark::Shared ? Tone::Warning : Tone::Error);
}

QVariant PlcIndexModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Cell cell = cellOf(index);
    const bool nameColumn = index.column() == 0;
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return nameColumn ? cell.second : text(cell);
    if (role == Qt::BackgroundRole && nameColumn)
        return m_library.contains(cell.second) ? QVariant() : toneGround(Tone::Error);
    if (role == Qt::ToolTipRole && nameColumn)
        return m_library.contains(cell.second) ? QVariant() : tr("型号库中没有此型号");
    if (role == Qt::BackgroundRole)
        return ground(cell);
    return role == Qt::ToolTipRole ? explanation(cell) : QVariant();
}

bool PlcIndexModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid) || index.column() == 0)
        return false;
    type(cellOf(index), value.toString());
    countOwners();
    emit dataChanged(this->index(0, index.column()), this->index(rowCount() - 1, index.column()));
    return true;
}

Qt::ItemFlags PlcIndexModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags common = QAbstractTableModel::flags(index);
    return index.column() > 0 ? common | Qt::ItemIsEditable : common;
}

QVariant PlcIndexModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    return section == 0 ? tr("型号") : m_stations.value(section - 1);
}
