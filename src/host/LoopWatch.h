#pragma once

#include <QElapsedTimer>
#include <QEvent>
#include <QObject>

/// Measures the event loop of the program: every time that it was held for more than 100 ms goes to the log, with what
/// held it: the step (see Step), or the event and its receiver; one line in ten seconds, the longest of them. The first
/// five seconds, in which the program starts, do not count. GUI thread.
///
/// For those who measure, with the debug lines of the logging category "valvecell.loop" on: "stall_ms=31.2 ..." for
/// each stretch above 20 ms, and at the end "longest_stall_ms=31.2 ...".
class LoopWatch : public QObject
{
public:
    LoopWatch();
    ~LoopWatch() override;

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    struct Stall
    {
        double ms = 0;
        QString holder;
    };

    /// The event before is through: notes how long it held the loop.
    void endStretch();
    QString holder(double stretchMs) const;
    void report(const Stall& stall);

    QElapsedTimer m_sinceStart;
    QElapsedTimer m_stretch;
    QElapsedTimer m_sinceReport;
    const char* m_receiver = ""; ///< its class
    QString m_receiverName;
    QEvent::Type m_event = QEvent::None;
    Stall m_longest;
    Stall m_unreported; ///< the longest since the last line
};
