#pragma once

#include "finder/FindResult.h"

#include <benchmark/benchmark.h>
#include <ctime>
#include <map>
#include <utility>
#include <vector>

struct Answer
{
    bool found = false;
    cv::Point2d hole;
    double angle = 0; ///< degrees
    int error = 0;    ///< the number of a finder::FindError
};

inline Answer answerOf(const finder::FindResult& result)
{
    return {result.found(), result.hole, result.angle, static_cast<int>(result.error)};
}

struct Truth
{
    bool hole = true;
    cv::Point2d center;
    double radius = 0;
    double angle = 0;
};

/// An answer further off than this share of the hole's radius names a wrong place.
constexpr double wrongPlace = 0.5;
/// An answer at most that many pixels off names the exact place, whatever the hole's size.
constexpr double exactPlace = 3;

enum class Verdict { Found, Wrong, Invented, Missed, RightlyNone };

Verdict verdictOf(const Truth& truth, const Answer& answer);

/// English names for tables; the finder's own texts are for operators.
const char* nameOf(finder::FindError error);
const char* nameOf(Verdict verdict);

/// What one way of finding holes has answered on a set of wheels, and how long it took.
class ScoreSheet
{
public:
    void add(const Truth& truth, const Answer& answer, double seconds);

    /// Sets one iteration's time for each wheel, and as counters: times; found_% of the wheels with a hole; how many
    /// answers name a wrong place or a hole where there is none; errors of the right ones.
    void report(benchmark::State& state) const;

    int wheels() const { return static_cast<int>(m_seconds.size()); }
    int holes() const { return m_holes; }
    int found() const { return static_cast<int>(m_centers.size()); }
    int exact() const { return m_exact; } ///< in the exact place, also where half the radius is less
    int wrong() const { return m_wrong; }
    int invented() const { return m_invented; }
    /// Holes that were not found, by the reason given.
    const std::map<int, int>& missed() const { return m_missed; }

    /// Errors of found holes, pixels and degrees; `part` 0.5 is the median.
    double centerError(double part) const;
    double angleError(double part) const;
    double seconds(double part) const;

private:
    std::vector<double> m_seconds;
    std::vector<double> m_angles;
    std::vector<double> m_centers;
    std::map<int, int> m_missed;
    int m_holes = 0;
    int m_exact = 0;
    int m_wrong = 0;
    int m_invented = 0;
};

/// Runs find(), which returns an Answer, and gives it with the seconds that it took. These are the processor's, where
/// the system counts them, so that what else runs beside hardly counts.
template <typename Find>
std::pair<Answer, double> timed(Find find)
{
    const std::clock_t start = std::clock();
    const Answer answer = find();
    return {answer, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC};
}
