#include "config/AccessPolicy.h"

namespace {

/// Reads a file that is there: what it does not plainly allow is restricted.
class RestrictingVisitor
{
public:
    explicit RestrictingVisitor(const QJsonObject& object)
        : m_object(object)
    {
    }
    void setting(const ConfigKey& key, bool& restricted, bool)
    {
        const QJsonValue value = m_object.value(key);
        restricted = value.toBool(true);
        if (!value.isBool())
            qWarning("%s: %s is neither true nor false; taken for true", qUtf8Printable(AccessPolicy::path()),
                     qUtf8Printable(key));
    }

private:
    const QJsonObject& m_object;
};

} // namespace

void AccessPolicy::load()
{
    const HomeFiles::JsonRead file = HomeFiles::readJson(path());
    RestrictingVisitor reader(file.object);
    if (file.state != HomeFiles::JsonRead::Missing)
        HomeFiles::markPresent(path());
    if (file.state == HomeFiles::JsonRead::Missing && !HomeFiles::isGone(path()))
        setDefaults();
    else
        visit(reader);
}

bool AccessPolicy::save(QString* error)
{
    const bool saved = SmallConfig::save(error);
    if (saved)
        HomeFiles::markPresent(path());
    return saved;
}
