#pragma once

#include "results/PagedTable.h"
#include "results/data/LogReader.h"

/// Lines of the system log as a table, newest first.
class LogTableModel : public PagedTable<LogRow>
{
    Q_OBJECT

public:
    enum ColumnId { Time, Level, User, Text, ColumnCount };

    explicit LogTableModel(QObject* parent = nullptr);

    /// Both take effect with the next refresh().
    void setHome(const QString& home) { m_home = home; }
    void setFilter(const LogFilter& filter) { m_filter = filter; }
    const LogFilter& filter() const { return m_filter; }
    void refresh();

    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString m_home;
    LogFilter m_filter;
};
