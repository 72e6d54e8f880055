#include "PartReport.h"

#include <QQueue>

#include <algorithm>
#include <cmath>

namespace {

using Value = std::optional<double>;

/// `sorted` in ascending order and not empty; `part` from 0 to 1.
double percentile(const QVector<double>& sorted, double part)
{
    const int rank = static_cast<int>(std::ceil(part * sorted.size() - 1e-9));
    return sorted[std::clamp(rank, 1, static_cast<int>(sorted.size())) - 1];
}

} // namespace

std::optional<Spread> spreadOf(QVector<double> values)
{
    if (values.isEmpty())
        return {};
    std::sort(values.begin(), values.end());
    return Spread{percentile(values, 0.50), percentile(values, 0.95), percentile(values, 0.99), values.last()};
}

std::optional<double> PartRow::angleErrorDeg() const
{
    if (!found() || !image.hole.value_or(false))
        return {};
    return std::abs(std::remainder(answer.angle - image.angle, 360.0));
}

Verdict PartRow::verdict() const
{
    if (!answered)
        return Verdict::NoAnswer;
    if (!found() && !noticed)
        return Verdict::NoNotice;
    if (!image.hole)
        return Verdict::Answered;
    if (*image.hole != found())
        return found() ? Verdict::Invented : Verdict::Missed;
    return angleErrorDeg().value_or(0) > allowedErrorDeg ? Verdict::Wrong : Verdict::Right;
}

const char* verdictText(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Right:
        return "ok";
    case Verdict::Answered:
        return "answered";
    case Verdict::NoAnswer:
        return "no answer";
    case Verdict::NoNotice:
        return "no H frame";
    case Verdict::Missed:
        return "missed";
    case Verdict::Wrong:
        return "wrong";
    case Verdict::Invented:
        return "invented";
    }
    return "";
}

PartReport::PartReport(double cameraDelayMs)
    : m_cameraDelayMs(cameraDelayMs)
{
}

void PartReport::add(const PartRow& row)
{
    m_rows.append(row);
    if (m_rows.size() > maxRows + maxRows / 10)
        m_rows.remove(0, m_rows.size() - maxRows);
}

void PartReport::join(const QVector<RoadTiming>& timings)
{
    QQueue<RoadTiming> waiting[2];
    for (const RoadTiming& timing : timings)
        if (timing.station == 1 || timing.station == 2)
            waiting[timing.station - 1].enqueue(timing);
    for (PartRow& row : m_rows) {
        auto& queue = waiting[row.station - 1];
        if (row.hadImage() && !queue.isEmpty())
            row.road = queue.dequeue();
    }
}

template <typename Value>
std::optional<Spread> PartReport::spread(Value value) const
{
    QVector<double> values;
    for (const PartRow& row : m_rows)
        if (const std::optional<double> one = value(row))
            values.append(*one);
    return spreadOf(values);
}

template <typename Condition>
int PartReport::count(Condition condition) const
{
    return static_cast<int>(std::count_if(m_rows.cbegin(), m_rows.cend(), condition));
}

int PartReport::partsWithImage() const
{
    return count([](const PartRow& row) { return row.hadImage(); });
}

std::optional<double> PartReport::restMs(const PartRow& row) const
{
    return row.road ? Value(row.latencyMs - row.road->engineMs - m_cameraDelayMs) : Value();
}

ReportFigures PartReport::figures() const
{
    ReportFigures figures;
    figures.parts = m_rows.size();
    figures.replies = count([](const PartRow& row) { return row.answered; });
    figures.found = count([](const PartRow& row) { return row.found(); });
    figures.wrong =
        count([](const PartRow& row) { return row.verdict() == Verdict::Wrong || row.verdict() == Verdict::Invented; });
    figures.angleErrorDeg = spread([](const PartRow& row) { return row.angleErrorDeg(); });
    figures.centerErrorPx = spread([](const PartRow& row) { return row.centerErrorPx; });
    addTimes(figures);
    addMemory(figures);
    figures.refusals = m_refusals;
    const bool refusalsGood = !m_refusals || m_refusals->refused == m_refusals->asked;
    figures.allGood = refusalsGood && count([](const PartRow& row) { return isGood(row.verdict()); }) == figures.parts;
    return figures;
}

void PartReport::addTimes(ReportFigures& figures) const
{
    figures.latencyMs = spread([](const PartRow& row) { return row.answered ? Value(row.latencyMs) : Value(); });
    figures.engineMs = spread([](const PartRow& row) { return row.road ? Value(row.road->engineMs) : Value(); });
    figures.restMs = spread([this](const PartRow& row) { return restMs(row); });
    if (m_refusals)
        figures.refusedMs = spreadOf(m_refusals->latencyMs);
}

void PartReport::addMemory(ReportFigures& figures) const
{
    for (const PartRow& row : m_rows) {
        if (row.road)
            figures.rssKibAtEnd = row.road->rssKib;
        if (row.number == 20)
            figures.rssKibAfter20 = figures.rssKibAtEnd;
    }
}
