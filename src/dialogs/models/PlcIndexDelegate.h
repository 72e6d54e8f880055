#pragma once

#include <QStyledItemDelegate>

/// Edits a PLC index in its cell, and hands every keystroke to the model, so that it is judged while it is typed.
/// Escape takes back what was typed since the editor opened.
class PlcIndexDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

protected:
    bool eventFilter(QObject* editor, QEvent* event) override;
};
