#include "home/Backup.h"
#include "home/DatabaseCopy.h"
#include "home/HomeVersion.h"
#include "home/ZipArchive.h"
#include "platform/System.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSysInfo>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace Backup {

namespace {

struct MakeTr
{
    Q_DECLARE_TR_FUNCTIONS(Backup)
};

/// A backup in the making.
class Writer
{
public:
    Writer(QString home, QString file, const Progress& progress)
        : m_home(std::move(home))
        , m_file(std::move(file))
        , m_progress(progress)
        , m_copies(QFileInfo(m_file).absolutePath() + QStringLiteral("/.valvecell-backup-XXXXXX"))
    {
    }

    QString write(HomeParts::Set parts, BackupManifest* manifest);

private:
    QString addFiles(zip_t* archive, const QStringList& paths);
    /// The file to read in place of one of the home: of a database a copy.
    QString sourceOf(const QString& path, QString* error);
    QByteArray manifestJson();
    QString close(zip_t* archive);

    const QString m_home;
    const QString m_file;
    const Progress& m_progress;
    const QTemporaryDir m_copies; ///< beside the backup: there is the room for them
    std::vector<std::unique_ptr<ZipFeed>> m_feeds;
    QStringList m_paths; ///< of the feeds
    BackupManifest* m_manifest = nullptr;
    qint64 m_done = 0;
    qint64 m_total = 0;
    bool m_givenUp = false;
};

bool isPacked(const QString& path)
{
    return path.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive) ||
           path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive);
}

QString Writer::sourceOf(const QString& path, QString* error)
{
    const QString original = m_home + QLatin1Char('/') + path;
    if (!DatabaseCopy::isDatabase(original))
        return original;
    const QString copy = m_copies.filePath(QString::number(m_feeds.size()));
    return DatabaseCopy::make(original, copy, error) ? copy : QString();
}

QString Writer::addFiles(zip_t* archive, const QStringList& paths)
{
    const auto read = [this](qint64 bytes) {
        m_done += bytes;
        m_givenUp = m_progress && !m_progress(qMin(m_done, m_total), m_total);
        return !m_givenUp;
    };
    for (const QString& path : paths) {
        QString error;
        const QString source = sourceOf(path, &error);
        if (source.isEmpty())
            return error;
        m_total += QFileInfo(source).size();
        m_feeds.push_back(std::make_unique<ZipFeed>(source, read));
        m_paths.append(path);
    }
    m_feeds.push_back(std::make_unique<ZipFeed>([this] { return manifestJson(); }));
    for (size_t i = 0; i < m_feeds.size(); ++i) {
        const bool last = i + 1 == m_feeds.size();
        const QString name = last ? QString::fromLatin1(BackupManifest::fileName) : m_paths[int(i)];
        zip_source_t* const source = m_feeds[i]->source(archive);
        const zip_int64_t index = zip_file_add(archive, name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(source);
            return QString::fromUtf8(zip_strerror(archive));
        }
        zip_set_file_compression(archive, zip_uint64_t(index), isPacked(name) ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 1);
    }
    return {};
}

/// Asked for when all else is read: its turn is the last.
QByteArray Writer::manifestJson()
{
    for (int i = 0; i < m_paths.size(); ++i) {
        const ZipFeed& feed = *m_feeds[size_t(i)];
        if (!feed.isGone())
            m_manifest->files.append({m_paths[i], feed.size(), feed.sha256()});
    }
    return m_manifest->toJson();
}

QString Writer::close(zip_t* archive)
{
    if (zip_close(archive) == 0)
        return {};
    QString error = QString::fromUtf8(zip_strerror(archive));
    for (const auto& feed : m_feeds) {
        if (!feed->error().isEmpty())
            error = feed->error();
    }
    zip_discard(archive);
    return m_givenUp ? MakeTr::tr("已取消") : error;
}

QString Writer::write(HomeParts::Set parts, BackupManifest* manifest)
{
    m_manifest = manifest;
    *manifest = {QStringLiteral(VALVECELL_VERSION),
                 QSysInfo::machineHostName(),
                 QDateTime::currentDateTime(),
                 HomeVersion::of(m_home),
                 parts,
                 {}};
    const QStringList paths = HomeParts::files(m_home, parts);
    if (paths.isEmpty())
        return MakeTr::tr("%1 中没有可备份的文件").arg(QDir::toNativeSeparators(m_home));
    if (!m_copies.isValid())
        return MakeTr::tr("无法写入 %1：%2").arg(QDir::toNativeSeparators(m_file), m_copies.errorString());
    const QString part = m_file + QStringLiteral(".part");
    int code = 0;
    zip_t* const archive = zip_open(platform::nameForLibraries(part).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (!archive)
        return MakeTr::tr("无法写入 %1：%2").arg(QDir::toNativeSeparators(m_file), qt_error_string());
    QString error = addFiles(archive, paths);
    if (error.isEmpty())
        error = close(archive);
    else
        zip_discard(archive);
    if (error.isEmpty())
        error = platform::flushFile(part) ? platform::replaceFile(part, m_file) : qt_error_string();
    if (!error.isEmpty())
        QFile::remove(part);
    return error.isEmpty() ? QString()
                           : MakeTr::tr("备份 %1 没有完成：%2").arg(QDir::toNativeSeparators(m_file), error);
}

} // namespace

Outcome make(const QString& home, HomeParts::Set parts, const QString& file, const Progress& progress)
{
    Outcome outcome;
    if (HomeVersion::of(home) > HomeVersion::current)
        outcome.error = HomeVersion::newerText(home);
    else
        outcome.error = Writer(home, QFileInfo(file).absoluteFilePath(), progress).write(parts, &outcome.manifest);
    return outcome;
}

} // namespace Backup
