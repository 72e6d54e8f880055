#include "host/AuditLine.h"

#include "db/log/LogLine.h"

void logAudit(const AuditChange& change, const QString& user)
{
    SystemLog::information(
        QStringLiteral("设置更改[%1]:%2 → %3,用户:%4")
            .arg(change.name, change.before, change.after, user.isEmpty() ? QStringLiteral("无") : user));
}
