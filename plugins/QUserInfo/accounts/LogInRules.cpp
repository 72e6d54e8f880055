#include "accounts/LogInRules.h"

#include <valvecell/HomeFiles.h>

#include <algorithm>

namespace {
const auto idleMinutes = QStringLiteral("idle_minutes");
} // namespace

LogInRules::LogInRules(QString path)
    : m_path(std::move(path))
{
    load();
}

void LogInRules::load()
{
    const auto file = HomeFiles::readJson(m_path);
    const int minutes = file.object.value(idleMinutes).toInt(0);
    const bool right = minutes >= 0 && minutes <= maxIdleMinutes;
    if (file.state == HomeFiles::JsonRead::Damaged || !right)
        qWarning("%s: no rules for the log-in; the defaults count", qUtf8Printable(m_path));
    m_idleLimit = std::chrono::minutes(right ? minutes : 0);
}

bool LogInRules::setIdleLimit(std::chrono::minutes limit, QString* error)
{
    if (!HomeFiles::writeJson(m_path, {{idleMinutes, int(limit.count())}}, error))
        return false;
    m_idleLimit = limit;
    return true;
}

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
