#pragma once

#include "dialogs/models/PlcIndexDraft.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>

/// A PlcIndexDraft as a table: a row for each model, a column for each station. GUI thread.
class PlcIndexModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Both outlive the model; the tables are changed through the manager only.
    PlcIndexModel(ModelManager& models, const PlcIndexTable& stored, QObject* parent = nullptr);

    /// What is shown.
    const PlcIndexDraft& draft() const { return m_draft; }

    // As those of the draft.
    void setStations(const QStringList& stations);
    void refresh();
    void forgetTyped();
    void typeFile();
    /// As that of the draft; what was typed is then forgotten.
    bool store(AuditChanges* changes, QString* error);

    /// Empties these cells; names stay.
    void clear(const QModelIndexList& cells);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    template <typename Change>
    void reset(Change change);
    PlcIndexDraft::Cell cellOf(const QModelIndex& index) const;
    QVariant ground(const PlcIndexDraft::Cell& cell) const;

    PlcIndexDraft m_draft;
};

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
