#pragma once

#include <QStyledItemDelegate>

/// The field in which the value of a camera's feature is typed or chosen; for a command it is the button that executes
/// it, so that no double click alone does. Works on a CameraFeatureModel behind a QSortFilterProxyModel. GUI thread.
class FeatureEditor : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

private:
    QWidget* makeChoice(QWidget* parent, const QModelIndex& index) const;
    QWidget* makeButton(QWidget* parent) const;
    void finish(QWidget* editor) const;
};
