#include "forward/StateReport.h"

#include <algorithm>

using Sparkplug::Metric;
using Sparkplug::Type;

void StateReport::set(const Metric& metric)
{
    const auto known =
        std::find_if(m_metrics.begin(), m_metrics.end(), [&](const Metric& one) { return one.name == metric.name; });
    if (known == m_metrics.end())
        m_metrics.append(metric);
    else
        *known = metric;
}

Sparkplug::Payload StateReport::payload(qint64 ms)
{
    Sparkplug::Payload payload;
    payload.timestamp = ms;
    payload.seq = m_seq;
    payload.metrics.append({QStringLiteral("Health/Clock"), Type::DateTime, quint64(ms)});
    m_lastMs = ms;
    return payload;
}

Sparkplug::Payload StateReport::birth(qint64 ms, quint64 session)
{
    m_seq = 0;
    Sparkplug::Payload birth = payload(ms);
    birth.metrics.append({QStringLiteral("bdSeq"), Type::UInt64, session});
    birth.metrics.append({QStringLiteral("Node Control/Rebirth"), Type::Boolean, false});
    birth.metrics += m_metrics;
    m_sent.clear();
    for (const Metric& metric : qAsConst(m_metrics))
        m_sent.insert(metric.name, metric.value);
    return birth;
}

Sparkplug::Payload StateReport::changes(qint64 ms)
{
    QVector<Metric> changed;
    for (const Metric& metric : qAsConst(m_metrics)) {
        if (m_sent.value(metric.name) != metric.value)
            changed.append(metric);
    }
    if (changed.isEmpty() && ms >= m_lastMs && ms - m_lastMs < clockMs)
        return {};
    m_seq = (m_seq + 1) % 256;
    Sparkplug::Payload data = payload(ms);
    data.metrics += changed;
    for (const Metric& metric : qAsConst(changed))
        m_sent.insert(metric.name, metric.value);
    return data;
}
