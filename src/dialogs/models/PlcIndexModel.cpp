#include "dialogs/models/PlcIndexModel.h"

#include "common/forms/InlineMessage.h"
#include "common/forms/NumberField.h"
#include "workflow/ModelManager.h"

#include <QKeyEvent>

namespace {
constexpr const char* textBefore = "textBefore";
} // namespace

PlcIndexModel::PlcIndexModel(ModelManager& models, const PlcIndexTable& stored, QObject* parent)
    : QAbstractTableModel(parent)
    , m_draft(models, stored)
{
    connect(&models, &ModelManager::changed, this, &PlcIndexModel::refresh);
}

template <typename Change>
void PlcIndexModel::reset(Change change)
{
    beginResetModel();
    change();
    endResetModel();
}

void PlcIndexModel::setStations(const QStringList& stations)
{
    reset([&] { m_draft.setStations(stations); });
}

void PlcIndexModel::refresh()
{
    reset([this] { m_draft.refresh(); });
}

void PlcIndexModel::forgetTyped()
{
    reset([this] { m_draft.forgetTyped(); });
}

void PlcIndexModel::typeFile()
{
    reset([this] { m_draft.typeFile(); });
}

bool PlcIndexModel::store(AuditChanges* changes, QString* error)
{
    const bool stored = m_draft.store(changes, error);
    if (stored)
        forgetTyped();
    return stored;
}

void PlcIndexModel::clear(const QModelIndexList& cells)
{
    QVector<PlcIndexDraft::Cell> emptied;
    for (const QModelIndex& cell : cells) {
        if (cell.column() > 0)
            emptied.append(cellOf(cell));
    }
    m_draft.type(emptied, QString());
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

PlcIndexDraft::Cell PlcIndexModel::cellOf(const QModelIndex& index) const
{
    return {m_draft.stations().value(index.column() - 1), m_draft.names().value(index.row())};
}

int PlcIndexModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_draft.names().size();
}

int PlcIndexModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1 + m_draft.stations().size();
}

QVariant PlcIndexModel::ground(const PlcIndexDraft::Cell& cell) const
{
    const auto mark = m_draft.mark(cell);
    if (mark == PlcIndexDraft::Mark::None)
        return {};
    return toneGround(mark == PlcIndexDraft::Mark::Shared ? Tone::Warning : Tone::Error);
}

QVariant PlcIndexModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const PlcIndexDraft::Cell cell = cellOf(index);
    const bool nameColumn = index.column() == 0;
    const bool known = m_draft.isInLibrary(cell.second);
    if (role == Qt::DisplayRole || role == Qt::EditRole)
        return nameColumn ? cell.second : m_draft.text(cell);
    if (role == Qt::BackgroundRole && nameColumn)
        return known ? QVariant() : toneGround(Tone::Error);
    if (role == Qt::ToolTipRole && nameColumn)
        return known ? QVariant() : tr("型号库中没有此型号");
    if (role == Qt::BackgroundRole)
        return ground(cell);
    return role == Qt::ToolTipRole ? m_draft.explanation(cell) : QVariant();
}

bool PlcIndexModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid) || index.column() == 0)
        return false;
    m_draft.type({cellOf(index)}, value.toString());
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
    return section == 0 ? tr("型号") : m_draft.stations().value(section - 1);
}

QWidget* PlcIndexDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const
{
    auto* field = new NumberField(parent);
    field->setMinimum(PlcIndexDraft::lowestIndex);
    field->setMaximum(PlcIndexDraft::highestIndex);
    field->setOptional(true);
    field->setProperty(textBefore, index.data(Qt::EditRole));
    // The signal is the delegate's, and making an editor does not change the delegate.
    auto* self = const_cast<PlcIndexDelegate*>(this);
    connect(field, &QLineEdit::textEdited, self, [self, field] { emit self->commitData(field); });
    return field;
}

void PlcIndexDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* field = qobject_cast<NumberField*>(editor);
    const QString text = index.data(Qt::EditRole).toString();
    if (field->text().trimmed() != text) // or the cursor would jump while somebody types
        field->setText(text);
}

void PlcIndexDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    model->setData(index, qobject_cast<NumberField*>(editor)->text());
}

bool PlcIndexDelegate::eventFilter(QObject* editor, QEvent* event)
{
    auto* field = qobject_cast<NumberField*>(editor);
    if (field && event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        field->setText(field->property(textBefore).toString());
        emit commitData(field);
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}
