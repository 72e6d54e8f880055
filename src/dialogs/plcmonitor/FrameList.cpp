#include "dialogs/plcmonitor/FrameList.h"

#include "common/forms/InlineMessage.h"

#include <algorithm>

namespace {
constexpr int forgottenAtOnce = 500;
} // namespace

FrameList::FrameList(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void FrameList::append(const QVector<SeenFrame>& frames)
{
    std::deque<qint64> passing;
    for (const SeenFrame& seen : frames) {
        m_rows.push_back({seen, FrameText::cells(seen)});
        if (passes(m_rows.back()))
            passing.push_back(m_first + total() - 1);
    }
    if (!passing.empty()) {
        beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(passing.size()) - 1);
        m_shown.insert(m_shown.end(), passing.begin(), passing.end());
        endInsertRows();
    }
    if (total() > kept + forgottenAtOnce)
        forgetOldest();
}

void FrameList::forgetOldest()
{
    const qint64 first = m_first + total() - kept;
    const auto stays = std::lower_bound(m_shown.begin(), m_shown.end(), first);
    const int gone = static_cast<int>(stays - m_shown.begin());
    if (gone > 0)
        beginRemoveRows({}, 0, gone - 1);
    m_shown.erase(m_shown.begin(), stays);
    m_rows.erase(m_rows.begin(), m_rows.begin() + (first - m_first));
    m_first = first;
    if (gone > 0)
        endRemoveRows();
}

void FrameList::clear()
{
    beginResetModel();
    m_first += total();
    m_rows.clear();
    m_shown.clear();
    endResetModel();
}

void FrameList::setFilter(const FrameFilter& filter)
{
    beginResetModel();
    m_filter = filter;
    m_shown.clear();
    for (size_t i = 0; i < m_rows.size(); ++i) {
        if (passes(m_rows[i]))
            m_shown.push_back(m_first + static_cast<qint64>(i));
    }
    endResetModel();
}

void FrameList::retranslate()
{
    for (Row& row : m_rows)
        row.cells = FrameText::cells(row.seen);
    setFilter(m_filter); // a text may be found in other rows now
}

bool FrameList::passes(const Row& row) const
{
    if (m_filter.hideHeartbeats && row.seen.isHeartbeat())
        return false;
    if (m_filter.way != FrameFilter::Both && row.seen.received != (m_filter.way == FrameFilter::Received))
        return false;
    if (m_filter.command >= 0 && row.seen.frame.command != m_filter.command)
        return false;
    const auto holds = [this](const QString& cell) { return cell.contains(m_filter.text, Qt::CaseInsensitive); };
    return m_filter.text.isEmpty() || std::any_of(row.cells.begin(), row.cells.end(), holds);
}

QVector<QStringList> FrameList::table() const
{
    QStringList titles;
    for (int column = 0; column < FrameText::ColumnCount; ++column)
        titles << FrameText::title(static_cast<FrameText::Column>(column));
    QVector<QStringList> lines{titles};
    lines.reserve(rowCount() + 1);
    for (int row = 0; row < rowCount(); ++row)
        lines << shown(row).cells;
    return lines;
}

int FrameList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int FrameList::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : FrameText::ColumnCount;
}

QVariant FrameList::data(const QModelIndex& index, int role) const
{
    const Row& row = shown(index.row());
    if (role == Qt::DisplayRole && index.column() == FrameText::Time)
        return row.cells[FrameText::Time].section(QLatin1Char(' '), 1); // a list of minutes needs no day
    if (role == Qt::DisplayRole)
        return row.cells[index.column()];
    if (role == Qt::BackgroundRole && row.seen.isWithoutResult())
        return toneGround(Tone::Warning);
    return {};
}

QVariant FrameList::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return FrameText::title(static_cast<FrameText::Column>(section));
}
