#pragma once

#include <QtGlobal>

/// So many bytes a second, and after a pause so many at once. A message goes whole when there is anything left, and
/// what it took too much is waited for.
class TokenBucket
{
public:
    TokenBucket(double bytesPerSecond, double atOnce)
        : m_rate(bytesPerSecond)
        , m_most(atOnce)
        , m_tokens(atOnce)
    {
    }

    /// `ns`: of a clock that is never set back.
    bool isOpen(qint64 ns)
    {
        if (m_seen >= 0)
            m_tokens = qMin(m_most, m_tokens + double(ns - m_seen) / 1e9 * m_rate);
        m_seen = ns;
        return m_tokens > 0;
    }
    void take(qint64 bytes) { m_tokens -= double(bytes); }
    /// Until it is open again.
    int msToWait() const { return m_tokens > 0 ? 0 : 1 + int(-m_tokens * 1000 / m_rate); }

private:
    double m_rate;
    double m_most;
    double m_tokens;
    qint64 m_seen = -1;
};
