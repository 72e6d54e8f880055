#pragma once

#include "common/Scheduler.h"
#include "workflow/Trigger.h"

#include <valvecell/ICameraCapture.h>

#include <QHash>
#include <QObject>

#include <deque>

class StandIn;

/// The triggers between their acceptance and their end, oldest first. A camera captures for one trigger at a time.
/// Image and result are told by the trigger's number; what comes too late, or twice, belongs to nobody and is dropped.
/// GUI thread; nothing waits.
///
/// Of a camera without numbers the next image belongs to the trigger that it captures for. One that lets a trigger pass
/// its deadline may still deliver: until it has said something, or several deadlines are over, its station's triggers
/// fail at once, and its images are dropped.
class TriggersInHand : public QObject
{
    Q_OBJECT

public:
    /// Of one station, that wait for camera or engine. What comes on top would be answered late.
    static constexpr int maxWaiting = 2;
    /// So many deadlines after its own, an image does not come any more.
    static constexpr int deadlinesToDrain = 4;

    using Outcome = ICameraCapture::Outcome;
    /// Asks the trigger's camera for an image and returns at once: whether the outcome will have the trigger's number.
    using Capture = std::function<bool(const Trigger& trigger)>;
    /// Hands a trigger's image to the engine; returns at once.
    using Inspect = std::function<void(const Trigger& trigger, const QImage& image)>;
    /// From a trigger's acceptance to its answer at the latest, milliseconds.
    using Deadline = std::function<int()>;

    /// `scheduler` and `standIn` outlive it.
    TriggersInHand(Scheduler& scheduler, StandIn& standIn, Deadline deadline, Capture capture, Inspect inspect,
                   QObject* parent = nullptr);

    /// Takes a trigger on, and numbers it; one that does not know when it came, came now. False, and nothing is done,
    /// when the station has too many in hand.
    bool accept(Trigger trigger);

    int count() const { return static_cast<int>(m_triggers.size()); }

public slots:
    /// What became of a capture; number 0 where the camera has none. An image that nobody waits for is dropped.
    void onCaptured(const ICameraCapture::Outcome& outcome);
    /// A result without a solution is none: Nobody knows whose it is.
    void onResult(quint64 number, const QVariantMap& result);

signals:
    void captureStarted(const Trigger& trigger);
    void imageArrived(const Trigger& trigger);
    /// An outcome came that no trigger waits for.
    void unasked(const QString& cameraKey);
    // The ends.
    void finished(const Trigger& trigger, const QVariantMap& result);
    void failed(const Trigger& trigger, Failure failure, const QString& reason);

private:
    enum Stage { WaitsForCamera, Captures, IsInspected };
    struct InHand
    {
        Trigger trigger;
        Stage stage = WaitsForCamera;
        qint64 deadlineNs = 0;
        bool numbered = false; ///< the outcome of its capture will be
    };
    using Position = std::deque<InHand>::iterator;

    Position withNumber(quint64 number);
    /// The trigger that a camera captures for.
    Position captureOf(const QString& cameraKey);
    /// The trigger that an outcome belongs to.
    Position ownerOf(const Outcome& outcome);
    void captureNext(const QString& cameraKey);
    /// Ends a trigger.
    Trigger take(Position position);
    void fail(Position position, Failure failure, const QString& reason);
    void failOverdue();
    void watch();
    qint64 deadlineNs() const;

    Scheduler& m_scheduler;
    StandIn& m_standIn;
    const Deadline m_deadline;
    const Capture m_capture;
    const Inspect m_inspect;
    quint64 m_numbers = 0;
    std::deque<InHand> m_triggers;
    QHash<QString, qint64> m_drains; ///< by camera: until when its images are dropped
    std::unique_ptr<Scheduler::Timer> m_overdue;
};
