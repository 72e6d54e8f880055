#pragma once

#include <QByteArray>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>
#include <vector>

/// Times single operations, so that a benchmark prints percentiles and not only the mean.
class Laps
{
public:
    explicit Laps(benchmark::State& state)
        : m_state(state)
    {
    }

    ~Laps()
    {
        std::sort(m_seconds.begin(), m_seconds.end());
        m_state.counters["min_ms"] = percentile(0.0);
        m_state.counters["p50_ms"] = percentile(0.50);
        m_state.counters["p99_ms"] = percentile(0.99);
        m_state.counters["max_ms"] = percentile(1.0);
        m_state.counters["cpu_ms"] = m_seconds.empty() ? 0 : m_leastWork * 1e3;
    }

    template <typename Operation>
    void time(Operation operation)
    {
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t worked = std::clock();
        operation();
        m_leastWork = std::min(m_leastWork, double(std::clock() - worked) / CLOCKS_PER_SEC);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        m_state.SetIterationTime(taken.count());
        m_seconds.push_back(taken.count());
    }

private:
    double percentile(double part) const
    {
        if (m_seconds.empty())
            return 0;
        const auto rank = static_cast<std::size_t>(part * static_cast<double>(m_seconds.size()));
        return m_seconds[std::min(rank, m_seconds.size() - 1)] * 1e3;
    }

    benchmark::State& m_state;
    std::vector<double> m_seconds;
    double m_leastWork = 1e9; ///< of the processor, in seconds: what a machine that does nothing else would take
};

/// What main() of a program with benchmarks does, without a screen.
template <typename Application>
int runBenchmarks(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const Application application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
