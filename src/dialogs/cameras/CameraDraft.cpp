#include "dialogs/cameras/CameraDraft.h"

#include "common/forms/InlineMessage.h"
#include "dialogs/cameras/CameraNames.h"

#include <QFont>
#include <QSize>

#include <algorithm>

namespace {
constexpr int keyColumnWidth = 120; ///< at least, so that a list of short names does not look squeezed
} // namespace

CameraDraft::CameraDraft(CameraAccess& cameras, QObject* parent)
    : QAbstractTableModel(parent)
    , m_cameras(cameras)
{
    reset();
}

CameraDraft::Row CameraDraft::configured(const QString& key) const
{
    Row row;
    row.status = m_cameras.status(key);
    row.entry = {key, row.status.type, m_cameras.settingsOf(key)};
    row.before = row.entry;
    return row;
}

void CameraDraft::reset()
{
    beginResetModel();
    m_rows.clear();
    const QStringList keys = m_cameras.core.cameraKeys();
    for (const QString& key : keys)
        m_rows.append(configured(key));
    endResetModel();
}

int CameraDraft::find(const QString& key) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [&key](const Row& row) { return row.entry.key == key; });
    return found == m_rows.end() ? -1 : int(found - m_rows.begin());
}

QStringList CameraDraft::keys() const
{
    QStringList keys;
    for (const Row& row : m_rows)
        keys << row.entry.key;
    return keys;
}

void CameraDraft::refresh()
{
    const QStringList keys = m_cameras.core.cameraKeys();
    for (int i = m_rows.size() - 1; i >= 0; --i) {
        if (m_rows[i].mark == Mark::Added || keys.contains(m_rows[i].entry.key))
            continue;
        beginRemoveRows({}, i, i);
        m_rows.remove(i);
        endRemoveRows();
    }
    for (const QString& key : keys) {
        const int at = find(key);
        const Row now = configured(key);
        if (at < 0) {
            beginInsertRows({}, m_rows.size(), m_rows.size());
            m_rows.append(now);
            endInsertRows();
        } else if (m_rows[at].mark == Mark::Kept) {
            m_rows[at] = now;
        } else {
            m_rows[at].status = now.status;
        }
    }
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, 0), index(m_rows.size() - 1, columns - 1));
}

void CameraDraft::add(const CameraEntry& entry)
{
    beginInsertRows({}, m_rows.size(), m_rows.size());
    m_rows.append({entry, Mark::Added, {}, {}});
    endInsertRows();
}

void CameraDraft::change(int index, const CameraEntry& entry)
{
    Row& row = m_rows[index];
    row.entry = entry;
    if (row.mark != Mark::Added) {
        const bool same = entry.type == row.before.type && entry.settings == row.before.settings;
        row.mark = same ? Mark::Kept : Mark::Changed;
    }
    emit dataChanged(this->index(index, 0), this->index(index, columns - 1));
}

void CameraDraft::toggleRemoved(int index)
{
    Row& row = m_rows[index];
    if (row.mark == Mark::Added) {
        beginRemoveRows({}, index, index);
        m_rows.remove(index);
        endRemoveRows();
        return;
    }
    row.mark = row.mark == Mark::Removed ? Mark::Kept : Mark::Removed;
    row.entry = row.before;
    emit dataChanged(this->index(index, 0), this->index(index, columns - 1));
}

bool CameraDraft::isEdited() const
{
    return std::any_of(m_rows.begin(), m_rows.end(), [](const Row& row) { return row.mark != Mark::Kept; });
}

QString CameraDraft::problem() const
{
    const bool stays =
        std::any_of(m_rows.begin(), m_rows.end(), [](const Row& row) { return row.mark != Mark::Removed; });
    if (!stays)
        return tr("至少要保留一个相机，否则程序无法启动");
    for (const Row& row : m_rows) {
        QString reason;
        if (row.mark == Mark::Added && !m_cameras.list->isNewKey(row.entry.key, &reason))
            return reason; // another dialog may have taken the key meanwhile
    }
    return {};
}

QString CameraDraft::orphans() const
{
    QStringList stations;
    for (const Row& row : m_rows) {
        const QString own = m_cameras.stationsOf(row.entry.key);
        if (row.mark == Mark::Removed && !own.isEmpty())
            stations << own;
    }
    return stations.join(tr("、"));
}

int CameraDraft::count() const
{
    return int(std::count_if(m_rows.begin(), m_rows.end(), [](const Row& row) { return row.mark != Mark::Removed; }));
}

AuditChanges CameraDraft::audit() const
{
    AuditChanges changes;
    for (const Row& row : m_rows) {
        if (row.mark == Mark::Added)
            changes += CameraAudit::added(row.entry);
        else if (row.mark == Mark::Removed)
            changes += CameraAudit::removed(row.before);
        else
            changes += CameraAudit::changed(row.before, row.entry);
    }
    return changes;
}

/// A camera that changes its type starts with all that is shown.
CameraEntry CameraDraft::edits(const Row& row)
{
    CameraEntry edits = row.entry;
    if (row.entry.type == row.before.type)
        edits.settings = editedSettings(row.before.settings, edits.settings);
    return edits;
}

bool CameraDraft::apply(AuditChanges* changes, QString* error)
{
    QVector<CameraEntry> put;
    QStringList removed;
    for (const Row& row : qAsConst(m_rows)) {
        if (row.mark == Mark::Removed)
            removed << row.entry.key;
        else if (row.mark == Mark::Added)
            put << row.entry;
        else if (row.mark == Mark::Changed)
            put << edits(row);
    }
    if (!m_cameras.list->changeCameras(put, removed, error))
        return false;
    *changes = audit();
    reset();
    return true;
}

int CameraDraft::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int CameraDraft::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(columns);
}

QString CameraDraft::note(const Row& row) const
{
    switch (row.mark) {
    case Mark::Added:
        return tr("新增，尚未应用");
    case Mark::Changed:
        return tr("已修改，尚未应用");
    case Mark::Removed:
        return tr("将删除，尚未应用");
    case Mark::Kept:
        break;
    }
    return row.status.message;
}

QString CameraDraft::text(const Row& row, int column) const
{
    const bool runs = row.mark != Mark::Added;
    switch (column) {
    case Key:
        return row.entry.key;
    case Type:
        return CameraNames::of(row.entry.type);
    case State:
        return runs ? CameraNames::of(row.status.state) : QString();
    case Format:
        return runs ? CameraNames::of(row.status.format) : QString();
    case Stations:
        return m_cameras.stationsOf(row.entry.key);
    default:
        return note(row);
    }
}

QVariant CameraDraft::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Row& row = m_rows[index.row()];
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return text(row, index.column());
    if (role == Qt::FontRole && row.mark != Mark::Kept) {
        QFont font;
        font.setItalic(row.mark == Mark::Added || row.mark == Mark::Changed);
        font.setStrikeOut(row.mark == Mark::Removed && index.column() != Note);
        return font;
    }
    const bool wrong = row.mark == Mark::Kept && !row.status.message.isEmpty();
    if (role == Qt::BackgroundRole && wrong && index.column() == Note)
        return toneGround(Tone::Warning);
    return {};
}

QVariant CameraDraft::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::SizeHintRole))
        return {};
    if (role == Qt::SizeHintRole)
        return section == Key ? QVariant(QSize(keyColumnWidth, 0)) : QVariant();
    const QString captions[columns] = {tr("相机"), tr("类型"), tr("状态"), tr("像素格式"), tr("工位"), tr("说明")};
    return captions[section];
}
