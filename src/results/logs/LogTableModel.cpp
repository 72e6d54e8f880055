#include "results/logs/LogTableModel.h"

#include "common/LookColors.h"
#include "db/log/LogLine.h"
#include "results/export/LogExport.h"

LogTableModel::LogTableModel(QObject* parent)
    : PagedTable(parent)
{
}

void LogTableModel::refresh()
{
    const bool searches = !m_filter.text.isEmpty() || !m_filter.user.isEmpty() || m_filter.changesOnly ||
                          m_filter.least < SystemLog::Trace || m_filter.worst > SystemLog::Error;
    const auto rows = [](LogReader& reader, const LogFilter& filter, int limit, int offset) {
        return reader.lines(filter, limit, offset);
    };
    restart<LogReader>(m_home, m_filter, searches, rows);
}

int LogTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant LogTableModel::data(const QModelIndex& index, int role) const
{
    const LogRow* row = wanted(index.row());
    if (!row)
        return role == Qt::DisplayRole && index.column() == Time ? QVariant(QStringLiteral("…")) : QVariant();
    if (role == Qt::ToolTipRole && index.column() == Text)
        return row->message;
    if (role == Qt::ForegroundRole && index.column() == Level && row->level <= SystemLog::Warning)
        return row->level == SystemLog::Error ? lookColors().bad.ink : lookColors().caution.ink;
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Time:
        return row->time;
    case Level:
        return LogExport::kindOf(*row);
    case User:
        return row->user;
    default:
        return row->isChange ? QStringLiteral("%1: %2 → %3").arg(row->name, row->before, row->after)
                             : row->message.section(QLatin1Char('\n'), 0, 0);
    }
}

QVariant LogTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QString names[] = {tr("时间"), tr("类型"), tr("用户"), tr("内容")};
    return names[qBound(0, section, 3)];
}
