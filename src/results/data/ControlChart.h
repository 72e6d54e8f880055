#pragma once

#include <QFlags>
#include <QVector>

/// Control chart of individual values and their moving ranges (ISO 7870-2): the line of the mean, limits at three
/// sigma where sigma is the mean moving range of two neighbours / 1.128, and the usual rules (L. S. Nelson, "The
/// Shewhart Control Chart - Tests for Special Causes", 1984, tests 1, 2, 3, 5 and 6). Pure; any thread.
struct ControlChart
{
    enum Rule {
        BeyondLimits = 1, ///< one point beyond three sigma
        OneSide = 2,      ///< nine in a row on one side of the mean
        Trend = 4,        ///< six in a row rising, or falling
        TwoOfThree = 8,   ///< two out of three beyond two sigma on one side
        FourOfFive = 16   ///< four out of five beyond one sigma on one side
    };
    Q_DECLARE_FLAGS(Rules, Rule)

    double mean = 0;
    double sigma = 0;
    double meanRange = 0;
    QVector<double> values;
    QVector<double> ranges; ///< one fewer than values
    QVector<Rules> broken;  ///< of each value: the rules that it completes

    double upper() const { return mean + 3 * sigma; }
    double lower() const { return mean - 3 * sigma; }
    double upperRange() const { return 3.267 * meanRange; } ///< D4 for pairs

    /// Of numbers in the order of time; those that are not known are left out.
    static ControlChart of(const QVector<double>& values);
};
Q_DECLARE_OPERATORS_FOR_FLAGS(ControlChart::Rules)
