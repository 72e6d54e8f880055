#pragma once

#include "db/IModelSource.h"

#include <QAbstractTableModel>

/// The list of models as a table: name, PLC index, calibration state; the current model's row is green. GUI thread.
class ModelModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// The source stays the caller's and outlives the model.
    explicit ModelModel(const IModelSource& source, QObject* parent = nullptr);

    /// Reads the source anew; whoever changes the source calls it.
    void refresh();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QVariant displayed(int row, int column) const;

    const IModelSource& m_source;
};
