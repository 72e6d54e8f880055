#pragma once

#include "ScoreSheet.h"

#include <array>

/// What each score limit would have refused and what it would have let through. The answers are to come from a finder
/// whose own limit is 0.
class LimitTable
{
public:
    struct Row
    {
        double limit = 0;
        int found = 0;
        int refused = 0;  ///< holes that were not reported
        int mistaken = 0; ///< wrong places and invented holes
    };

    LimitTable();
    void add(const Truth& truth, const Answer& answer, double score);
    const std::array<Row, 9>& rows() const { return m_rows; }

private:
    std::array<Row, 9> m_rows; // 0.1 to 0.9
};
