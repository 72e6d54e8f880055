#include "dialogs/models/PlcIndexDelegate.h"

#include "common/forms/NumberField.h"
#include "dialogs/models/PlcIndexDraft.h"

#include <QKeyEvent>

namespace {
constexpr const char* kTextBefore = "textBefore";
} // namespace

QWidget* PlcIndexDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const
{
    auto* field = new NumberField(parent);
    field->setMinimum(PlcIndexDraft::lowestIndex);
    field->setMaximum(PlcIndexDraft::highestIndex);
    field->setOptional(true);
    field->setProperty(kTextBefore, index.data(Qt::EditRole));
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
        field->setText(field->property(kTextBefore).toString());
        emit commitData(field);
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}
