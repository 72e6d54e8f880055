#include "accounts/RetryDelay.h"

#include <algorithm>

void RetryDelay::failed(Clock::time_point now)
{
    constexpr std::chrono::seconds longest(60);
    m_failures = std::min(m_failures + 1, 7);
    m_until = now + std::min(std::chrono::seconds(1 << (m_failures - 1)), longest);
}

void RetryDelay::succeeded()
{
    *this = RetryDelay();
}

std::chrono::milliseconds RetryDelay::left(Clock::time_point now) const
{
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(m_until - now), std::chrono::milliseconds(0));
}
