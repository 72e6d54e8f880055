#include "guided/teaching/ArchivePictures.h"

#include "db/archive/ImageArchive.h"

#include <QDir>
#include <QMap>

#include <algorithm>

namespace {

/// Names of an image file begin with its time; folders are models.
QStringList latestOfDay(const QString& folder)
{
    QMap<QString, QString> byTime;
    QStringList folders{folder};
    const QStringList models = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString& model : models)
        folders << folder + QLatin1Char('/') + model;
    for (const QString& each : qAsConst(folders)) {
        const QStringList files = QDir(each).entryList({QStringLiteral("*.jpg")}, QDir::Files | QDir::NoSymLinks);
        for (const QString& file : files)
            byTime.insert(file + each, each + QLatin1Char('/') + file);
    }
    QStringList paths = byTime.values();
    std::reverse(paths.begin(), paths.end());
    return paths;
}

} // namespace

QStringList ArchivePictures::latest(const QString& home, int station, int most)
{
    const QDir root(home + ImageArchive::folderOf(ImageArchive::Source));
    QStringList days = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::Name);
    QStringList found;
    while (!days.isEmpty() && found.size() < most)
        found += latestOfDay(root.filePath(QStringLiteral("%1/Station%2").arg(days.takeLast()).arg(station)));
    return found.mid(0, most);
}
