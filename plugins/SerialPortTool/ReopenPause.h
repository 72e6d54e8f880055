#pragma once

#include <algorithm>
#include <chrono>

/// How long to wait before a line is tried again: short at first, then twice as long each time, 2 s at most.
class ReopenPause
{
public:
    static constexpr std::chrono::milliseconds first{50};
    static constexpr std::chrono::milliseconds longest{2000};

    /// The pause to wait now; the following one is longer.
    std::chrono::milliseconds next()
    {
        const auto pause = m_next;
        m_next = std::min(2 * m_next, longest);
        return pause;
    }

    /// To be called when the line has proved itself; one that merely opens and fails again goes on being slowed down.
    void reset() { m_next = first; }

private:
    std::chrono::milliseconds m_next = first;
};
