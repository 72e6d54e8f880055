#include "config/CellLimits.h"

namespace {

/// A limit that is out of its range would stop the cell, or protect nothing.
class LimitsReader
{
public:
    explicit LimitsReader(const QJsonObject& object)
        : m_object(object)
    {
    }
    void setting(const ConfigKey& key, int& value, int fallback, SettingRange range)
    {
        const QJsonValue stored = m_object.value(key);
        value = stored.toInt(fallback);
        const bool good = stored.isUndefined() || (stored.isDouble() && value >= range.low && value <= range.high);
        if (good)
            return;
        value = fallback;
        qWarning("%s: %s is not a whole number from %d to %d; %d is used", qUtf8Printable(CellLimits::path()),
                 qUtf8Printable(key), range.low, range.high, fallback);
    }

private:
    const QJsonObject& m_object;
};

} // namespace

void CellLimits::load()
{
    const HomeFiles::JsonRead file = HomeFiles::readJson(path());
    LimitsReader reader(file.object);
    visit(reader);
}
