#pragma once

#include <QElapsedTimer>
#include <QProcess>

/// Resident memory of a process, KiB; 0 when it is not known.
struct ProcessMemory
{
    qint64 now = 0;
    qint64 peak = 0;

    static ProcessMemory of(qint64 pid);
};

/// The program under test: started, killed and started again in one home. Its messages go to "run.log" there, with the
/// stalls of its window among them.
class CellProcess : public QProcess
{
    Q_OBJECT

public:
    CellProcess(const QString& program, QString home);
    /// Kills it.
    ~CellProcess() override;

    void begin();
    bool isRunning() const { return state() == QProcess::Running; }
    /// Since begin().
    double sinceBeginMs() const { return static_cast<double>(m_since.nsecsElapsed()) / 1e6; }
    /// Lets it write no more than so many bytes of any file; -1: as much as it likes.
    bool limitFiles(qint64 bytes);

protected:
    void setupChildProcess() override;

private:
    const QString m_home;
    QElapsedTimer m_since;
};
