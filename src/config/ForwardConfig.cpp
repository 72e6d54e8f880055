#include "config/ForwardConfig.h"

QStringList ForwardConfig::load(const QString& home)
{
    const QString path = home + QLatin1String(fileName);
    const HomeFiles::JsonRead file = HomeFiles::readJson(path);
    JsonReadVisitor reader(file.object, path);
    visit(reader);
    return reader.problems();
}

void ForwardConfig::load()
{
    const QStringList problems = load(platform::home());
    for (const QString& problem : problems)
        qWarning("%s", qUtf8Printable(problem));
}
