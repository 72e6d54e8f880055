#pragma once

#include <QtGlobal>

/// Names what the GUI thread does as long as the object stands on its stack; elsewhere it does nothing. So whoever
/// watches that thread can report in which step it was held up.
class Step
{
public:
    /// `name` lives until the process ends: a literal.
    explicit Step(const char* name);
    ~Step();
    Q_DISABLE_COPY(Step)

    /// The innermost step; null when there is none. Any thread.
    static const char* current();

    struct Longest
    {
        const char* name = nullptr;
        qint64 ns = 0; ///< without the steps within it
    };
    /// Of those that ended since the last call. GUI thread.
    static Longest takeLongest();

private:
    const bool m_counts;
    const char* m_outer = nullptr;
    qint64 m_outerInnerNs = 0;
    qint64 m_startNs = 0;
};
