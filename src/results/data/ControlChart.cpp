#include "results/data/ControlChart.h"

#include <QtAlgorithms>

#include <cmath>
#include <numeric>

namespace {

constexpr double d2OfPairs = 1.128;

double meanOf(const QVector<double>& values)
{
    return values.isEmpty() ? 0 : std::accumulate(values.begin(), values.end(), 0.0) / values.size();
}

/// What the values so far say of the rules on one side of the mean: one look a value, however many there are.
class Side
{
public:
    Side(int sign, double sigma)
        : m_sign(sign)
        , m_sigma(sigma)
    {
    }

    /// `step`: from the value before; 0 for the first.
    ControlChart::Rules take(double deviation, double step)
    {
        const double own = m_sign * deviation;
        m_run = own > 0 ? m_run + 1 : 0;
        m_trend = m_sign * step > 0 ? m_trend + 1 : 1;
        m_beyondTwo = (m_beyondTwo << 1 | unsigned(own > 2 * m_sigma)) & 0b111;
        m_beyondOne = (m_beyondOne << 1 | unsigned(own > m_sigma)) & 0b11111;
        ControlChart::Rules rules;
        rules.setFlag(ControlChart::BeyondLimits, own > 3 * m_sigma);
        rules.setFlag(ControlChart::OneSide, m_run >= 9);
        rules.setFlag(ControlChart::Trend, m_trend >= 6);
        rules.setFlag(ControlChart::TwoOfThree, (m_beyondTwo & 1) && qPopulationCount(m_beyondTwo) >= 2);
        rules.setFlag(ControlChart::FourOfFive, (m_beyondOne & 1) && qPopulationCount(m_beyondOne) >= 4);
        return rules;
    }

private:
    const int m_sign;
    const double m_sigma;
    int m_run = 0;
    int m_trend = 1;
    unsigned m_beyondTwo = 0; ///< the last three, a bit each
    unsigned m_beyondOne = 0; ///< the last five
};

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
    chart.broken.resize(chart.values.size());
    Side above(1, chart.sigma);
    Side below(-1, chart.sigma);
    for (int i = 0; chart.sigma > 0 && i < chart.values.size(); ++i) {
        const double deviation = chart.values.at(i) - chart.mean;
        const double step = i > 0 ? chart.values.at(i) - chart.values.at(i - 1) : 0;
        chart.broken[i] = above.take(deviation, step) | below.take(deviation, step);
    }
    return chart;
}
