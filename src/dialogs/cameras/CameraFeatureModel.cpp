#include "dialogs/cameras/CameraFeatureModel.h"

#include "common/FingerSize.h"
#include "common/LookColors.h"
#include "common/forms/InlineMessage.h"
#include "common/forms/NumberField.h"

#include <QFont>
#include <QSize>

#include <algorithm>
#include <cmath>

namespace {

using FeatureKind = CameraFeature::Kind;

QString number(double value)
{
    return QString::number(value, 'g', 12);
}

bool hasRange(const CameraFeature& feature)
{
    return (feature.kind == FeatureKind::Number || feature.kind == FeatureKind::Whole) &&
           feature.maximum > feature.minimum;
}

} // namespace

CameraFeatureModel::CameraFeatureModel(QObject* parent)
    : QAbstractItemModel(parent)
{
}

QVector<CameraFeatureModel::Group> CameraFeatureModel::grouped(const QVector<CameraFeature>& features)
{
    QVector<Group> groups;
    for (const CameraFeature& feature : features) {
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&feature](const Group& one) { return one.name == feature.category; });
        if (group == groups.end())
            group = groups.insert(groups.end(), {feature.category, {}});
        group->rows.append({feature, {}, {}});
    }
    return groups;
}

bool CameraFeatureModel::hasRowsOf(const QVector<Group>& groups) const
{
    const auto sameRow = [](const Row& a, const Row& b) { return a.feature.name == b.feature.name; };
    return std::equal(
        m_groups.begin(), m_groups.end(), groups.begin(), groups.end(), [&sameRow](const Group& a, const Group& b) {
            return a.name == b.name && std::equal(a.rows.begin(), a.rows.end(), b.rows.begin(), b.rows.end(), sameRow);
        });
}

void CameraFeatureModel::setFeatures(const QVector<CameraFeature>& features)
{
    const QVector<Group> groups = grouped(features);
    if (hasRowsOf(groups))
        return update(groups);
    beginResetModel();
    m_groups = groups;
    endResetModel();
}

void CameraFeatureModel::update(const QVector<Group>& groups)
{
    for (int group = 0; group < groups.size(); ++group) {
        for (int row = 0; row < groups[group].rows.size(); ++row) {
            m_groups[group].rows[row].feature = groups[group].rows[row].feature;
            touch(group, row);
        }
    }
}

void CameraFeatureModel::touch(int group, int row)
{
    const QModelIndex parent = index(group, 0);
    emit dataChanged(index(row, 0, parent), index(row, columns - 1, parent));
}

void CameraFeatureModel::finishWriting(const QString& name, const QString& error)
{
    for (int group = 0; group < m_groups.size(); ++group) {
        for (int at = 0; at < m_groups[group].rows.size(); ++at) {
            Row& row = m_groups[group].rows[at];
            if (row.feature.name != name)
                continue;
            row.writing.clear();
            row.error = error;
            touch(group, at);
        }
    }
}

QModelIndex CameraFeatureModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? quintptr(parent.row()) + 1 : 0);
}

QModelIndex CameraFeatureModel::parent(const QModelIndex& index) const
{
    return !index.isValid() || index.internalId() == 0 ? QModelIndex()
                                                       : createIndex(int(index.internalId()) - 1, 0, quintptr(0));
}

int CameraFeatureModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return m_groups.size();
    return parent.internalId() == 0 && parent.column() == 0 ? m_groups[parent.row()].rows.size() : 0;
}

int CameraFeatureModel::columnCount(const QModelIndex&) const
{
    return columns;
}

const CameraFeatureModel::Row* CameraFeatureModel::row(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == 0)
        return nullptr;
    return &m_groups[int(index.internalId()) - 1].rows[index.row()];
}

const CameraFeature* CameraFeatureModel::feature(const QModelIndex& index) const
{
    const Row* found = row(index);
    return found ? &found->feature : nullptr;
}

bool CameraFeatureModel::hasError(const QModelIndex& index) const
{
    const Row* found = row(index);
    return found && !found->error.isEmpty();
}

QString CameraFeatureModel::note(const QModelIndex& index) const
{
    const Row* found = row(index);
    if (!found)
        return {};
    const CameraFeature& feature = found->feature;
    const QString said = !found->error.isEmpty()     ? found->error
                         : !feature.locked.isEmpty() ? tr("不能修改：%1").arg(feature.locked)
                                                     : feature.tip;
    return said.isEmpty() ? feature.name : tr("%1：%2").arg(feature.name, said);
}

QString CameraFeatureModel::valueText(const Row& row)
{
    const CameraFeature& feature = row.feature;
    if (!row.writing.isEmpty())
        return tr("%1，正在写入…").arg(row.writing);
    if (feature.kind == FeatureKind::Command)
        return tr("执行…");
    if (!feature.value.isValid())
        return tr("（读不到）");
    if (feature.kind == FeatureKind::Switch)
        return feature.value.toBool() ? tr("开") : tr("关");
    const QString text =
        feature.kind == FeatureKind::Number ? number(feature.value.toDouble()) : feature.value.toString();
    return feature.unit.isEmpty() ? text : text + QLatin1Char(' ') + feature.unit;
}

QString CameraFeatureModel::rangeText(const CameraFeature& feature)
{
    if (feature.kind == FeatureKind::Choice)
        return tr("%1 种").arg(feature.choices.size());
    if (!hasRange(feature))
        return {};
    return QStringLiteral("%1 … %2").arg(number(feature.minimum), number(feature.maximum));
}

QString CameraFeatureModel::groupName(int group) const
{
    return m_groups[group].name.isEmpty() ? tr("其他") : m_groups[group].name;
}

QString CameraFeatureModel::text(const Row& row, int column) const
{
    switch (column) {
    case Name:
        return row.feature.caption.isEmpty() ? row.feature.name : row.feature.caption;
    case Value:
        return valueText(row);
    default:
        return rangeText(row.feature);
    }
}

QVariant CameraFeatureModel::data(const QModelIndex& index, int role) const
{
    const Row* found = row(index);
    if (role == Qt::SizeHintRole)
        return QSize(0, fingerSize);
    if (!found) {
        QFont bold;
        bold.setBold(true);
        return !index.isValid() || index.column() != Name ? QVariant()
               : role == Qt::DisplayRole                  ? QVariant(groupName(index.row()))
               : role == Qt::FontRole                     ? QVariant(bold)
                                                          : QVariant();
    }
    const CameraFeature& feature = found->feature;
    switch (role) {
    case Qt::DisplayRole:
        return text(*found, index.column());
    case Qt::ToolTipRole:
        return note(index);
    case Qt::EditRole:
        return feature.kind == FeatureKind::Number ? QVariant(number(feature.value.toDouble())) : feature.value;
    case Qt::ForegroundRole:
        return feature.locked.isEmpty() ? QVariant() : QVariant(lookColors().faint);
    case Qt::BackgroundRole:
        return found->error.isEmpty() || index.column() != Value ? QVariant() : QVariant(toneGround(Tone::Error));
    case FilterRole:
        return QStringList{feature.category, feature.caption, feature.name, feature.tip}.join(QLatin1Char('\n'));
    default:
        return {};
    }
}

Qt::ItemFlags CameraFeatureModel::flags(const QModelIndex& index) const
{
    const Row* found = row(index);
    const bool editable =
        found && index.column() == Value && found->feature.locked.isEmpty() && found->writing.isEmpty();
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | (editable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

/// What was typed as the feature takes it; `problem` says why it cannot.
QVariant CameraFeatureModel::typed(const CameraFeature& feature, const QVariant& value, QString* problem)
{
    if (feature.kind == FeatureKind::Command)
        return {};
    if (feature.kind == FeatureKind::Switch)
        return value.toBool();
    const QString text = value.toString().trimmed();
    if (feature.kind == FeatureKind::Text || feature.kind == FeatureKind::Choice)
        return text;
    bool isNumber = false;
    const double real = WholeNumber::halfWidth(text).toDouble(&isNumber);
    const auto whole = WholeNumber::parse(text);
    if (feature.kind == FeatureKind::Whole && !whole)
        *problem = tr("“%1”不是整数").arg(text);
    else if (!isNumber || !std::isfinite(real))
        *problem = tr("“%1”不是数字").arg(text);
    else if (hasRange(feature) && (real < feature.minimum || real > feature.maximum))
        *problem = tr("%1不在%2到%3之间").arg(text, number(feature.minimum), number(feature.maximum));
    return feature.kind == FeatureKind::Whole ? QVariant(qlonglong(whole.value_or(0))) : QVariant(real);
}

bool CameraFeatureModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    Row& found = m_groups[int(index.internalId()) - 1].rows[index.row()];
    QString problem;
    const QVariant wanted = typed(found.feature, value, &problem);
    const bool same = problem.isEmpty() && found.feature.kind != FeatureKind::Command && wanted == found.feature.value;
    found.error = problem;
    if (problem.isEmpty() && !same)
        found.writing = found.feature.kind == FeatureKind::Command ? tr("执行") : wanted.toString();
    const CameraFeature feature = found.feature;
    touch(int(index.internalId()) - 1, index.row());
    if (problem.isEmpty() && !same)
        emit writeWanted(feature, wanted);
    return problem.isEmpty();
}

QVariant CameraFeatureModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString captions[columns] = {tr("名称"), tr("值"), tr("范围")};
    return captions[section];
}
