#pragma once

#include "PlcScript.h"

#include <QHash>
#include <QObject>
#include <QRandomGenerator>
#include <QTimer>

#include <memory>

class PlcLine;

/// Runs the commands of a script, or those that come one by one, in their order. Answers that come before they are
/// waited for are kept for the `wait`, heartbeats excepted: for those only new ones count.
class ScriptRunner : public QObject
{
    Q_OBJECT

public:
    /// `stopAtFailure`: as a script does; a person's commands go on.
    ScriptRunner(PlcLine& line, bool stopAtFailure);

    void add(const QVector<ScriptCommand>& commands);
    /// No more commands come: finished() as soon as all have run.
    void close();

signals:
    /// An awaited frame came; `afterTriggerMs` counts from the last trigger's last byte, below 0 without one.
    void arrived(const SComFrame& frame, double afterTriggerMs);
    /// A command failed; the text names its line.
    void failed(const QString& text);
    void finished(int failures);

private:
    struct Arrival
    {
        SComFrame frame;
        qint64 atNs;
    };

    void scheduleStep();
    void step();
    void run(const ScriptCommand& command);
    void send(const SComFrame& frame);
    /// Begins a wait or none.
    void expect(const ScriptCommand& command);
    /// Back to the first command, or on when all rounds were run.
    void repeat(const ScriptCommand& command);
    /// The same bytes in every run.
    QByteArray garbage(int count);
    void onFrame(const SComFrame& frame, qint64 atNs);
    void onTimeout();
    /// Ends a wait, well or not, by the frame that came.
    void settle(const Arrival& arrival);
    void fail(const QString& reason);

    PlcLine& m_line;
    const bool m_stopAtFailure;
    QVector<ScriptCommand> m_commands;
    int m_next = 0;
    ScriptCommand m_current;
    bool m_busy = false; ///< a command waits for a frame or the time
    bool m_closed = false;
    bool m_done = false;
    int m_failures = 0;
    QHash<int, int> m_rounds; ///< runs so far, by the index of the repeat
    QVector<Arrival> m_unread;
    qint64 m_triggerNs = -1;
    QTimer m_timer;
    QRandomGenerator m_random{20};
};

namespace platform {
class StandardInput;
}

/// One run of a script, or of the commands that come over the standard input.
class ScriptSession : public QObject
{
    Q_OBJECT

public:
    explicit ScriptSession(PlcLine& line);
    ~ScriptSession() override;

    /// Begins a script; false with file, line and reason when it cannot be read.
    bool runFile(const QString& path, QString* error);
    /// Takes commands from the standard input until it ends.
    void runInput();

signals:
    void finished(int exitCode); ///< 0 when every command did what it should, otherwise 1

private:
    void begin(bool stopAtFailure);
    /// A line that is not understood is reported, counts as a failure, and the next one is taken.
    void onLine(const QString& text);

    PlcLine& m_line;
    std::unique_ptr<ScriptRunner> m_runner;
    std::unique_ptr<platform::StandardInput> m_input;
    int m_lines = 0;
    int m_misunderstood = 0;
};
