#pragma once

#include <QAbstractTableModel>

/// What the list of models shows: rows 0 to modelCount() - 1. GUI thread.
class IModelSource
{
public:
    virtual ~IModelSource() = default;
    virtual int modelCount() const = 0;
    virtual QString modelName(int row) const = 0;
    /// The index by which the PLC names the model.
    virtual int plcIndex(int row) const = 0;
    /// What the list shows of it; a text where the stations' tables do not agree, or have none.
    virtual QVariant shownIndex(int row) const { return plcIndex(row); }
    /// The engineer's mark that the model was checked; answers do not depend on it.
    virtual bool isCalibrated(int row) const = 0;
    /// Whether it is the one to stand out in the list.
    virtual bool isCurrent(int row) const = 0;
};

/// The list of models as a table: name, PLC index, calibration state; the current model's row is green. GUI thread.
class ModelModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// The source stays the caller's and outlives the model.
    explicit ModelModel(const IModelSource& source, QObject* parent = nullptr);

    /// Reads the source anew; whoever changes the source calls it.
    void refresh();
    /// Another row is the current one now.
    void refreshCurrent();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QVariant displayed(int row, int column) const;

    const IModelSource& m_source;
};
