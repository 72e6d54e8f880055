#pragma once

#include "results/PagedTable.h"
#include "results/data/PartReader.h"

/// Parts as a table; a cell shows "…" until its row has been read.
class PartTableModel : public PagedTable<PartRow>
{
    Q_OBJECT

public:
    enum ColumnId {
        Mark,
        Time,
        Station,
        Model,
        PlcIndex,
        Outcome,
        Reason,
        Angle,
        X,
        Y,
        Score,
        ImageMs,
        ResultMs,
        ReplyMs,
        User,
        Calibration,
        Comment,
        ColumnCount
    };
    explicit PartTableModel(QObject* parent = nullptr);

    /// Takes effect with the next refresh().
    void setHome(const QString& home) { m_home = home; }
    void setFilter(const PartFilter& filter) { m_filter = filter; }
    const PartFilter& filter() const { return m_filter; }
    void refresh();
    /// After a review changed.
    void setReview(qint64 uid, bool marked, const QString& comment);

    /// As rowAt(), and has it read when it has not been.
    const PartRow* wantedAt(int row) const { return wanted(row); }

    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    QVariant text(const PartRow& row, int column) const;

    QString m_home;
    PartFilter m_filter;
    PartReader::Column m_by = PartReader::Time;
    Qt::SortOrder m_order = Qt::DescendingOrder;
};
