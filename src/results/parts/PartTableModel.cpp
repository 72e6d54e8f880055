#include "results/parts/PartTableModel.h"

#include "common/LookColors.h"
#include "results/parts/PartTexts.h"

namespace {

constexpr int pagesKept = 40;

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

const LookColors::Sign& signOf(PartOutcome outcome)
{
    const LookColors& colors = lookColors();
    return outcome == PartOutcome::Found ? colors.good : outcome == PartOutcome::Refused ? colors.caution : colors.bad;
}

} // namespace

PartTableModel::PartTableModel(QObject* parent)
    : QAbstractTableModel(parent)
    , m_pages(pagesKept)
    , m_background(Background::AtEnd::Wait)
{
}

/// The first page and the number of all rows come together.
void PartTableModel::refresh()
{
    const int number = ++m_number;
    m_background.clear();
    m_requested = {0};
    const auto read = [home = m_home, filter = m_filter, by = m_by, order = m_order] {
        Page page;
        PartFilter upToNow = filter;
        PartReader reader(home);
        if (!reader.open()) {
            page.error = reader.error();
            return page;
        }
        page.upTo = upToNow.upTo = reader.lastRow();
        page.rows = reader.rows(upToNow, by, order, rowsAPage, 0);
        page.error = reader.error();
        page.count = page.rows.size() < rowsAPage ? page.rows.size() : reader.count(upToNow);
        return page;
    };
    m_background.run(read, [this, number](const Page& page) { take(number, 0, page); });
}

void PartTableModel::request(int page) const
{
    if (m_requested.contains(page))
        return;
    m_requested.insert(page);
    const auto read = [home = m_home, filter = m_filter, by = m_by, order = m_order, page] {
        Page result;
        PartReader reader(home);
        if (reader.open())
            result.rows = reader.rows(filter, by, order, rowsAPage, page * rowsAPage);
        result.error = reader.error();
        return result;
    };
    auto* self = const_cast<PartTableModel*>(this); // a view asks for what is const only until it is read
    m_background.run(read, [self, page, number = m_number](const Page& result) { self->take(number, page, result); });
}

void PartTableModel::take(int number, int page, const Page& read)
{
    if (number != m_number)
        return;
    if (read.count >= 0 || !read.error.isEmpty()) {
        beginResetModel();
        m_pages.clear();
        m_count = qMax(0, read.count);
        m_filter.upTo = read.upTo;
        m_pages.insert(page, new QVector<PartRow>(read.rows));
        endResetModel();
        emit refreshed(m_count, read.error);
        return;
    }
    m_requested.remove(page);
    m_pages.insert(page, new QVector<PartRow>(read.rows));
    const int first = page * rowsAPage;
    emit dataChanged(index(first, 0), index(qMin(m_count, first + rowsAPage) - 1, ColumnCount - 1));
    emit loaded();
}

const PartRow* PartTableModel::part(int row) const
{
    if (row < 0 || row >= m_count)
        return nullptr;
    const QVector<PartRow>* page = m_pages.object(row / rowsAPage);
    const int within = row % rowsAPage;
    return page && within < page->size() ? &page->at(within) : nullptr;
}

void PartTableModel::setReview(qint64 uid, bool marked, const QString& comment)
{
    const QList<int> pages = m_pages.keys();
    for (const int page : pages) {
        for (PartRow& row : *m_pages.object(page)) {
            if (row.uid == uid) {
                row.marked = marked;
                row.comment = comment;
            }
        }
    }
    if (m_count > 0)
        emit dataChanged(index(0, 0), index(m_count - 1, ColumnCount - 1));
}

int PartTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_count;
}

int PartTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant PartTableModel::data(const QModelIndex& index, int role) const
{
    const PartRow* row = part(index.row());
    if (!row) {
        request(index.row() / rowsAPage);
        return role == Qt::DisplayRole && index.column() == Time ? QVariant(QStringLiteral("…")) : QVariant();
    }
    const bool number = index.column() >= Angle && index.column() <= ReplyMs;
    switch (role) {
    case Qt::DisplayRole:
        return text(*row, index.column());
    case Qt::ToolTipRole:
        return index.column() == Reason || index.column() == Comment ? text(*row, index.column()) : QVariant();
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

QVariant PartTableModel::text(const PartRow& row, int column) const
{
    const PartRecord& part = row.part;
    switch (column) {
    case Mark:
        return row.marked ? QStringLiteral("★") : QString();
    case Time:
        return PartTexts::time(row.wall);
    case Station:
        return PartTexts::station(part.station);
    case Model:
        return part.model;
    case PlcIndex:
        return QString::number(part.plcIndex);
    case Outcome:
        return PartTexts::outcome(part.outcome);
    case Reason:
        return PartTexts::reason(row);
    case Angle:
        return PartTexts::sent(part.angle);
    case X:
        return PartTexts::sent(part.x, row.placed);
    case Y:
        return PartTexts::sent(part.y, row.placed);
    case Score:
        return QString::number(part.score, 'f', 1);
    case ImageMs:
        return PartTexts::milliseconds(part.imageMs);
    case ResultMs:
        return PartTexts::milliseconds(part.resultMs);
    case ReplyMs:
        return PartTexts::milliseconds(part.replyMs);
    case User:
        return part.user;
    case Calibration:
        return part.calibration;
    default:
        return row.comment;
    }
}

QVariant PartTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    const QString names[ColumnCount] = {tr("标记"),   tr("时间"),    tr("工位"),    tr("型号"),    tr("PLC 索引"),
                                        tr("结果"),   tr("原因"),    tr("角度 °"),  tr("X"),       tr("Y"),
                                        tr("得分 %"), tr("图像 ms"), tr("检测 ms"), tr("应答 ms"), tr("用户"),
                                        tr("标定"),   tr("备注")};
    return names[section];
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
