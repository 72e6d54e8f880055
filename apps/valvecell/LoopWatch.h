#pragma once

#include <QElapsedTimer>
#include <QObject>

/// Measures the event loop of the program: how long from the process's start until the window was first drawn, and the
/// longest time that the loop was held, with what held it. Costs nothing unless the logging category "valvecell.loop"
/// has its debug lines on. GUI thread.
///
/// Lines: "window_ms=812.3" once, then "stall_ms=31.2 QTimer of QTimer" for each stretch above 20 ms, and at the end
/// "longest_stall_ms=31.2 ...". The first five seconds, in which the program starts, count as no stall.
class LoopWatch : public QObject
{
public:
    /// `start` was started when the process began.
    explicit LoopWatch(const QElapsedTimer& start);
    ~LoopWatch() override;

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    /// The event before is through: notes how long it held the loop.
    void endStretch();

    const QElapsedTimer m_start;
    QElapsedTimer m_stretch;
    QString m_holder;
    QString m_longestHolder;
    double m_longestMs = 0;
    bool m_shown = false;
};
