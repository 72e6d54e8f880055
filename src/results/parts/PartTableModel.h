#pragma once

#include "common/Background.h"
#include "results/data/PartReader.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QSet>

/// Parts as a table over any number of rows: pages are read on a thread when they come into sight, and a cell shows
/// "…" until then. Refreshing takes the parts up to the newest, and pages keep still until the next time.
class PartTableModel : public QAbstractTableModel
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
    static constexpr int rowsAPage = 200;

    explicit PartTableModel(QObject* parent = nullptr);

    /// Takes effect with the next refresh().
    void setHome(const QString& home) { m_home = home; }
    void setFilter(const PartFilter& filter) { m_filter = filter; }
    const PartFilter& filter() const { return m_filter; }
    void refresh();
    /// Of a row that has been read; null otherwise.
    const PartRow* part(int row) const;
    /// After a review changed.
    void setReview(qint64 uid, bool marked, const QString& comment);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

signals:
    /// A refresh has ended: so many parts, or why there are none.
    void refreshed(int parts, const QString& error);
    /// A page came.
    void loaded();

private:
    struct Page
    {
        QVector<PartRow> rows;
        int count = -1; ///< of all rows, at a refresh
        qint64 upTo = 0;
        QString error;
    };
    void request(int page) const;
    void take(int number, int page, const Page& read);
    QVariant text(const PartRow& row, int column) const;

    QString m_home;
    PartFilter m_filter;
    PartReader::Column m_by = PartReader::Time;
    Qt::SortOrder m_order = Qt::DescendingOrder;
    int m_count = 0;
    int m_number = 0; ///< of the refresh: what an older one asked for is dropped
    mutable QCache<int, QVector<PartRow>> m_pages;
    mutable QSet<int> m_requested;
    mutable Background m_background;
};
