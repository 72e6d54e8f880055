#pragma once

#include "results/data/PartReader.h"
#include "results/export/ExportOutcome.h"
#include "results/export/TableWriter.h"

#include <QCoreApplication>

class ExportProgress;

/// Writes parts as a table of a file, as they are shown. A thread's.
class PartExport
{
    Q_DECLARE_TR_FUNCTIONS(PartExport)

public:
    QString home;
    PartFilter filter;
    PartReader::Column by = PartReader::Time;
    Qt::SortOrder order = Qt::AscendingOrder;
    QVector<int> columns; ///< by PartColumns; empty for all

    ExportOutcome toCsv(const QString& path, ExportProgress& progress) const;
    /// With a second sheet of what was chosen and its yield.
    ExportOutcome toXlsx(const QString& path, ExportProgress& progress) const;

    /// What a filter picks, a line for each condition: its name and its value.
    static QVector<TableWriter::Row> describe(const PartFilter& filter);

private:
    struct Tallies;
    static QVector<TableWriter::Row> yields(const Tallies& tallies);
    ExportOutcome write(TableWriter& table, const QString& path, ExportProgress& progress, Tallies& tallies) const;
};
