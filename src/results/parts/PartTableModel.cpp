#include "results/parts/PartTableModel.h"

#include "results/parts/PartTexts.h"

namespace {

/// What the reader sorts a column by; those without one keep the order.
std::optional<PartReader::Column> sortOf(int column)
{
    switch (column) {
    case PartTableModel::Time:
        return PartReader::Time;
    case PartTableModel::Station:
        return PartReader::Station;
    case PartTableModel::Model:
        return PartReader::Model;
    case PartTableModel::PlcIndex:
        return PartReader::PlcIndex;
    case PartTableModel::Outcome:
        return PartReader::Outcome;
    case PartTableModel::Reason:
        return PartReader::Error;
    case PartTableModel::Angle:
        return PartReader::Angle;
    case PartTableModel::X:
        return PartReader::X;
    case PartTableModel::Y:
        return PartReader::Y;
    case PartTableModel::Score:
        return PartReader::Score;
    case PartTableModel::ReplyMs:
        return PartReader::ReplyMs;
    case PartTableModel::User:
        return PartReader::User;
    case PartTableModel::Calibration:
        return PartReader::Calibration;
    default:
        return std::nullopt;
    }
}

} // namespace

PartTableModel::PartTableModel(QObject* parent)
    : PagedTable(parent)
{
}

void PartTableModel::refresh()
{
    const bool searches = !m_filter.text.isEmpty() && m_by == PartReader::Time && m_order == Qt::DescendingOrder;
    const auto rows = [by = m_by, order = m_order](PartReader& reader, const PartFilter& filter, int limit,
                                                   int offset) {
        return reader.rows(filter, by, order, limit, offset);
    };
    restart<PartReader>(m_home, m_filter, searches, rows);
}

void PartTableModel::setReview(qint64 uid, bool marked, const QString& comment)
{
    changeRows([&](PartRow& row) {
        if (row.uid == uid) {
            row.marked = marked;
            row.comment = comment;
        }
    });
}

int PartTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PartTableModel::data(const QModelIndex& index, int role) const
{
    const PartRow* row = wanted(index.row());
    if (!row)
        return role == Qt::DisplayRole && index.column() == Time ? QVariant(QStringLiteral("…")) : QVariant();
    const bool number = index.column() >= Angle && index.column() <= ReplyMs;
    switch (role) {
    case Qt::DisplayRole:
        return PartColumns::text(*row, index.column());
    case Qt::ToolTipRole:
        return index.column() == Reason || index.column() == Comment ? PartColumns::text(*row, index.column())
                                                                     : QVariant();
    case Qt::TextAlignmentRole:
        return int((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        return index.column() == Outcome ? QVariant(signOf(row->part.outcome).ink) : QVariant();
    case Qt::BackgroundRole:
        return index.column() == Outcome ? QVariant(signOf(row->part.outcome).ground) : QVariant();
    default:
        return {};
    }
}

const LookColors::Sign& PartTableModel::signOf(PartOutcome outcome)
{
    const LookColors& colors = lookColors();
    return outcome == PartOutcome::Found ? colors.good : outcome == PartOutcome::Refused ? colors.caution : colors.bad;
}

QVariant PartTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    return PartColumns::column(section).title;
}

void PartTableModel::sort(int column, Qt::SortOrder order)
{
    const auto by = sortOf(column);
    if (!by || (*by == m_by && order == m_order))
        return;
    m_by = *by;
    m_order = order;
    if (!m_home.isEmpty())
        refresh();
}
