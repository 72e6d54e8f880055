#pragma once

#include <opencv2/core.hpp>

#include <benchmark/benchmark.h>
#include <vector>

struct Answer
{
    bool found = false;
    cv::Point2d hole;
    double angle = 0; ///< degrees
};

struct Truth
{
    bool hole = true;
    cv::Point2d center;
    double radius = 0;
    double angle = 0;
};

/// An answer further off than this share of the hole's radius names a wrong place.
constexpr double wrongPlace = 0.5;

/// What one way of finding holes has answered on a set of wheels, and how long it took.
class ScoreSheet
{
public:
    void add(const Truth& truth, const Answer& answer, double seconds);

    /// Sets one iteration's time for each wheel, and as counters: times; found_% of the wheels with a hole; how many
    /// answers name a wrong place or a hole where there is none; errors of the right ones.
    void report(benchmark::State& state) const;

    int wheels() const { return static_cast<int>(m_seconds.size()); }
    double middleSeconds() const;

private:
    std::vector<double> m_seconds;
    std::vector<double> m_angles;
    std::vector<double> m_centers;
    int m_holes = 0;
    int m_wrong = 0;
    int m_invented = 0;
};
