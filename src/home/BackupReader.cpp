#include "home/Backup.h"
#include "home/HomeVersion.h"
#include "platform/System.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <memory>
#include <zip.h>

namespace Backup {

namespace {

struct TakeTr
{
    Q_DECLARE_TR_FUNCTIONS(Backup)
};

constexpr qint64 largestManifest = 512 * 1024 * 1024;
constexpr int pieceBytes = 1 << 18;

using Archive = std::unique_ptr<zip_t, void (*)(zip_t*)>;
using Entry = std::unique_ptr<zip_file_t, int (*)(zip_file_t*)>;

/// A backup that is read.
class Reader
{
public:
    explicit Reader(const QString& file)
        : m_file(file)
        , m_archive(nullptr, zip_discard)
    {
    }

    /// Empty, or what is wrong.
    QString open(BackupManifest* manifest);
    /// Reads one file of it, to a file unless that is empty, and compares.
    QString take(const BackupManifest::File& file, const QString& target, const std::function<bool(qint64)>& read);

private:
    QString damaged(const QString& what) const
    {
        return TakeTr::tr("备份 %1 已损坏：%2").arg(QDir::toNativeSeparators(m_file), what);
    }

    const QString m_file;
    Archive m_archive;
};

QString Reader::open(BackupManifest* manifest)
{
    if (!QFileInfo::exists(m_file))
        return TakeTr::tr("没有文件 %1").arg(QDir::toNativeSeparators(m_file));
    int code = 0;
    m_archive.reset(zip_open(platform::nameForLibraries(m_file).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &code));
    if (!m_archive)
        return damaged(TakeTr::tr("不是完整的备份文件"));
    zip_stat_t stat;
    Entry entry(zip_fopen(m_archive.get(), BackupManifest::fileName, 0), zip_fclose);
    if (!entry || zip_stat(m_archive.get(), BackupManifest::fileName, 0, &stat) != 0 || stat.size > largestManifest)
        return damaged(TakeTr::tr("其中没有目录"));
    QByteArray json(int(stat.size), '\0');
    if (zip_fread(entry.get(), json.data(), stat.size) != zip_int64_t(stat.size))
        return damaged(TakeTr::tr("目录不完整"));
    QString error;
    if (!manifest->read(json, &error))
        return damaged(error);
    return manifest->homeVersion > HomeVersion::current ? TakeTr::tr("备份 %1 来自更新的程序版本 %2，请先更新本程序")
                                                              .arg(QDir::toNativeSeparators(m_file), manifest->program)
                                                        : QString();
}

QString Reader::take(const BackupManifest::File& file, const QString& target, const std::function<bool(qint64)>& read)
{
    const Entry entry(zip_fopen(m_archive.get(), file.path.toUtf8().constData(), ZIP_FL_ENC_UTF_8), zip_fclose);
    if (!entry)
        return damaged(TakeTr::tr("缺少 %1").arg(file.path));
    QFile out(target);
    if (!target.isEmpty() && (!QDir().mkpath(QFileInfo(target).path()) || !out.open(QIODevice::WriteOnly)))
        return QStringLiteral("%1: %2").arg(target, out.errorString());
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray piece(pieceBytes, '\0');
    zip_int64_t got = 0;
    qint64 size = 0;
    while ((got = zip_fread(entry.get(), piece.data(), pieceBytes)) > 0 && size <= file.size) {
        hash.addData(piece.constData(), int(got));
        size += got;
        if (out.isOpen() && out.write(piece.constData(), got) != got)
            return QStringLiteral("%1: %2").arg(target, out.errorString());
        if (!read(got))
            return TakeTr::tr("已取消");
    }
    if (got != 0 || size != file.size || hash.result().toHex() != file.sha256)
        return damaged(TakeTr::tr("%1 与校验和不符").arg(file.path));
    const bool kept = !out.isOpen() || (out.flush() && platform::flushFile(target));
    return kept ? QString() : QStringLiteral("%1: %2").arg(target, out.errorString());
}

/// Reads the files of these parts, to below a folder unless it is empty.
Outcome readAll(const QString& file, HomeParts::Set parts, const QString& folder, const Progress& progress)
{
    Outcome outcome;
    Reader reader(file);
    outcome.error = reader.open(&outcome.manifest);
    if (!outcome.isGood())
        return outcome;
    auto& files = outcome.manifest.files;
    files.erase(std::remove_if(files.begin(), files.end(),
                               [&](const BackupManifest::File& one) { return !(HomeParts::of(one.path) & parts); }),
                files.end());
    outcome.manifest.parts &= parts;
    const qint64 total = outcome.manifest.bytes();
    const qint64 freeMiB = folder.isEmpty() ? -1 : platform::freeSpaceMiB(folder);
    if (freeMiB >= 0 && total / (1024 * 1024) > freeMiB)
        outcome.error =
            TakeTr::tr("磁盘空间不足：需要 %1 MiB，剩余 %2 MiB").arg(total / (1024 * 1024) + 1).arg(freeMiB);
    qint64 done = 0;
    const auto read = [&](qint64 bytes) {
        done += bytes;
        return !progress || progress(done, total);
    };
    for (int i = 0; i < files.size() && outcome.isGood(); ++i)
        outcome.error = reader.take(files[i], folder.isEmpty() ? QString() : folder + '/' + files[i].path, read);
    return outcome;
}

} // namespace

Outcome look(const QString& file)
{
    Outcome outcome;
    outcome.error = Reader(file).open(&outcome.manifest);
    return outcome;
}

Outcome extract(const QString& file, HomeParts::Set parts, const QString& folder, const Progress& progress)
{
    Outcome outcome = readAll(file, parts, folder, progress);
    if (outcome.isGood() && outcome.manifest.files.isEmpty())
        outcome.error = TakeTr::tr("备份 %1 中没有所选的内容").arg(QDir::toNativeSeparators(file));
    if (!outcome.isGood())
        QDir(folder).removeRecursively();
    return outcome;
}

Outcome check(const QString& file, const Progress& progress)
{
    return readAll(file, HomeParts::Set(QFlag(HomeParts::everything)), QString(), progress);
}

} // namespace Backup
