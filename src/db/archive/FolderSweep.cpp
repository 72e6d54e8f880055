#include "db/archive/FolderSweep.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <queue>

#include <vector>

namespace FolderSweep {
namespace {

/// So many old files stay: a cell that stood still for long keeps its last images.
constexpr std::size_t fewFiles = 10;
/// One sweep's worth: an archive of months is not emptied at once.
constexpr std::size_t oldestFiles = 600;

struct OldFile
{
    qint64 made = 0; ///< milliseconds since the epoch
    QString path;
    bool operator<(const OldFile& other) const { return made < other.made; }
};

bool isLink(const QFileInfo& entry)
{
    return entry.isSymLink() || entry.isJunction();
}

QDateTime creationTime(const QFileInfo& entry)
{
    const QDateTime birth = entry.birthTime();
    return birth.isValid() ? birth : entry.lastModified();
}

bool mayBeCleaned(const QString& root)
{
    const QDir folder(root);
    return !root.isEmpty() && folder.exists() && !folder.isRoot();
}

/// Calls `visit` with each file below the root, until it answers false.
template <typename Visit>
void walkFiles(const QString& root, Visit visit)
{
    QStringList folders{root};
    while (!folders.isEmpty()) {
        QDirIterator entries(folders.takeLast(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        while (entries.hasNext()) {
            entries.next();
            const QFileInfo entry = entries.fileInfo();
            if (isLink(entry))
                continue;
            if (entry.isDir())
                folders << entry.filePath();
            else if (!visit(entry))
                return;
        }
    }
}

bool isImage(const QString& path)
{
    const QString end = path.right(4).toLower();
    return end == QLatin1String(".jpg") || end == QLatin1String(".bmp") || end == QLatin1String(".png");
}

/// With what is left of an image that a power failure kept from being finished.
bool isArchivedImage(const QString& name)
{
    static const QRegularExpression pattern(
        QStringLiteral("^\\d{4}_\\d\\d_\\d\\d_\\d{9}(_\\d+)?\\.jpg(\\.[A-Za-z]{6})?$"));
    return pattern.match(name).hasMatch();
}

bool isArchivedDay(const QString& name)
{
    return name.size() == 10 && QDate::fromString(name, QStringLiteral("yyyy-MM-dd")).isValid();
}

constexpr QDir::Filters subFolders = QDir::Dirs | QDir::Hidden | QDir::System | QDir::NoSymLinks | QDir::NoDotAndDotDot;

/// The archive's images in the folder, then the folder itself if that was all. rmdir() refuses one that is not empty.
void deleteImages(const QString& path, const Stop& stop)
{
    QDirIterator files(path, QDir::Files | QDir::Hidden | QDir::System | QDir::NoSymLinks);
    while (files.hasNext() && !stop()) {
        files.next();
        if (isArchivedImage(files.fileName()))
            QFile::remove(files.filePath());
    }
    QDir().rmdir(path);
}

void deleteDay(const QString& day, const Stop& stop)
{
    for (const char* station : {"/Station1", "/Station2"}) {
        const QString path = day + QLatin1String(station);
        if (isLink(QFileInfo(path)))
            continue;
        const QFileInfoList models = QDir(path).entryInfoList(subFolders);
        for (const QFileInfo& model : models) {
            if (!stop() && !isLink(model))
                deleteImages(model.filePath(), stop);
        }
        deleteImages(path, stop);
    }
    QDir().rmdir(day);
}

} // namespace

QDateTime creationTime(const QString& path)
{
    return creationTime(QFileInfo(path));
}

/// Lists first and deletes then: whether there are more than a few is known only at the end.
int deleteFilesBefore(const QString& root, const QDateTime& time, const Stop& stop)
{
    if (!mayBeCleaned(root))
        return 0;
    std::vector<QString> old;
    walkFiles(root, [&](const QFileInfo& file) {
        if (creationTime(file) < time)
            old.push_back(file.filePath());
        return !stop();
    });
    int deleted = 0;
    for (const QString& path : old) {
        if (stop() || old.size() <= fewFiles)
            break;
        deleted += QFile::remove(path) ? 1 : 0;
    }
    return deleted;
}

int deleteOldestImages(const QString& root, const Stop& stop)
{
    if (!mayBeCleaned(root))
        return 0;
    std::priority_queue<OldFile> oldest; // the youngest of them on top
    walkFiles(root, [&](const QFileInfo& file) {
        oldest.push({creationTime(file).toMSecsSinceEpoch(), file.filePath()});
        if (oldest.size() > oldestFiles)
            oldest.pop();
        return !stop();
    });
    int deleted = 0;
    for (; !oldest.empty() && !stop(); oldest.pop()) {
        if (isImage(oldest.top().path))
            deleted += QFile::remove(oldest.top().path) ? 1 : 0;
    }
    return deleted;
}

int deleteFoldersBefore(const QString& root, const QDateTime& time, const Stop& stop)
{
    if (!mayBeCleaned(root))
        return 0;
    int deleted = 0;
    const QFileInfoList days = QDir(root).entryInfoList(subFolders);
    for (const QFileInfo& day : days) {
        if (stop())
            break;
        if (!isLink(day) && isArchivedDay(day.fileName()) && creationTime(day) < time) {
            deleteDay(day.filePath(), stop);
            deleted += day.dir().exists(day.fileName()) ? 0 : 1;
        }
    }
    return deleted;
}

} // namespace FolderSweep
