#pragma once

#include "workflow/DayCounts.h"

#include <QThread>

#include <memory>

/// Reads, in a thread of its own, what the result database says of the present day up to now; so a program that is
/// started in the middle of a shift goes on counting. Refused triggers have no rows. GUI thread.
class EarlierCounts : public QObject
{
    Q_OBJECT

public:
    /// `path`: the result database, which may be missing or in use.
    explicit EarlierCounts(const QString& path, QObject* parent = nullptr);
    /// Waits for the reading, which takes some milliseconds.
    ~EarlierCounts() override;

    /// Reads, once.
    void start() { m_thread->start(QThread::LowPriority); }

signals:
    /// Once for each station; never when the database cannot be read.
    void counted(const QDate& day, int station, const DayCount& count);

private:
    void read(const QString& path, const QDateTime& now);

    std::unique_ptr<QThread> m_thread;
};
