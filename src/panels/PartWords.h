#pragma once

#include "results/data/PartFilter.h"

#include <QCoreApplication>

struct StationReading;

/// One part in the words of its station's panel, in the operator's language.
class PartWords
{
    Q_DECLARE_TR_FUNCTIONS(PartWords)

public:
    /// A reading as the row that its record has.
    static PartRow rowOf(int station, const StationReading& reading);

    /// "12:00:05  五辐铝轮"
    static QString timeAndModel(const PartRow& part);
    /// What the PLC got: the place, or the code with its meaning.
    static QString sent(const PartRow& part);
    /// All of it in lines, for a tool tip.
    static QString tip(const PartRow& part);
};
