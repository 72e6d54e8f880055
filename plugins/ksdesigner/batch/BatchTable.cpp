#include "BatchTable.h"

#include "common/LookColors.h"

namespace {

int decimalsOf(int column)
{
    switch (column) {
    case BatchTable::MovedBy:
        return 2;
    case BatchTable::FirstTime:
    case BatchTable::SecondTime:
        return 1;
    default:
        return 3;
    }
}

/// What the columns of a recipe show, in their order.
enum Part { Found, Angle, Score, Time, X, Y, Residual };

Part partOf(int column)
{
    return static_cast<Part>((column - BatchTable::FirstFound) / 2);
}

bool isSecond(int column)
{
    return column >= BatchTable::FirstFound && column <= BatchTable::SecondResidual &&
           (column - BatchTable::FirstFound) % 2 == 1;
}

QVariant valueOf(const TaskResult& result, Part part)
{
    switch (part) {
    case Found:
        return result.found ? BatchTable::tr("找到") : result.tip.isEmpty() ? BatchTable::tr("未找到") : result.tip;
    case Angle:
        return result.found ? QVariant(result.angle) : QVariant();
    case Score:
        return result.found || result.score > 0 ? QVariant(result.score) : QVariant();
    case Time:
        return result.taskTime;
    case X:
        return result.found ? QVariant(result.center.x()) : QVariant();
    case Y:
        return result.found ? QVariant(result.center.y()) : QVariant();
    case Residual:
        return result.found ? QVariant(result.residual) : QVariant();
    }
    return {};
}

QString verdictText(BatchRow::Verdict verdict)
{
    switch (verdict) {
    case BatchRow::Verdict::None:
        return {};
    case BatchRow::Verdict::Hole:
        return BatchTable::tr("孔");
    case BatchRow::Verdict::Rejected:
        return BatchTable::tr("误认");
    }
    return {};
}

/// Text or number; invalid where there is nothing to show.
QVariant valueOf(const BatchRow& row, int column)
{
    if (column == BatchTable::Image)
        return row.name;
    if (column == BatchTable::ChangeColumn)
        return BatchTable::changeText(row.change());
    if (column == BatchTable::VerdictColumn)
        return verdictText(row.verdict);
    if (column == BatchTable::FirstFound && !row.problem.isEmpty())
        return row.problem;
    if (!row.problem.isEmpty() || (BatchTable::isOfComparison(column) && !row.compared))
        return {};
    if (column >= BatchTable::FirstFound)
        return valueOf(isSecond(column) ? row.second : row.first, partOf(column));
    if (!row.bothFound())
        return {};
    return column == BatchTable::MovedBy ? row.movedBy() : row.turnedBy();
}

bool isNotable(const BatchRow& row)
{
    const BatchRow::Change change = row.change();
    return change == BatchRow::Change::None ? !row.first.found : change != BatchRow::Change::Same;
}

QVariant colourOf(const BatchRow& row)
{
    switch (row.change()) {
    case BatchRow::Change::Lost:
    case BatchRow::Change::Unreadable:
        return lookColors().bad.ground;
    case BatchRow::Change::Gained:
        return lookColors().good.ground;
    case BatchRow::Change::Moved:
        return lookColors().caution.ground;
    default:
        return isNotable(row) ? QVariant(lookColors().window) : QVariant();
    }
}

} // namespace

BatchTable::BatchTable(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void BatchTable::clear(const QString& firstTitle, const QString& secondTitle)
{
    beginResetModel();
    m_rows.clear();
    m_summary = {};
    m_firstTitle = firstTitle;
    m_secondTitle = secondTitle;
    endResetModel();
}

void BatchTable::append(const BatchRow& row)
{
    beginInsertRows({}, m_rows.size(), m_rows.size());
    m_rows.append(row);
    m_summary.add(row);
    endInsertRows();
}

void BatchTable::setVerdict(const QString& path, BatchRow::Verdict verdict)
{
    for (int i = 0; i < m_rows.size(); ++i) {
        if (m_rows.at(i).path != path)
            continue;
        m_rows[i].verdict = verdict;
        emit dataChanged(index(i, 0), index(i, ColumnCount - 1));
    }
}

int BatchTable::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int BatchTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant BatchTable::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const BatchRow& row = m_rows.at(index.row());
    QVariant value = valueOf(row, index.column());
    const bool number = value.type() == QVariant::Double;
    switch (role) {
    case Qt::DisplayRole:
        return number ? QString::number(value.toDouble(), 'f', decimalsOf(index.column())) : value;
    case Qt::ToolTipRole:
        return row.problem.isEmpty() ? row.path : row.problem;
    case Qt::TextAlignmentRole:
        return int((number ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::BackgroundRole:
        return colourOf(row);
    case Qt::ForegroundRole:
        return colourOf(row).isValid() ? QVariant(lookColors().text) : QVariant();
    case sortRole:
        return value;
    case notableRole:
        return isNotable(row);
    default:
        return {};
    }
}

QVariant BatchTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    static const char* const parts[] = {QT_TR_NOOP("结果"), QT_TR_NOOP("角度°"), QT_TR_NOOP("得分"),   QT_TR_NOOP("ms"),
                                        QT_TR_NOOP("X px"), QT_TR_NOOP("Y px"),  QT_TR_NOOP("残差 px")};
    if (section == VerdictColumn)
        return tr("人工\n确认");
    if (section >= FirstFound)
        return QStringLiteral("%1\n%2").arg(isSecond(section) ? m_secondTitle : m_firstTitle,
                                            tr(parts[partOf(section)]));
    switch (section) {
    case Image:
        return tr("图像");
    case ChangeColumn:
        return tr("变化");
    case MovedBy:
        return tr("移动\npx");
    default:
        return tr("转动\n°");
    }
}

bool BatchTable::isOfComparison(int column)
{
    return column == ChangeColumn || column == MovedBy || column == TurnedBy || isSecond(column);
}

QString BatchTable::changeText(BatchRow::Change change)
{
    switch (change) {
    case BatchRow::Change::None:
        return {};
    case BatchRow::Change::Same:
        return tr("一致");
    case BatchRow::Change::Moved:
        return tr("移动");
    case BatchRow::Change::Gained:
        return tr("新找到");
    case BatchRow::Change::Lost:
        return tr("丢失");
    case BatchRow::Change::BothMissed:
        return tr("均未找到");
    case BatchRow::Change::Unreadable:
        return tr("无法读取");
    }
    return {};
}
