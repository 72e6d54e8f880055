#include "ScoreSheet.h"

#include <algorithm>
#include <cmath>

namespace {

double percentile(std::vector<double> values, double part)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const auto rank = static_cast<size_t>(part * static_cast<double>(values.size()));
    return values[std::min(rank, values.size() - 1)];
}

} // namespace

void ScoreSheet::add(const Truth& truth, const Answer& answer, double seconds)
{
    m_seconds.push_back(seconds);
    m_holes += truth.hole;
    if (!answer.found)
        return;
    const double off = cv::norm(answer.hole - truth.center);
    if (!truth.hole) {
        ++m_invented;
    } else if (off > wrongPlace * truth.radius) {
        ++m_wrong;
    } else {
        m_centers.push_back(off);
        m_angles.push_back(std::abs(std::remainder(answer.angle - truth.angle, 360.0)));
    }
}

void ScoreSheet::report(benchmark::State& state) const
{
    if (m_seconds.empty()) {
        state.SkipWithError("too few wheels");
        return;
    }
    size_t i = 0;
    for (auto _ : state)
        state.SetIterationTime(m_seconds[i++ % m_seconds.size()]);
    const auto set = [&](const char* name, double value) { state.counters[name] = value; };
    set("p50_ms", 1e3 * percentile(m_seconds, 0.5));
    set("p99_ms", 1e3 * percentile(m_seconds, 0.99));
    set("found_%", 100.0 * static_cast<double>(m_centers.size()) / std::max(1, m_holes));
    set("wrong", m_wrong);
    set("invented", m_invented);
    set("angle_p50_deg", percentile(m_angles, 0.5));
    set("angle_p95_deg", percentile(m_angles, 0.95));
    set("angle_max_deg", percentile(m_angles, 1));
    set("center_p50_px", percentile(m_centers, 0.5));
    set("center_p95_px", percentile(m_centers, 0.95));
}

double ScoreSheet::middleSeconds() const
{
    return percentile(m_seconds, 0.5);
}
