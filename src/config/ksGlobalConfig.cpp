#include "config/ksGlobalConfig.h"

#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

namespace {

QString filePath()
{
    return platform::inHome(QStringLiteral("/user/globalConfig.json"));
}

/// Each problem is a warning of its own; the caller gets them as one text.
void report(const QStringList& lines, QString* target)
{
    for (const QString& line : lines)
        qWarning("%s", qUtf8Printable(line));
    if (target)
        *target = lines.join(QLatin1Char('\n'));
}

} // namespace

ksGlobalConfig::ksGlobalConfig()
{
    DefaultsVisitor defaults;
    visit(defaults);
}

int ksGlobalConfig::stationOfSolution(const QString& solution) const
{
    if (solution.isEmpty())
        return 0;
    return solution == stations[0].solution ? 1 : solution == stations[1].solution ? 2 : 0;
}

int ksGlobalConfig::stationOfCamera(const QString& camKey) const
{
    if (camKey.isEmpty())
        return 0;
    return camKey == stations[0].camKey ? 1 : camKey == stations[1].camKey ? 2 : 0;
}

bool ksGlobalConfig::load(QString* problems)
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(filePath());
    if (read.state == HomeFiles::JsonRead::Damaged)
        report({read.error}, problems);
    if (read.object.isEmpty())
        return read.state != HomeFiles::JsonRead::Damaged;
    JsonReadVisitor visitor(read.object, filePath());
    visit(visitor);
    report(visitor.problems(), problems);
    report(visitor.unknown(), nullptr);
    return visitor.problems().isEmpty();
}

QByteArray ksGlobalConfig::text()
{
    JsonWriteVisitor visitor;
    visit(visitor);
    return visitor.text() + '\n';
}

bool ksGlobalConfig::save(QString* error)
{
    JsonReadVisitor stored(HomeFiles::readJson(filePath()).object, filePath());
    ksGlobalConfig().visit(stored);
    const bool loses = !stored.problems().isEmpty() || !stored.unknown().isEmpty();
    QString reason;
    if (HomeFiles::writeJsonText(filePath(), text(), &reason, loses))
        return true;
    report({reason}, error);
    return false;
}
