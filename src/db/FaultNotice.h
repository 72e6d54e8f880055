#pragma once

#include "db/log/LogLine.h"

/// Tells a fault that lasts twice: when it begins, and, with the number of failures, when it is over. One thread.
class FaultNotice
{
public:
    /// Logs the first failure; those that follow are only counted.
    void failed(const QString& text)
    {
        if (++m_failures == 1)
            SystemLog::warning(text);
    }

    /// Logs the end, if anything had failed. "%1" in the text is the number of failures.
    void over(const QString& text)
    {
        if (m_failures > 0)
            SystemLog::warning(text.arg(m_failures));
        m_failures = 0;
    }

    bool lasts() const { return m_failures > 0; }

private:
    int m_failures = 0;
};
