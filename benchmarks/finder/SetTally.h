#pragma once

#include "ScoreSheet.h"

#include <QJsonObject>
#include <QStringList>

#include <array>
#include <cstdio>
#include <map>

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

/// The ways of finding holes that are compared.
/// Examples: taught, and shown three pictures of the design's hole.
enum class Way { Taught, Examples, Auto, Hough, Templates };

const char* nameOf(Way way);

/// What all ways have answered on one set, in whole and for each cause.
class SetTally
{
public:
    void add(Way way, const QStringList& causes, const Truth& truth, const Answer& answer, double seconds);
    /// An answer of a finder without a score limit, which counts in the table of limits only.
    void addUnlimited(Way way, const Truth& truth, const Answer& answer, double score);
    /// Whether a hole was among the candidates that one of the finder's ways judged.
    void addJudged(Way way, bool judged);

    /// Causes of fewer than `least` pictures are left out.
    void print(std::FILE* out, int least) const;
    QJsonObject json() const;

private:
    using Sheets = std::map<Way, ScoreSheet>;

    struct Judged
    {
        int holes = 0;
        int judged = 0;
    };

    Sheets m_all;
    std::map<QString, Sheets> m_causes;
    std::map<Way, LimitTable> m_limits;
    std::map<Way, Judged> m_judged;
};
