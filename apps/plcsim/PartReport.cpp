#include "PartReport.h"

#include <QQueue>

namespace {

using Value = std::optional<double>;

} // namespace

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
