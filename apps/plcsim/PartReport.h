#pragma once

#include "PartRow.h"
#include "RefusalProbe.h"
#include "Statistics.h"

/// The figures of a run. A spread is missing when nothing was measured.
struct ReportFigures
{
    int parts = 0;
    int replies = 0;
    int found = 0; ///< answers with an angle
    int wrong = 0; ///< of these, more than 0.5 degrees off, or on a wheel without a hole
    std::optional<Spread> angleErrorDeg;
    std::optional<Spread> centerErrorPx;
    std::optional<Spread> latencyMs; ///< trigger frame's last byte to answer frame's last byte
    std::optional<Spread> engineMs;
    std::optional<Spread> restMs; ///< latency without the engine and the camera's delay
    std::optional<qint64> rssKibAfter20;
    std::optional<qint64> rssKibAtEnd;
    std::optional<RefusalResult> refusals;
    std::optional<Spread> refusedMs;
    bool allGood = false; ///< every part went as it should, and every trigger to be refused was
};

/// The parts that were fed.
class PartReport
{
public:
    /// The newest rows that are kept; endless feeding must not fill the memory.
    static constexpr int maxRows = 100'000;

    /// `cameraDelayMs`: exposure and transfer time of the cameras, which is not the program's.
    explicit PartReport(double cameraDelayMs);

    void add(const PartRow& row);
    /// Gives the timings to the parts whose image the program looked at, per station in order.
    void join(const QVector<RoadTiming>& timings);
    void setRefusals(const RefusalResult& result) { m_refusals = result; }

    /// Parts of which the program writes a timing line.
    int partsWithImage() const;
    const QVector<PartRow>& rows() const { return m_rows; }
    /// What of a part's latency is neither the engine's nor the camera's; nothing without the program's timing.
    std::optional<double> restMs(const PartRow& row) const;
    ReportFigures figures() const;

private:
    template <typename Value>
    std::optional<Spread> spread(Value value) const;
    template <typename Condition>
    int count(Condition condition) const;
    void addTimes(ReportFigures& figures) const;
    /// After 20 parts, when everything has been made that a part needs, and at the end: a leak shows between the two.
    void addMemory(ReportFigures& figures) const;

    const double m_cameraDelayMs;
    QVector<PartRow> m_rows;
    std::optional<RefusalResult> m_refusals;
};
