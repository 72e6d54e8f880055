#pragma once

#include "results/export/ExportOutcome.h"

#include <QByteArray>

class QImage;
class ResultPlot;

/// A chart as it is shown, zoomed and coloured, as a picture for a letter.
namespace ChartPicture {

/// These two on the GUI thread.
QImage image(ResultPlot* plot);
/// A4, lying.
QByteArray pdf(ResultPlot* plot);
/// A thread's.
QByteArray png(const QImage& image);
ExportOutcome write(const QByteArray& bytes, const QString& path);

} // namespace ChartPicture
