#include "db/ModelModel.h"

#include <QBrush>
#include <QColor>

namespace {

enum Column { NameColumn, IndexColumn, CalibratedColumn, ColumnCount };

} // namespace

ModelModel::ModelModel(const IModelSource& source, QObject* parent)
    : QAbstractTableModel(parent)
    , m_source(source)
{
}

void ModelModel::refresh()
{
    beginResetModel();
    endResetModel();
}

void ModelModel::refreshCurrent()
{
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1), {Qt::BackgroundRole});
}

int ModelModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_source.modelCount();
}

int ModelModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ModelModel::displayed(int row, int column) const
{
    switch (column) {
    case NameColumn:
        return m_source.modelName(row);
    case IndexColumn:
        return m_source.shownIndex(row);
    default:
        return m_source.isCalibrated(row) ? tr("已标定") : tr("未标定");
    }
}

QVariant ModelModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    if (role == Qt::DisplayRole)
        return displayed(index.row(), index.column());
    if (role == Qt::BackgroundRole)
        return QBrush(m_source.isCurrent(index.row()) ? QColor(50, 250, 0, 80) : QColor(255, 255, 255, 255));
    if (role == Qt::ForegroundRole && index.column() == CalibratedColumn)
        return QBrush(m_source.isCalibrated(index.row()) ? QColor(Qt::black) : QColor(255, 0, 25));
    return {};
}

QVariant ModelModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return section + 1;
    const QStringList headers{tr("模型号"), tr("PLC索引值"), tr("标定情况")};
    return section >= 0 && section < headers.size() ? QVariant(headers[section]) : QVariant();
}
