#pragma once

#include "results/data/Statistics.h"

#include <QCoreApplication>

/// The words for parts, in the operator's language.
class PartTexts
{
    Q_DECLARE_TR_FUNCTIONS(PartTexts)

public:
    static QString outcome(PartOutcome outcome);
    /// Of an error code of engine or cell; empty for none.
    static QString error(int code);
    /// Why a part was not found: what was told at the time, or else the error's words.
    static QString reason(const PartRow& row);
    static QString station(int station);
    /// With its unit, for an axis or a column.
    static QString value(Statistics::Value value);
    /// "2026-03-25 06:00:00.123"
    static QString time(qint64 wall);
    /// "06:00:00"
    static QString clock(qint64 wall);
    /// With three decimals, cut as it was sent; "–" when not known.
    static QString sent(double value, bool known = true);
    /// With one decimal; empty when it never came.
    static QString milliseconds(double ms);
};
