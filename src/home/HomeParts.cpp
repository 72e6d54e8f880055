#include "home/HomeParts.h"

#include <QDir>
#include <QDirIterator>
#include <QVector>

#include <algorithm>

namespace HomeParts {

namespace {

struct Rule
{
    const char* start;
    int parts;
};

/// The first that a path begins with counts.
constexpr Rule rules[] = {{"user/licence", 0},
                          {"user/home.json", 0},
                          {"user/forward.json", 0}, // who this cell is, and what it has told its plant
                          {"user/solutions/", Models},
                          {"user/calibrations.jsonl", Calibration},
                          {"user/StandImage_", Calibration},
                          {"user/globalConfig.json", Settings | Calibration},
                          {"user/", Settings},
                          {"language/", Settings},
                          {"showImg.ini", Settings},
                          {"DBFiles/Images/", Pictures},
                          {"DBFiles/SrcImages/", Pictures},
                          {"DBFiles/wheelhubzd.db", Models},
                          {"DBFiles/", Results},
                          {"dbLog.db", Results}};

bool isPassing(const QString& path)
{
    static const char* const ends[] = {"-wal", "-shm", "-journal", ".lock"};
    return path.contains(QLatin1String(".damaged-")) ||
           std::any_of(std::begin(ends), std::end(ends),
                       [&](const char* end) { return path.endsWith(QLatin1String(end)); });
}

} // namespace

QVector<Part> all()
{
    return {Settings, Models, Calibration, Results, Pictures};
}

QString name(Part part)
{
    switch (part) {
    case Settings:
        return QStringLiteral("settings");
    case Models:
        return QStringLiteral("models");
    case Calibration:
        return QStringLiteral("calibration");
    case Results:
        return QStringLiteral("results");
    case Pictures:
        break;
    }
    return QStringLiteral("pictures");
}

QStringList names(Set parts)
{
    QStringList names;
    for (const Part part : all()) {
        if (parts.testFlag(part))
            names.append(name(part));
    }
    return names;
}

std::optional<Set> parse(const QStringList& names)
{
    Set parts;
    for (const QString& given : names) {
        const QVector<Part> known = all();
        const auto part = std::find_if(known.begin(), known.end(), [&](Part one) { return name(one) == given; });
        if (part == known.end())
            return {};
        parts |= *part;
    }
    return parts;
}

Set of(const QString& path)
{
    if (isPassing(path))
        return {};
    for (const Rule& rule : rules) {
        if (path.startsWith(QLatin1String(rule.start)))
            return Set(QFlag(rule.parts));
    }
    return {};
}

QStringList files(const QString& home, Set parts)
{
    QStringList found;
    const QDir root(home);
    const auto take = [&](const QFileInfo& file) {
        const QString path = root.relativeFilePath(file.filePath());
        if (file.isFile() && !file.isSymLink() && (of(path) & parts))
            found.append(path);
    };
    for (const char* folder : {"user", "language", "DBFiles"}) {
        QDirIterator walk(root.filePath(QLatin1String(folder)), QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                          QDirIterator::Subdirectories);
        while (walk.hasNext())
            take(QFileInfo(walk.next()));
    }
    for (const char* file : {"dbLog.db", "showImg.ini"})
        take(QFileInfo(root.filePath(QLatin1String(file))));
    found.sort();
    return found;
}

bool isPlain(const QString& path)
{
    return QDir::isRelativePath(path) && QDir::cleanPath(path) == path && !path.startsWith(QLatin1String("..")) &&
           !path.contains(QLatin1Char('\\')) && !path.contains(QLatin1Char(':')) && of(path);
}

} // namespace HomeParts
