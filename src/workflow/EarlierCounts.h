#pragma once

#include "workflow/DayCounts.h"

#include <QThread>

#include <memory>

/// Reads, in a thread of its own, what was counted on the present day before the start; so a program that is started in
/// the middle of a shift goes on counting. Database and file each hold part of the truth: the database no refused
/// trigger and no part whose model was not taught, the file nothing of the last minute before a sudden end. Neither
/// ever holds too much, so the greater number counts. GUI thread.
class EarlierCounts : public QObject
{
    Q_OBJECT

public:
    /// `database`: the results; `file`: that of DayCountsFile. Either may be missing, damaged or in use.
    EarlierCounts(const QString& database, const QString& file, QObject* parent = nullptr);
    /// Waits for the reading, which takes some milliseconds.
    ~EarlierCounts() override;

    /// Reads, once.
    void start() { m_thread->start(QThread::LowPriority); }

signals:
    /// Once for each station.
    void counted(const QDate& day, int station, const DayCount& count);
    /// After the last station.
    void finished();

private:
    void read(const QString& database, const QString& file, const QDateTime& now);

    std::unique_ptr<QThread> m_thread;
};
