#pragma once

#include "plant/Sparkplug.h"

#include <QHash>

/// The cell's state as Sparkplug has it: all of it at a birth, then what differs. On the forwarder's thread.
class StateReport
{
public:
    void set(const Sparkplug::Metric& metric);

    /// All metrics, numbered from 0 on again.
    Sparkplug::Payload birth(qint64 ms, quint64 session);
    /// Those that differ from what was sent last, with the clock; no metrics when there is nothing to say.
    Sparkplug::Payload changes(qint64 ms);

private:
    Sparkplug::Payload payload(qint64 ms);

    static constexpr qint64 clockMs = 30000; ///< the clock comes at least so often

    QVector<Sparkplug::Metric> m_metrics;
    QHash<QString, QVariant> m_sent;
    qint64 m_lastMs = 0;
    int m_seq = 0;
};
