#pragma once

#include "results/charts/Charts.h"
#include "results/data/LogReader.h"
#include "results/data/Shifts.h"
#include "results/export/PartExport.h"
#include "results/export/ReportData.h"

#include <functional>

class ExportBar;
class ResultPlot;

/// What each page offers to write. The page tells what it shows at the moment.
class ExportMenus
{
    Q_DECLARE_TR_FUNCTIONS(ExportMenus)

public:
    struct Parts
    {
        PartExport table; ///< home, filter, order and columns as shown
        Shifts shifts;
    };
    static void addParts(ExportBar* bar, const std::function<Parts()>& shown);

    struct Log
    {
        QString home;
        LogFilter filter;
    };
    static void addLog(ExportBar* bar, const std::function<Log()>& shown);

    /// `plot` lives as long as the bar.
    static void addChart(ExportBar* bar, ResultPlot* plot, const std::function<Charts::Answer()>& shown);

private:
    static QString stemOf(const QString& what);
    /// That of the filter; without a begin, the present shift.
    static ReportData::Span spanOf(const Parts& parts);
};
