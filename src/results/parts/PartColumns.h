#pragma once

#include "results/data/PartFilter.h"
#include "results/export/TableWriter.h"

#include <QCoreApplication>

/// What a table of parts shows, on a screen or in a file. Any thread.
class PartColumns
{
    Q_DECLARE_TR_FUNCTIONS(PartColumns)

public:
    enum Id {
        Mark,
        Time,
        Station,
        Model,
        PlcIndex,
        Outcome,
        Reason,
        Angle,
        X,
        Y,
        Score,
        ImageMs,
        ResultMs,
        ReplyMs,
        User,
        Calibration,
        Comment,
        Count
    };
    /// Its title in the operator's language, and how a file has it.
    static ExportColumn column(int id);
    /// As a screen shows it.
    static QString text(const PartRow& row, int id);
    /// As a TableWriter takes it.
    static QVariant value(const PartRow& row, int id);
};
