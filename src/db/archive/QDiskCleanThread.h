#pragma once

#include "db/ClockGuard.h"

#include <QThread>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>

/// Keeps a disk from filling: deletes old images below a root, by age or when space runs low, in a pass every second.
/// The setters are called before start(); change() at any time. See FolderSweep for what it never touches. What is old
/// is a matter of the clock: after one that was set by more than some minutes, nothing goes by its age until
/// acceptClock().
class QDiskCleanThread : public QThread
{
    Q_OBJECT

public:
    enum Mode { Files = 0, Folders = 1 };
    static constexpr int msBetweenPasses = 1000;

    explicit QDiskCleanThread(QObject* parent = nullptr);

    /// Stops after the deletion in hand, and waits.
    ~QDiskCleanThread() override;

    void setMode(int mode) { m_mode = mode; }
    void setAgeCleaning(bool on) { m_cleanByAge = on; }
    void setAgeLimit(qint32 days) { m_days = days; } ///< below 1 counts as 3
    void setRootPath(const QString& root) { m_root = root; }
    void setMinFreeSpace(qint32 gib) { m_minFreeGiB = gib; }

    /// Other values, from the next pass on; a limit that low space has set stays as it is. Any thread.
    void change(bool byAge, qint32 days, qint32 minFreeGiB);

    /// Where a pass has the time from; outlives the cleaner.
    void setScheduler(const Scheduler& scheduler) { m_scheduler = &scheduler; }
    /// What a pass takes for the free MiB of the root's drive; -1 when they are not known.
    void setFreeSpaceProbe(std::function<qint64(const QString&)> probe) { m_freeSpace = std::move(probe); }

    /// The free MiB of the root's drive that the last pass saw; -1 before the first, or when they cannot be told. Any
    /// thread.
    qint64 lastFreeMiB() const { return m_lastFree; }

    /// Whether space was low once, so that images are kept for a day only. Any thread.
    bool isKeepingShortened() const { return m_overridden; }

    /// After a jump nothing goes by its age, until the clock is accepted. Any thread.
    ClockGuard& clock() { return m_clock; }

    /// Sets the stop flag; the thread ends after the deletion in hand. Any thread.
    void stop();

    /// One pass, on the caller's thread; only while the thread does not run.
    void pass();

protected:
    void run() override;

private:
    struct Change
    {
        bool byAge;
        qint32 days;
        qint32 minFreeGiB;
    };

    /// What change() left, for the pass that begins.
    void takeChange();
    qint64 freeMiB();
    bool spaceIsLow() { return freeMiB() < qint64(m_minFreeGiB) * 1024; }
    void shortenKeeping();
    /// `now`: the moment of the pass; not valid: nothing is old.
    void cleanFiles(const QDateTime& now);
    void cleanFolders(const QDateTime& now);
    /// Whatever was made before it is old.
    QDateTime cutOff(const QDateTime& now) const;
    bool isStopped() const;
    /// False when the thread is to end.
    bool pauseUnlessStopped();

    QString m_root;
    bool m_cleanByAge = false;
    qint32 m_days = 7;
    bool m_cleanForSpace = false;
    qint32 m_minFreeGiB = 10;
    qint32 m_mode = Files;
    qint32 m_interval = 0; ///< seconds; kept, and without effect
    bool m_probeFailed = false;
    std::atomic<bool> m_overridden{false}; ///< space was low once
    std::atomic<qint64> m_lastFree{-1};
    const Scheduler* m_scheduler = &Scheduler::system();
    ClockGuard m_clock;
    std::function<qint64(const QString&)> m_freeSpace;

    mutable std::mutex m_mutex; ///< guards m_stop and m_change
    std::condition_variable m_stopped;
    bool m_stop = false;
    std::optional<Change> m_change;
};
