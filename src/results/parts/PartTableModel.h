#pragma once

#include "common/LookColors.h"
#include "results/PagedTable.h"
#include "results/data/PartReader.h"
#include "results/parts/PartColumns.h"

/// Parts as a table; a cell shows "…" until its row has been read.
class PartTableModel : public PagedTable<PartRow>
{
    Q_OBJECT

public:
    enum ColumnId {
        Mark = PartColumns::Mark,
        Time = PartColumns::Time,
        Station = PartColumns::Station,
        Model = PartColumns::Model,
        PlcIndex = PartColumns::PlcIndex,
        Outcome = PartColumns::Outcome,
        Reason = PartColumns::Reason,
        Angle = PartColumns::Angle,
        X = PartColumns::X,
        Y = PartColumns::Y,
        Score = PartColumns::Score,
        ImageMs = PartColumns::ImageMs,
        ResultMs = PartColumns::ResultMs,
        ReplyMs = PartColumns::ReplyMs,
        User = PartColumns::User,
        Calibration = PartColumns::Calibration,
        Comment = PartColumns::Comment,
        ColumnCount = PartColumns::Count
    };
    explicit PartTableModel(QObject* parent = nullptr);

    /// Takes effect with the next refresh().
    void setHome(const QString& home) { m_home = home; }
    void setFilter(const PartFilter& filter) { m_filter = filter; }
    const PartFilter& filter() const { return m_filter; }
    PartReader::Column sortColumn() const { return m_by; }
    Qt::SortOrder sortOrder() const { return m_order; }
    void refresh();
    /// After a review changed.
    void setReview(qint64 uid, bool marked, const QString& comment);

    /// The colours in which an outcome is shown.
    static const LookColors::Sign& signOf(PartOutcome outcome);

    /// As rowAt(), and has it read when it has not been.
    const PartRow* wantedAt(int row) const { return wanted(row); }

    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    QString m_home;
    PartFilter m_filter;
    PartReader::Column m_by = PartReader::Time;
    Qt::SortOrder m_order = Qt::DescendingOrder;
};
