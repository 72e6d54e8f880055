#pragma once

#include "MouthModel.h"

#include <cmath>

namespace finder {

/// The triangle L of a symmetric matrix L L^T, of which the upper half is given.
class MouthFactor
{
public:
    /// The rows and columns from `first` on, their diagonal raised by the share `damping`. False if not positive.
    bool of(const std::array<std::array<float, MouthModel::rowSize>, MouthModel::rowSize>& matrix, int first,
            double damping)
    {
        m_first = first;
        for (int i = first; i < mouthParameters; ++i) {
            for (int k = first; k <= i; ++k) {
                double sum = static_cast<double>(matrix[k][i]) * (i == k ? 1 + damping : 1);
                for (int j = first; j < k; ++j)
                    sum -= m_l[i][j] * m_l[k][j];
                if (i == k && !(sum > 0))
                    return false;
                m_l[i][k] = i == k ? std::sqrt(sum) : sum / m_l[k][k];
            }
        }
        return true;
    }

    MouthVector solve(MouthVector right) const
    {
        for (int i = m_first; i < mouthParameters; ++i) {
            for (int k = m_first; k < i; ++k)
                right[i] -= m_l[i][k] * right[k];
            right[i] /= m_l[i][i];
        }
        for (int i = mouthParameters - 1; i >= m_first; --i) {
            for (int k = i + 1; k < mouthParameters; ++k)
                right[i] -= m_l[k][i] * right[k];
            right[i] /= m_l[i][i];
        }
        return right;
    }

    /// A diagonal element of the matrix's inverse.
    double inverseAt(int i) const
    {
        MouthVector unit{};
        unit[i] = 1;
        return solve(unit)[i];
    }

    double logDeterminant() const
    {
        double sum = 0;
        for (int i = m_first; i < mouthParameters; ++i)
            sum += 2 * std::log(m_l[i][i]);
        return sum;
    }

private:
    int m_first = 0;
    std::array<std::array<double, mouthParameters>, mouthParameters> m_l{};
};

} // namespace finder
