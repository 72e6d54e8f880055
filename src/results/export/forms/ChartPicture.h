#pragma once

#include "results/export/ExportOutcome.h"

#include <QByteArray>

class ResultPlot;

/// A chart as it is shown, zoomed and coloured, as a picture for a letter. The first two on the GUI thread.
class ChartPicture
{
public:
    static QByteArray png(ResultPlot* plot);
    /// A4, lying.
    static QByteArray pdf(ResultPlot* plot);
    static ExportOutcome write(const QByteArray& bytes, const QString& path);
};
