#pragma once

#include "common/Scheduler.h"
#include "workflow/Trigger.h"

#include <QHash>
#include <QObject>

#include <deque>

/// The triggers between their acceptance and their end, oldest first. A camera captures for one trigger at a time, so
/// that its next image belongs to that one; a result is told by the trigger's number. What comes too late, or twice,
/// belongs to nobody and is dropped. GUI thread; nothing waits.
///
/// A camera that lets a trigger pass its deadline may still deliver: until it has said something, or several deadlines
/// are over, its station's triggers fail at once, and its images are dropped.
class TriggersInHand : public QObject
{
    Q_OBJECT

public:
    /// Of one station, that wait for camera or engine. What comes on top would be answered late.
    static constexpr int maxWaiting = 2;
    /// So many deadlines after its own, an image does not come any more.
    static constexpr int deadlinesToDrain = 4;

    /// Asks the camera of that key for an image; returns at once.
    using Capture = std::function<void(const QString& cameraKey)>;
    /// Hands a trigger's image to the engine; returns at once.
    using Inspect = std::function<void(const Trigger& trigger, const QImage& image)>;
    /// From a trigger's acceptance to its answer at the latest, milliseconds.
    using Deadline = std::function<int()>;

    /// `scheduler` outlives it.
    TriggersInHand(Scheduler& scheduler, Deadline deadline, Capture capture, Inspect inspect,
                   QObject* parent = nullptr);

    /// Takes a trigger on, and numbers it; false, and nothing is done, when the station has too many in hand.
    bool accept(Trigger trigger);

    int count() const { return static_cast<int>(m_triggers.size()); }

public slots:
    /// An image of a camera that captures for nobody is dropped; a null one counts as none.
    void onImage(const QString& cameraKey, const QImage& image);
    /// The camera will deliver nothing for the trigger that it has.
    void onNoImage(const QString& cameraKey, const QString& reason);
    /// A result without a solution is none: Nobody knows whose it is.
    void onResult(quint64 number, const QVariantMap& result);

signals:
    void captureStarted(const Trigger& trigger);
    void imageArrived(const Trigger& trigger);
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
    };
    using Position = std::deque<InHand>::iterator;

    Position captureOf(const QString& cameraKey);
    void captureNext(const QString& cameraKey);
    void fail(Position position, Failure failure, const QString& reason);
    void failOverdue();
    void watch();
    qint64 deadlineNs() const;

    Scheduler& m_scheduler;
    const Deadline m_deadline;
    const Capture m_capture;
    const Inspect m_inspect;
    quint64 m_numbers = 0;
    std::deque<InHand> m_triggers;
    QHash<QString, qint64> m_drains; ///< by camera: until when its images are dropped
    std::unique_ptr<Scheduler::Timer> m_overdue;
};
