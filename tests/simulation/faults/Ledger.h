#pragma once

#include "Plan.h"
#include "common/Scheduler.h"
#include "workflow/DayCounts.h"

#include <valvecell/SComFrame.h>

#include <QDateTime>
#include <QMap>

#include <deque>
#include <optional>

struct StationReading;

namespace Simulation {

/// One trigger that the cell has to end.
struct Part
{
    int number = 0;
    int station = 0;
    bool test = false;
    QString camera;
    QString solution;
    QString model;
    int plcIndex = 0;
    quint64 session = 0;
    qint64 deadlineMs = 0;
    Step fate;
    int picture = 0;           ///< 0: the camera was not asked yet
    bool inspected = false;    ///< the engine has its picture
    bool excused = false;      ///< 361 may be the answer
    std::optional<Answer> got; ///< what the engine answered last
};

/// What a row of the database has to say of a part.
struct Row
{
    QString text;
    qint64 ms = 0;        ///< of the simulated time since the start, when it was recorded
    bool mayMiss = false; ///< a fault may have taken it
};

/// What must hold at every moment, whatever happens: keeps its own account of the plant, from what goes into the cell
/// and what comes out of it, and notes the first difference. It knows the cell's contract and nothing of its inside.
class Ledger
{
public:
    explicit Ledger(const Scheduler& scheduler)
        : m_scheduler(scheduler)
    {
    }

    /// The simulated time since the start.
    qint64 ms() const { return m_scheduler.elapsedNs() / 1000000; }

    // The plant as it is at the moment.
    struct Station
    {
        QString camera;
        QString solution;
        QString runModel; ///< what its triggers are judged by
        int plcIndex = 0;
        QString model; ///< of that index
        qint64 filteredUntil = -1;
    };
    Station stations[2];
    QMap<QString, QMap<QString, int>> tables; ///< by solution: model and index
    bool online = true;
    bool protection = true;
    int filterMs = 0;
    int deadlineMs = 1000;
    quint64 line = 1; ///< its session; 0 while it is cut

    // What goes into the cell.
    void indices(int index1, int index2);
    void trigger(int station, quint64 session, const Step& fate);
    /// After the cell has had that trigger.
    void triggerTaken();
    void snap(int station, const Step& fate);
    /// The cell's start: whatever was in hand is gone with the one before.
    void restarted();

    // What the cell asks for.
    Part* captureStarted(const QString& camera);
    void captureEnded(int picture, bool delivered);
    /// The engine gets a picture.
    Part* inspected(int picture, const QString& solution, const QString& model);
    void answered(int part, Answer answer);

    // What comes out of it.
    void sent(const SComFrame& frame);
    void shown(int station, const StationReading& reading);
    void refused(int station);

    /// After every step.
    void check(const DayCounts& counts);
    /// Null when it has ended.
    Part* part(int number);
    /// Whether a picture may come out of the blue without being taken for another.
    bool isIdle(const QString& camera) const;
    int inHand() const { return static_cast<int>(m_live.size()); }
    int found() const { return m_found; }

    /// The centre that the engine reports of a picture: the picture's number, and what judged it.
    static double xOf(int picture) { return picture % 30000 + 0.25; }
    static double yOf(const QString& solution, const QString& model);
    static double angleOf(int picture) { return (picture * 7919 % 359000) / 1000.0; }

    void fail(const QString& what);
    /// The first rule that did not hold; empty while all do.
    QString broken;
    std::deque<Row> rows; ///< that the database has to have, in their order
    qint64 triggers = 0;  ///< frames that came in
    qint64 ends = 0;
    DayCount counts[2];
    QDate day;

private:
    struct Capture
    {
        int picture;
        QString camera;
        qint64 doubtfulUntil; ///< its picture may still come, and be nobody's
        int part;
    };
    struct Reply
    {
        double angle, x, y;
        bool noticed;
    };

    bool add(int station, bool test, quint64 session, const Step& fate);
    int waiting(int station) const;
    bool mayFail(const Part& part) const;
    Part* owner(int station, const StationReading& reading);
    void checkReply(const Part& part, const StationReading& reading);
    void end(Part& part, const StationReading& reading);
    void count(int station, int DayCount::*kind);
    void record(int station, const QString& model, int plcIndex, const StationReading& reading, bool delivered);

    const Scheduler& m_scheduler;
    int m_parts = 0;
    int m_pictures = 0;
    int m_found = 0;
    std::deque<Part> m_live;
    std::deque<Capture> m_captures;    ///< whose outcome did not come
    std::optional<Reply> m_replies[2]; ///< sent, and not yet shown
    std::optional<bool> m_refusal[2];  ///< due now: whether the PLC gets to know
    QString m_refusedModel;
    int m_strangers = 0; ///< results of another solution, each shown for no station
};

} // namespace Simulation
