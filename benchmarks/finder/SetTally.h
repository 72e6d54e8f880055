#pragma once

#include "LimitTable.h"
#include "ScoreSheet.h"

#include <QJsonObject>
#include <QStringList>

#include <cstdio>
#include <map>

/// The ways of finding holes that are compared.
/// Examples: taught, and shown three pictures of the design's hole.
enum class Way { Taught, Examples, Auto, Hough, Templates };

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
