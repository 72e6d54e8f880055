#pragma once

#include "workflow/DayCounts.h"

#include <QString>
#include <QThreadPool>

#include <functional>

/// The counts of a day, both stations'.
struct DayRecord
{
    QDate day; ///< invalid when there is no record
    DayCount counts[2];
};

/// Keeps the counts of the present day from one start of the program to the next, so that one that is started in the
/// middle of a shift goes on counting. Database and file each hold part of the truth: the database no refused trigger
/// and no part whose model was not taught, the file nothing of the last minute before a sudden end. Neither ever holds
/// too much, so the greater number counts. Read and written on a thread of its own, the file seldom and in one step.
/// GUI thread.
class DayCountsFile : public QObject
{
    Q_OBJECT

public:
    /// After a sudden end, up to so much of the counts is missing.
    static constexpr int secondsBetweenWrites = 60;

    /// Either may be missing, damaged or in use.
    struct Places
    {
        QString database; ///< of the results
        QString file;     ///< of the counts
    };

    /// `counts` and `scheduler` outlive the file.
    DayCountsFile(DayCounts& counts, Places places, Scheduler& scheduler, QObject* parent = nullptr);
    /// Writes what is new.
    ~DayCountsFile() override;

    /// Adds to the counts what was counted on the day of the program's start, `start`, until then; the first call
    /// does, once all of it is in the database. Nothing is written before: counts that lack the day so far would
    /// replace the whole ones.
    void start(const QDateTime& start);

    /// What a file says; nothing when it is missing or not as it was written. Any thread.
    static DayRecord read(const QString& path);

public slots:
    /// To be called once a second.
    void tick();

signals:
    /// The counts hold the whole day from now on.
    void started();

private:
    void run(const std::function<void()>& job);
    void takeIn(const DayRecord& earlier);
    void write();

    DayCounts& m_counts;
    const Places m_places;
    Scheduler& m_scheduler;
    bool m_asked = false;
    bool m_started = false;
    bool m_isNew = false; ///< there is something to write
    int m_seconds = 0;    ///< since the last write
    QThreadPool m_worker; // one thread: jobs stay in order; waited for by its destructor
};
