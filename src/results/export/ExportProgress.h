#pragma once

#include <QtGlobal>

#include <atomic>

/// Between the thread that writes an export and those who watch it. Any thread.
class ExportProgress
{
public:
    void cancel() { m_cancelled = true; }
    bool isCancelled() const { return m_cancelled; }
    void set(qint64 done, qint64 of) { m_percent = of > 0 ? int(qBound<qint64>(0, done * 100 / of, 100)) : 0; }
    int percent() const { return m_percent; }

private:
    std::atomic<bool> m_cancelled{false};
    std::atomic<int> m_percent{0};
};
