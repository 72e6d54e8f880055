#pragma once

#include "workflow/DayCounts.h"

#include <QThreadPool>

/// The counts of a day, both stations'.
struct DayRecord
{
    QDate day; ///< invalid when there is no record
    DayCount counts[2];
};

/// Keeps the counts of the present day in a file, for the next start: the result database has no rows of what was
/// refused. Written seldom, in one step, on a thread of its own. GUI thread.
class DayCountsFile : public QObject
{
    Q_OBJECT

public:
    /// After a sudden end, up to so much of the counts is missing.
    static constexpr int secondsBetweenWrites = 60;

    /// `counts` outlive the file. Nothing is written before begin(): counts that lack the day so far would replace the
    /// whole ones.
    DayCountsFile(const DayCounts& counts, QString path, QObject* parent = nullptr);
    /// Writes what is new.
    ~DayCountsFile() override;

    /// What the file says; nothing when it is missing or not as it was written. Any thread.
    static DayRecord read(const QString& path);

public slots:
    /// The counts hold the whole day from now on.
    void begin() { m_begun = true; }
    /// To be called once a second.
    void tick();

private:
    void write();

    const DayCounts& m_counts;
    const QString m_path;
    bool m_begun = false;
    bool m_isNew = false; ///< there is something to write
    int m_seconds = 0;    ///< since the last write
    QThreadPool m_writer; // one thread: writes stay in order; waited for by its destructor
};
