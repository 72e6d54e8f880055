#pragma once

#include "results/export/ExportOutcome.h"
#include "results/export/ReportData.h"

#include <QCoreApplication>

class ExportProgress;
class QPagedPaintDevice;
class ReportPaper;

/// A report over a shift, a day or another span as a PDF of A4, in the operator's language. A thread's.
class ShiftReport
{
    Q_DECLARE_TR_FUNCTIONS(ShiftReport)

public:
    QString home;
    ReportData::Span span;
    QString cell; ///< the heading's name; empty for that of the home's folder

    ExportOutcome toPdf(const QString& path, ExportProgress& progress) const;

private:
    /// Returns the number of pages.
    static int print(const ReportData& data, const QDateTime& made, QPagedPaintDevice* device, int pages);
    static void heading(const ReportData& data, ReportPaper& paper);
    static void counts(const ReportData& data, ReportPaper& paper);
    static void hours(const ReportData& data, ReportPaper& paper);
    static void reasons(const ReportData& data, ReportPaper& paper);
    static void values(const ReportData& data, ReportPaper& paper);
    static void fits(const ReportData& data, ReportPaper& paper);
    static void failures(const ReportData& data, ReportPaper& paper);
    static void events(const ReportData& data, ReportPaper& paper);
};
