#pragma once

#include "CellTruth.h"
#include "PlcFrames.h"
#include "RoadLog.h"

#include <QVector>

#include <optional>

/// How measured values spread. Percentiles are by nearest rank: the smallest value that at least that part of all
/// values does not exceed, so each is a value that was measured.
struct Spread
{
    double p50 = 0;
    double p95 = 0;
    double p99 = 0;
    double max = 0;
};

/// Nothing for no values.
std::optional<Spread> spreadOf(QVector<double> values);

/// What became of one part.
enum class Verdict {
    Right,    ///< found where it is, or rightly not found
    Answered, ///< answered; the truth is not known
    NoAnswer, ///< no answer frame in time
    NoNotice, ///< an answer without an angle that no "H" frame followed
    Missed,   ///< the wheel has a hole, the answer has no angle
    Wrong,    ///< found in a wrong direction
    Invented, ///< found where there is none
};

/// One part that was fed, and its answer.
struct PartRow
{
    static constexpr double allowedErrorDeg = 0.5;

    int number = 0; ///< counts from 1
    int station = 0;
    KnownImage image;
    bool answered = false;
    bool noticed = false; ///< whether an "H" frame followed
    PlcFrames::Answer answer;
    double latencyMs = 0;                ///< trigger frame's last byte to answer frame's last byte
    std::optional<double> centerErrorPx; ///< distance of the answered from the true centre
    std::optional<RoadTiming> road;      ///< the program's own timing

    bool found() const { return answered && answer.angle < PlcFrames::firstNoAngle; }
    /// Whether the camera was asked: a refused trigger takes no image.
    bool refused() const { return answered && answer.angle == PlcFrames::refusedAngle; }
    /// Whether the engine looked at an image, as far as the answer shows.
    bool hadImage() const { return answered && !refused(); }
    /// Between the answered and the true direction, 0 to 180 degrees; nothing when there are not both.
    std::optional<double> angleErrorDeg() const;
    Verdict verdict() const;
};

/// "ok", "no answer" and so on.
const char* verdictText(Verdict verdict);
/// Whether the part went as it should.
inline bool isGood(Verdict verdict)
{
    return verdict == Verdict::Right || verdict == Verdict::Answered;
}

/// What came of the triggers that have to be refused.
struct RefusalResult
{
    int asked = 0;
    int refused = 0; ///< answered with angle 999 and an "H" frame
    QVector<double> latencyMs;
};

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
