#pragma once

#include <QVector>

#include <algorithm>
#include <cmath>
#include <optional>

/// How measured values spread. Percentiles are by nearest rank: the smallest value that at least that part of all
/// values does not exceed, so each is a value that was measured.
struct Spread
{
    double p50 = 0;
    double p95 = 0;
    double p99 = 0;
    double max = 0;
};

/// `sorted` in ascending order and not empty; `part` from 0 to 1.
inline double percentile(const QVector<double>& sorted, double part)
{
    const int rank = static_cast<int>(std::ceil(part * sorted.size() - 1e-9));
    return sorted[std::clamp(rank, 1, static_cast<int>(sorted.size())) - 1];
}

/// Nothing for no values.
inline std::optional<Spread> spreadOf(QVector<double> values)
{
    if (values.isEmpty())
        return {};
    std::sort(values.begin(), values.end());
    return Spread{percentile(values, 0.50), percentile(values, 0.95), percentile(values, 0.99), values.last()};
}
