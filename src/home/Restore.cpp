#include "home/Restore.h"

#include "home/HomeVersion.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>

namespace Restore {

namespace {

struct RestoreTr
{
    Q_DECLARE_TR_FUNCTIONS(Backup)
};

QString folderOf(const QString& home)
{
    return home + QStringLiteral("/restore.new");
}

/// Written when all is staged: what is to be done, and how far it is.
QString planOf(const QString& home)
{
    return folderOf(home) + QStringLiteral("/plan.json");
}

QString stagedOf(const QString& home)
{
    return folderOf(home) + QStringLiteral("/files");
}

QString failed(const QString& path)
{
    return RestoreTr::tr("恢复备份时无法移动 %1；重新启动后会继续").arg(QDir::toNativeSeparators(path));
}

bool moveFile(const QString& from, const QString& to)
{
    return QDir().mkpath(QFileInfo(to).path()) && (!QFile::exists(to) || QFile::remove(to)) && QFile::rename(from, to);
}

/// Results that are replaced take their pictures' names with them, but a picture harms nobody: those stay.
QString setAside(const QString& home, const QString& kept, HomeParts::Set parts)
{
    const QStringList present = HomeParts::files(home, parts & ~HomeParts::Set(HomeParts::Pictures));
    for (const QString& path : present) {
        // A database's companions go with it: they would be taken for those of the one that comes.
        for (const char* end : {"-wal", "-shm", "-journal", ""}) {
            const QString one = path + QLatin1String(end);
            if (QFile::exists(home + '/' + one) && !moveFile(home + '/' + one, kept + '/' + one))
                return failed(home + '/' + one);
        }
    }
    return {};
}

QString putInPlace(const QString& home, const QJsonArray& paths)
{
    for (const QJsonValue& path : paths) {
        const QString staged = stagedOf(home) + '/' + path.toString();
        const QString target = home + '/' + path.toString();
        if (QFile::exists(staged) && !moveFile(staged, target))
            return failed(target);
    }
    return {};
}

} // namespace

Backup::Outcome stage(const QString& home, HomeParts::Set parts, const QString& file, const Backup::Progress& progress)
{
    if (HomeFiles::readJson(planOf(home)).object["aside"].toBool()) {
        Backup::Outcome begun;
        begun.error = RestoreTr::tr("上一次恢复尚未完成，请先重新启动程序");
        return begun;
    }
    drop(home);
    QDir().mkpath(home);
    Backup::Outcome outcome = Backup::extract(file, parts, stagedOf(home), progress);
    QJsonArray paths;
    for (const BackupManifest::File& one : qAsConst(outcome.manifest.files))
        paths.append(one.path);
    const QString kept =
        QStringLiteral("restore.old-") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    if (outcome.isGood())
        HomeFiles::writeJson(planOf(home),
                             {{"paths", paths},
                              {"parts", QJsonArray::fromStringList(HomeParts::names(outcome.manifest.parts))},
                              {"kept", kept},
                              {"version", outcome.manifest.homeVersion}},
                             &outcome.error);
    if (!outcome.isGood())
        drop(home);
    return outcome;
}

bool isPending(const QString& home)
{
    return QFile::exists(planOf(home));
}

void drop(const QString& home)
{
    QDir(folderOf(home)).removeRecursively();
}

Outcome finish(const QString& home)
{
    QJsonObject plan = HomeFiles::readJson(planOf(home)).object;
    if (plan.isEmpty()) {
        drop(home); // staging that was interrupted
        return {};
    }
    Outcome outcome;
    const QString kept = home + '/' + plan["kept"].toString();
    if (!plan["aside"].toBool()) {
        const auto parts = HomeParts::parse(plan["parts"].toVariant().toStringList()).value_or(HomeParts::Set());
        outcome.error = setAside(home, kept, parts);
        plan["aside"] = true;
        if (outcome.error.isEmpty())
            HomeFiles::writeJson(planOf(home), plan, &outcome.error);
    }
    if (outcome.error.isEmpty())
        outcome.error = putInPlace(home, plan["paths"].toArray());
    if (outcome.error.isEmpty())
        HomeVersion::record(home, qMin(HomeVersion::of(home), plan["version"].toInt()), &outcome.error);
    if (outcome.error.isEmpty())
        drop(home);
    outcome.kept = QFile::exists(kept) ? kept : QString();
    return outcome;
}

} // namespace Restore
