#include "results/export/PictureExport.h"

#include "db/PartTable.h"
#include "platform/System.h"
#include "results/export/ExportProgress.h"
#include "results/export/WholeFile.h"
#include "results/parts/PartTexts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>

#include <memory>
#include <zip.h>

namespace {

constexpr int attempts = 3; // of an archive, when a cleaner deletes a picture meanwhile

/// Without what a file's name must not have anywhere.
QString plain(QString text)
{
    static const QRegularExpression special(QStringLiteral("[\\\\/:*?\"<>|\\x00-\\x1f]"));
    return text.replace(special, QStringLiteral("-")).trimmed();
}

QString stemOf(const PartRow& row)
{
    const QString time = PartTable::timeOf(row.wall).toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss.zzz"));
    return QStringList{time, PartTexts::station(row.part.station), plain(row.part.model),
                       PartTexts::outcome(row.part.outcome)}
        .join(QLatin1Char('_'));
}

QString freeName(const QString& stem, const QString& suffix, QSet<QString>& taken)
{
    QString name = stem + QLatin1Char('.') + suffix;
    for (int i = 2; taken.contains(name.toLower()); ++i) // there are file systems that do not tell A from a
        name = QStringLiteral("%1_%2.%3").arg(stem).arg(i).arg(suffix);
    taken.insert(name.toLower());
    return name;
}

QString freeFolder(const QString& path)
{
    QString name = path;
    for (int i = 2; QFileInfo::exists(name); ++i)
        name = QStringLiteral("%1 (%2)").arg(path).arg(i);
    return name;
}

QString textOf(zip_error_t* error)
{
    return QString::fromUtf8(zip_error_strerror(error));
}

struct Discard
{
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, Discard>;

} // namespace

bool PictureExport::list(QVector<Picture>& pictures, ExportOutcome& outcome, ExportProgress& progress) const
{
    PartReader reader(home);
    if (!reader.open()) {
        outcome.error = reader.error();
        return false;
    }
    QSet<QString> names;
    const auto take = [&](const PartRow& row) {
        for (const QString& below : {row.resultImage, row.part.sourceImage}) {
            const QFileInfo file(home + below);
            if (!below.isEmpty() && file.isFile() && file.isReadable()) {
                pictures.append({file.filePath(), freeName(stemOf(row), file.suffix(), names)});
                return !progress.isCancelled();
            }
        }
        ++outcome.missing;
        return !progress.isCancelled();
    };
    if (!reader.each(filter, PartReader::Time, Qt::AscendingOrder, take))
        outcome.error = reader.error();
    else if (pictures.isEmpty() && !progress.isCancelled())
        outcome.error = tr("所选的工件都没有图片（缺少 %1 张）").arg(outcome.missing);
    return outcome.error.isEmpty() && !progress.isCancelled();
}

/// Pictures are compressed already, and go in as they are.
ExportOutcome PictureExport::toZip(const QString& path, ExportProgress& progress) const
{
    ExportOutcome outcome;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        outcome = {};
        QVector<Picture> pictures;
        if (!list(pictures, outcome, progress))
            return outcome;
        WholeFile file(path);
        int code = 0;
        Archive archive(
            zip_open(platform::nameForLibraries(file.aside()).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code));
        if (!archive) {
            zip_error_t error;
            zip_error_init_with_code(&error, code);
            return ExportOutcome::failed(tr("不能写入 %1：%2").arg(path, textOf(&error)));
        }
        for (const Picture& picture : qAsConst(pictures)) {
            zip_source_t* const source =
                zip_source_file(archive.get(), platform::nameForLibraries(picture.from), 0, -1);
            const zip_int64_t at = zip_file_add(archive.get(), picture.name.toUtf8(), source, ZIP_FL_ENC_UTF_8);
            if (at < 0)
                zip_source_free(source);
            else
                zip_set_file_compression(archive.get(), zip_uint64_t(at), ZIP_CM_STORE, 0);
        }
        zip_register_progress_callback_with_state(
            archive.get(), 0.01,
            [](zip_t*, double done, void* state) { static_cast<ExportProgress*>(state)->set(qint64(done * 100), 100); },
            nullptr, &progress);
        zip_register_cancel_callback_with_state(
            archive.get(), [](zip_t*, void* state) { return int(static_cast<ExportProgress*>(state)->isCancelled()); },
            nullptr, &progress);
        if (zip_close(archive.get()) == 0) {
            archive.release();
            const QString reason = file.commit();
            if (!reason.isEmpty())
                return ExportOutcome::failed(tr("不能写入 %1：%2").arg(path, reason));
            outcome.path = path;
            outcome.written = pictures.size();
            return outcome;
        }
        if (progress.isCancelled())
            return {};
        outcome = ExportOutcome::failed(tr("不能写入 %1：%2").arg(path, textOf(zip_get_error(archive.get()))));
        if (zip_error_system_type(zip_get_error(archive.get())) == ZIP_ET_SYS &&
            zip_error_code_system(zip_get_error(archive.get())) != ENOENT)
            return outcome;
    }
    return outcome;
}

ExportOutcome PictureExport::toFolder(const QString& path, ExportProgress& progress) const
{
    ExportOutcome outcome;
    QVector<Picture> pictures;
    if (!list(pictures, outcome, progress))
        return outcome;
    const QString whole = freeFolder(path);
    const QString aside = freeFolder(whole + QStringLiteral(".part"));
    QString error;
    if (!QDir().mkpath(aside))
        error = tr("不能建立文件夹 %1").arg(aside);
    for (int i = 0; error.isEmpty() && i < pictures.size() && !progress.isCancelled(); ++i) {
        QFile file(pictures.at(i).from);
        if (file.copy(aside + QLatin1Char('/') + pictures.at(i).name))
            ++outcome.written;
        else if (!file.exists())
            ++outcome.missing;
        else
            error = tr("不能写入 %1：%2").arg(aside + QLatin1Char('/') + pictures.at(i).name, file.errorString());
        progress.set(i + 1, pictures.size());
    }
    if (error.isEmpty() && !progress.isCancelled() && QDir().rename(aside, whole)) {
        outcome.path = whole;
        return outcome;
    }
    QDir(aside).removeRecursively();
    return progress.isCancelled() ? ExportOutcome()
                                  : ExportOutcome::failed(error.isEmpty() ? tr("不能建立文件夹 %1").arg(whole) : error);
}
