#include "config/AccessPolicy.h"

#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

namespace {
const QString kEngineerOnly = QStringLiteral("engineer_only");
} // namespace

QString AccessPolicy::path()
{
    return platform::inHome(QStringLiteral("/user/access.json"));
}

void AccessPolicy::load()
{
    const HomeFiles::JsonRead file = HomeFiles::readJson(path());
    const QJsonValue value = file.object.value(kEngineerOnly);
    const bool absent = file.state == HomeFiles::JsonRead::Missing;
    engineerOnly = !absent && value.toBool(true);
    if (!absent && !value.isBool())
        qWarning("%s: engineer_only is neither true nor false; taken for true", qUtf8Printable(path()));
}

bool AccessPolicy::save(QString* error)
{
    return HomeFiles::writeJson(path(), {{kEngineerOnly, engineerOnly}}, error);
}
