#include "results/data/ControlChart.h"

#include <cmath>
#include <numeric>

namespace {

constexpr double d2OfPairs = 1.128;

double meanOf(const QVector<double>& values)
{
    return values.isEmpty() ? 0 : std::accumulate(values.begin(), values.end(), 0.0) / values.size();
}

/// How many of the last `of` values up to `end` lie beyond `limit` on the side of `sign`.
int beyond(const QVector<double>& deviations, int end, int of, double limit, int sign)
{
    int count = 0;
    for (int i = qMax(0, end - of + 1); i <= end; ++i)
        count += sign * deviations.at(i) > limit ? 1 : 0;
    return count;
}

/// The longest run that ends at `end`, in which each step goes the way of `sign`.
int run(const QVector<double>& values, int end, int sign)
{
    int length = 1;
    for (int i = end; i > 0 && sign * (values.at(i) - values.at(i - 1)) > 0; --i)
        ++length;
    return length;
}

ControlChart::Rules rulesAt(const QVector<double>& deviations, int i, double sigma)
{
    ControlChart::Rules rules;
    for (const int sign : {1, -1}) {
        const double own = sign * deviations.at(i);
        rules.setFlag(ControlChart::BeyondLimits, rules.testFlag(ControlChart::BeyondLimits) || own > 3 * sigma);
        rules.setFlag(ControlChart::OneSide,
                      rules.testFlag(ControlChart::OneSide) || beyond(deviations, i, 9, 0, sign) == 9);
        rules.setFlag(ControlChart::Trend, rules.testFlag(ControlChart::Trend) || run(deviations, i, sign) >= 6);
        rules.setFlag(ControlChart::TwoOfThree,
                      rules.testFlag(ControlChart::TwoOfThree) ||
                          (own > 2 * sigma && beyond(deviations, i, 3, 2 * sigma, sign) >= 2));
        rules.setFlag(ControlChart::FourOfFive, rules.testFlag(ControlChart::FourOfFive) ||
                                                    (own > sigma && beyond(deviations, i, 5, sigma, sign) >= 4));
    }
    return rules;
}

} // namespace

/// Without any scatter no rule but a run of one side or a trend could mean anything, and neither can occur.
ControlChart ControlChart::of(const QVector<double>& values)
{
    ControlChart chart;
    for (const double value : values) {
        if (std::isfinite(value))
            chart.values.append(value);
    }
    for (int i = 1; i < chart.values.size(); ++i)
        chart.ranges.append(std::abs(chart.values.at(i) - chart.values.at(i - 1)));
    chart.mean = meanOf(chart.values);
    chart.meanRange = meanOf(chart.ranges);
    chart.sigma = chart.meanRange / d2OfPairs;
    QVector<double> deviations = chart.values;
    for (double& deviation : deviations)
        deviation -= chart.mean;
    chart.broken.resize(chart.values.size());
    for (int i = 0; chart.sigma > 0 && i < deviations.size(); ++i)
        chart.broken[i] = rulesAt(deviations, i, chart.sigma);
    return chart;
}
