#pragma once

#include "results/data/LogReader.h"
#include "results/export/ExportOutcome.h"

class ExportProgress;

/// Writes lines of the system log as comma-separated text, newest first; a change also in its pieces. A thread's.
class LogExport
{
    Q_DECLARE_TR_FUNCTIONS(LogExport)

public:
    QString home;
    LogFilter filter;

    ExportOutcome toCsv(const QString& path, ExportProgress& progress) const;
    /// The word for the level of a line, in the operator's language.
    static QString kindOf(const LogRow& row);
};
