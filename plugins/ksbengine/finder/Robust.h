#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

/// Statistics that a minority of outliers does not move. Samples must not be empty.
namespace finder {

/// The value below which a share (0 to 1) of the sample lies, one of its values. Reorders the sample.
template <typename T>
T quantile(std::vector<T>& sample, double share)
{
    const auto at = sample.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(sample.size() - 1));
    std::nth_element(sample.begin(), at, sample.end());
    return *at;
}

/// One of the values, the upper of the two in the middle of an even number. Reorders the sample.
template <typename T>
T medianOf(std::vector<T>& sample)
{
    const auto at = sample.begin() + static_cast<std::ptrdiff_t>(sample.size() / 2);
    std::nth_element(sample.begin(), at, sample.end());
    return *at;
}

/// As medianOf(), of any container and without reordering it.
template <typename Container>
auto median(const Container& values)
{
    std::vector<typename Container::value_type> sample(values.begin(), values.end());
    return medianOf(sample);
}

/// The standard deviation of Gaussian errors about zero from their magnitudes: 1.4826 times the median. Reorders them.
template <typename T>
double sigmaOf(std::vector<T>& magnitudes)
{
    return 1.4826 * static_cast<double>(medianOf(magnitudes));
}

/// Where Tukey's weight ends, in standard deviations: 95 % efficiency for Gaussian errors.
constexpr double tukeyCutOff = 4.685;

/// Tukey's biweight of a residual, given as a share of the cut-off.
inline double tukeyWeight(double share)
{
    const double rest = 1 - share * share;
    return rest > 0 ? rest * rest : 0;
}

/// Mean of the magnitudes, winsorised twice at one and a half times itself.
inline double winsorisedMagnitude(const float* values, int count)
{
    double mean = 0;
    double limit = 1e30;
    for (int pass = 0; pass < 3; ++pass, limit = 1.5 * mean) {
        const auto most = static_cast<float>(limit);
        float sum = 0;
        for (int i = 0; i < count; ++i)
            sum += std::min(std::abs(values[i]), most);
        mean = static_cast<double>(sum) / std::max(1, count);
    }
    return mean;
}

} // namespace finder
