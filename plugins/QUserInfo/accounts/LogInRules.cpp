#include "accounts/LogInRules.h"

#include <valvecell/HomeFiles.h>

#include <algorithm>

namespace {
const auto idleMinutes = QStringLiteral("idle_minutes");
const auto failures = QStringLiteral("failures");
const auto waitUntil = QStringLiteral("wait_until");
constexpr int mostFailures = 7;
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

RetryDelay::RetryDelay(QString path)
    : m_path(std::move(path))
{
    if (m_path.isEmpty())
        return;
    const QJsonObject file = HomeFiles::readJson(m_path).object;
    m_failures = qBound(0, file.value(failures).toInt(), mostFailures);
    const QDateTime until = QDateTime::fromString(file.value(waitUntil).toString(), Qt::ISODate);
    const auto left = std::chrono::seconds(QDateTime::currentDateTimeUtc().secsTo(until));
    if (m_failures > 0 && until.isValid()) // a clock that was set back makes no wait longer
        m_until = Clock::now() + std::clamp(left, std::chrono::seconds(0), waitNow());
}

std::chrono::seconds RetryDelay::waitNow() const
{
    constexpr std::chrono::seconds longest(60);
    return std::min(std::chrono::seconds(1 << (m_failures - 1)), longest);
}

void RetryDelay::store() const
{
    const QString until =
        QDateTime::currentDateTimeUtc().addSecs(m_failures > 0 ? waitNow().count() : 0).toString(Qt::ISODate);
    QString error;
    if (!m_path.isEmpty() && !HomeFiles::writeJson(m_path, {{failures, m_failures}, {waitUntil, until}}, &error))
        qWarning("%s", qUtf8Printable(error));
}

void RetryDelay::failed(Clock::time_point now)
{
    m_failures = std::min(m_failures + 1, mostFailures);
    m_until = now + waitNow();
    store();
}

void RetryDelay::succeeded()
{
    if (m_failures == 0)
        return;
    m_failures = 0;
    m_until = {};
    store();
}

std::chrono::milliseconds RetryDelay::left(Clock::time_point now) const
{
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(m_until - now), std::chrono::milliseconds(0));
}
