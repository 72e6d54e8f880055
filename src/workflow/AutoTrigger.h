#pragma once

#include <QObject>
#include <QTimer>

/// Triggers a station again and again, for running it without a PLC. GUI thread.
class AutoTrigger : public QObject
{
    Q_OBJECT

public:
    explicit AutoTrigger(QObject* parent = nullptr)
        : QObject(parent)
    {
        connect(&m_timer, &QTimer::timeout, this, &AutoTrigger::sgTrig);
    }

    /// From now on a trigger every so many milliseconds; a running one starts anew.
    void start(int ms) { m_timer.start(ms); }
    void stop() { m_timer.stop(); }

signals:
    void sgTrig();

private:
    QTimer m_timer;
};
