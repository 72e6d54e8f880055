#include "guided/library/LibraryTable.h"

#include "common/LookColors.h"

#include <QFont>

void LibraryTable::setRows(const QVector<Row>& rows)
{
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

void LibraryTable::setUses(const QHash<QString, ModelUse>& uses)
{
    m_uses = uses;
    m_pictures.clear();
    refreshTexts();
}

void LibraryTable::setPicture(const QString& model, const QImage& picture)
{
    m_pictures.insert(model, picture);
    for (int row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].name == model)
            emit dataChanged(index(row, Picture), index(row, Picture), {Qt::DecorationRole});
    }
}

void LibraryTable::refreshTexts()
{
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, 0), index(m_rows.size() - 1, Columns - 1));
    emit headerDataChanged(Qt::Horizontal, 0, Columns - 1);
}

int LibraryTable::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int LibraryTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(Columns);
}

QString LibraryTable::text(const Row& row, int column) const
{
    const ModelUse use = m_uses.value(row.name);
    const auto taught = [](bool is) { return is ? tr("已示教") : tr("未示教"); };
    const auto index = [](int value) { return value > 0 ? QString::number(value) : QString(); };
    switch (column) {
    case Name:
        return row.name;
    case Taught1:
    case Taught2:
        return taught(row.taught[column - Taught1]);
    case Index1:
    case Index2:
        return index(row.index[column - Index1]);
    case LastSeen:
        return use.lastSeen.isValid() ? use.lastSeen.toString(QStringLiteral("yyyy-MM-dd HH:mm")) : QString();
    case Yield:
        return use.judged > 0 ? tr("%1 %（%2 件）").arg(use.yield(), 0, 'f', 1).arg(use.judged) : QString();
    default:
        return {};
    }
}

QVariant LibraryTable::sorted(const Row& row, int column) const
{
    const ModelUse use = m_uses.value(row.name);
    switch (column) {
    case Taught1:
    case Taught2:
        return row.taught[column - Taught1];
    case Index1:
    case Index2:
        return row.index[column - Index1];
    case LastSeen:
        return use.lastSeen.isValid() ? use.lastSeen.toMSecsSinceEpoch() : qint64(0);
    case Yield:
        return use.yield();
    default:
        return row.name;
    }
}

QVariant LibraryTable::thumbnail(const Row& row) const
{
    const auto known = m_pictures.constFind(row.name);
    if (known != m_pictures.constEnd())
        return known->isNull() ? QVariant() : *known;
    const ModelUse use = m_uses.value(row.name);
    if (use.last > 0)
        emit pictureWanted(row.name, use.last);
    return {};
}

QVariant LibraryTable::data(const QModelIndex& index, int role) const
{
    const Row& row = m_rows[index.row()];
    const bool untaught = index.column() == Taught1 || index.column() == Taught2;
    switch (role) {
    case Qt::DisplayRole:
        return text(row, index.column());
    case sortRole:
        return sorted(row, index.column());
    case Qt::DecorationRole:
        return index.column() == Picture ? thumbnail(row) : QVariant();
    case Qt::FontRole:
        if (row.current && index.column() == Name) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return {};
    case Qt::ToolTipRole:
        return row.current ? tr("正在运行") : QVariant();
    case Qt::ForegroundRole:
        return untaught && !row.taught[index.column() - Taught1] ? lookColors().caution.ink : QVariant();
    default:
        return {};
    }
}

QVariant LibraryTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString names[Columns] = {tr("图像"),   tr("型号"),   tr("工位1"),    tr("工位2"),
                                    tr("索引 1"), tr("索引 2"), tr("最近出现"), tr("合格率")};
    return section < Columns ? names[section] : QVariant();
}
