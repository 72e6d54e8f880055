#pragma once

#include "results/charts/Charts.h"
#include "results/export/ExportOutcome.h"

class ExportProgress;

/// Writes the numbers that a chart is drawn from. A thread's.
class ChartExport
{
    Q_DECLARE_TR_FUNCTIONS(ChartExport)

public:
    static ExportOutcome toCsv(const Charts::Answer& answer, const QString& path, ExportProgress& progress);
};
