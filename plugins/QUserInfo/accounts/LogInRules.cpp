#include "accounts/LogInRules.h"

#include <valvecell/HomeFiles.h>

namespace {
const auto kIdleMinutes = QStringLiteral("idle_minutes");
} // namespace

LogInRules::LogInRules(QString path)
    : m_path(std::move(path))
{
    load();
}

void LogInRules::load()
{
    const auto file = HomeFiles::readJson(m_path);
    const int minutes = file.object.value(kIdleMinutes).toInt(0);
    const bool right = minutes >= 0 && minutes <= maxIdleMinutes;
    if (file.state == HomeFiles::JsonRead::Damaged || !right)
        qWarning("%s: no rules for the log-in; the defaults count", qUtf8Printable(m_path));
    m_idleLimit = std::chrono::minutes(right ? minutes : 0);
}

bool LogInRules::setIdleLimit(std::chrono::minutes limit, QString* error)
{
    if (!HomeFiles::writeJson(m_path, {{kIdleMinutes, int(limit.count())}}, error))
        return false;
    m_idleLimit = limit;
    return true;
}
