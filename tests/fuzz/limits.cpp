#include "Harness.h"
#include "config/AccessPolicy.h"
#include "config/CellLimits.h"
#include "config/ConfigVisitors.h"

#include <QJsonDocument>

namespace {

struct RangeCheck
{
    static void setting(const ConfigKey&, int value, int, SettingRange range)
    {
        fuzz::require(value >= range.low && value <= range.high, "a limit stays in its range");
    }
};

} // namespace

/// Both of the small files, each from the same text.
FUZZ_TARGET(limits)
{
    fuzz::homeFile("/user/limits.json", bytes);
    fuzz::homeFile("/user/access.json", bytes);
    CellLimits limits;
    limits.load();
    RangeCheck check;
    limits.visit(check);
    AccessPolicy policy;
    policy.load();
    const QJsonValue plain = QJsonDocument::fromJson(bytes).object().value(QStringLiteral("engineer_only"));
    fuzz::require(policy.engineerOnly == plain.toBool(true), "what does not plainly allow restricts");
}
