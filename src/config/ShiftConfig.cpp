#include "config/ShiftConfig.h"

QStringList ShiftConfig::load(const QString& home, QString* error)
{
    const QString path = home + QLatin1String(fileName);
    const HomeFiles::JsonRead file = HomeFiles::readJson(path);
    if (file.state == HomeFiles::JsonRead::Damaged && error)
        *error = file.error;
    JsonReadVisitor reader(file.object, path);
    visit(reader);
    return reader.problems();
}

void ShiftConfig::load()
{
    const QStringList problems = load(platform::home());
    for (const QString& problem : problems)
        qWarning("%s", qUtf8Printable(problem));
}
