#include "LimitTable.h"

LimitTable::LimitTable()
{
    for (size_t i = 0; i < m_rows.size(); ++i)
        m_rows[i].limit = static_cast<double>(i + 1) / 10;
}

void LimitTable::add(const Truth& truth, const Answer& answer, double score)
{
    for (Row& row : m_rows) {
        Answer limited = answer;
        limited.found = answer.found && score >= row.limit;
        const Verdict verdict = verdictOf(truth, limited);
        row.found += verdict == Verdict::Found;
        row.refused += verdict == Verdict::Missed;
        row.mistaken += verdict == Verdict::Wrong || verdict == Verdict::Invented;
    }
}
