#pragma once

#include "BatchRow.h"

#include <QAbstractTableModel>

/// The rows of a re-run as a table. Columns of the second recipe stay empty where it was not run.
class BatchTable : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// What matters first, then the two recipes side by side.
    enum Column {
        Image,
        ChangeColumn,
        MovedBy,
        TurnedBy,
        FirstFound,
        SecondFound,
        FirstAngle,
        SecondAngle,
        FirstScore,
        SecondScore,
        FirstTime,
        SecondTime,
        FirstX,
        SecondX,
        FirstY,
        SecondY,
        FirstResidual,
        SecondResidual,
        VerdictColumn,
        ColumnCount
    };
    /// Whether a column makes sense only where two recipes are compared.
    static bool isOfComparison(int column);
    /// What a column is sorted by: numbers as numbers.
    static constexpr int sortRole = Qt::UserRole;
    /// bool: worth a look, because something changed, was missed or could not be read.
    static constexpr int notableRole = Qt::UserRole + 1;

    explicit BatchTable(QObject* parent = nullptr);

    /// Empties the table. The titles name the two recipes in the header; keep them short.
    void clear(const QString& firstTitle, const QString& secondTitle);
    /// Adds a row below the others and to the summary.
    void append(const BatchRow& row);
    /// Marks the rows of this image; a row of another path stays as it is.
    void setVerdict(const QString& path, BatchRow::Verdict verdict);
    const BatchRow& row(int index) const { return m_rows.at(index); }
    const BatchSummary& summary() const { return m_summary; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// In the operator's language; empty where nothing was compared.
    static QString changeText(BatchRow::Change change);

private:
    QVector<BatchRow> m_rows;
    BatchSummary m_summary;
    QString m_firstTitle;
    QString m_secondTitle;
};
