#pragma once

#include "results/export/ReportData.h"

class ExportProgress;
class ShiftConfig;

/// Writes the reports that are due and not written yet: those of the shifts or days that have ended since the last
/// one, a week back at most. How far they are written stands in "user/reports-made.json". A thread's; one at a time.
class ReportRound
{
    Q_DECLARE_TR_FUNCTIONS(ReportRound)

public:
    struct Result
    {
        QStringList written; ///< paths
        QString error;       ///< why one could not be written, a sentence; the round comes back to it
    };
    /// `now`: as the times of PartTable.
    static Result run(const QString& home, qint64 now, ExportProgress& progress);

    static constexpr qint64 daysBack = 7;
    /// After its end, until the last parts are recorded.
    static constexpr qint64 delayMs = 60000;

private:
    /// Returns an error.
    static QString write(const QString& home, const ShiftConfig& settings, const ReportData::Span& span,
                         QStringList& written, ExportProgress& progress);
};
