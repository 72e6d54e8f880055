#include "host/AccessGate.h"

#include "config/AccessPolicy.h"

#include <QStringList>

namespace {

bool isEngineering(const QString& action)
{
    static const QStringList names{QStringLiteral("actionSetting"), QStringLiteral("actionManage"),
                                   QStringLiteral("actionSystem"), QStringLiteral("actionStandard"),
                                   QStringLiteral("actionCamera")};
    return names.contains(action);
}

} // namespace

AccessGate::AccessGate(const AccessPolicy& policy)
    : m_policy(policy)
{
}

bool AccessGate::allowsEngineering() const
{
    return !m_policy.engineerOnly || m_level >= engineerLevel;
}

bool AccessGate::allows(const QString& action) const
{
    return allowsEngineering() || !isEngineering(action);
}
