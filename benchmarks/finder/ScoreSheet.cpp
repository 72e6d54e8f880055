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

Verdict verdictOf(const Truth& truth, const Answer& answer)
{
    if (!truth.hole)
        return answer.found ? Verdict::Invented : Verdict::RightlyNone;
    if (!answer.found)
        return Verdict::Missed;
    return cv::norm(answer.hole - truth.center) > wrongPlace * truth.radius ? Verdict::Wrong : Verdict::Found;
}

const char* nameOf(finder::FindError error)
{
    switch (error) {
    case finder::FindError::None:
        return "found";
    case finder::FindError::NoHole:
        return "no hole";
    case finder::FindError::Ambiguous:
        return "ambiguous";
    case finder::FindError::NoHub:
        return "no hub";
    case finder::FindError::CutOff:
        return "cut off";
    case finder::FindError::TooDark:
        return "too dark";
    case finder::FindError::TooBright:
        return "too bright";
    case finder::FindError::OutOfFocus:
        return "out of focus";
    case finder::FindError::BadImage:
        return "bad image";
    case finder::FindError::BadModel:
        return "bad model";
    }
    return "unknown";
}

const char* nameOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Found:
        return "found";
    case Verdict::Wrong:
        return "wrong";
    case Verdict::Invented:
        return "invented";
    case Verdict::Missed:
        return "missed";
    case Verdict::RightlyNone:
        break;
    }
    return "none";
}

void ScoreSheet::add(const Truth& truth, const Answer& answer, double seconds)
{
    m_seconds.push_back(seconds);
    m_holes += truth.hole;
    const double off = cv::norm(answer.hole - truth.center);
    m_exact += truth.hole && answer.found && off <= exactPlace;
    switch (verdictOf(truth, answer)) {
    case Verdict::Found:
        m_centers.push_back(off);
        m_angles.push_back(std::abs(std::remainder(answer.angle - truth.angle, 360.0)));
        break;
    case Verdict::Wrong:
        ++m_wrong;
        break;
    case Verdict::Invented:
        ++m_invented;
        break;
    case Verdict::Missed:
        ++m_missed[answer.error];
        break;
    case Verdict::RightlyNone:
        break;
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
    set("p50_ms", 1e3 * seconds(0.5));
    set("p99_ms", 1e3 * seconds(0.99));
    set("found_%", 100.0 * static_cast<double>(m_centers.size()) / std::max(1, m_holes));
    set("wrong", m_wrong);
    set("invented", m_invented);
    set("angle_p50_deg", angleError(0.5));
    set("angle_p95_deg", angleError(0.95));
    set("angle_max_deg", angleError(1));
    set("center_p50_px", centerError(0.5));
    set("center_p95_px", centerError(0.95));
}

double ScoreSheet::centerError(double part) const
{
    return percentile(m_centers, part);
}

double ScoreSheet::angleError(double part) const
{
    return percentile(m_angles, part);
}

double ScoreSheet::seconds(double part) const
{
    return percentile(m_seconds, part);
}
