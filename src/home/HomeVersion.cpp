#include "home/HomeVersion.h"

#include "home/Backup.h"
#include "home/Restore.h"

#include <valvecell/HomeFiles.h>

namespace HomeVersion {

namespace {

struct VersionTr
{
    Q_DECLARE_TR_FUNCTIONS(HomeVersion)
};

const QString versionKey = QStringLiteral("version");

QString fileOf(const QString& home)
{
    return home + QStringLiteral("/user/home.json");
}

constexpr int setUp = HomeParts::Settings | HomeParts::Models | HomeParts::Calibration;

/// The set-up is small; results and pictures are not, and no migration rewrites them.
QString keepCopy(const QString& home, int from)
{
    if (HomeParts::files(home, HomeParts::Set(QFlag(setUp))).isEmpty())
        return {};
    const QString file = QStringLiteral("%1/backups/version%2-%3.vcbackup")
                             .arg(home)
                             .arg(from)
                             .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss")));
    QDir().mkpath(QFileInfo(file).path());
    return Backup::make(home, HomeParts::Set(QFlag(setUp)), file).error;
}

QString migrate(const QString& home, int from, const std::vector<Migration>& migrations)
{
    const QString kept = keepCopy(home, from);
    if (!kept.isEmpty() && !migrations.empty())
        return VersionTr::tr("文件夹 %1 需要升级，但升级前无法备份：%2").arg(QDir::toNativeSeparators(home), kept);
    if (!kept.isEmpty())
        qWarning("%s", qUtf8Printable(kept));
    for (const Migration& migration : migrations) {
        const QString problem = migration.version > from ? migration.run(home) : QString();
        if (!problem.isEmpty())
            return VersionTr::tr("文件夹 %1 升级到版本%2失败：%3")
                .arg(QDir::toNativeSeparators(home))
                .arg(migration.version)
                .arg(problem);
    }
    return {};
}

} // namespace

int of(const QString& home)
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(fileOf(home));
    if (read.state == HomeFiles::JsonRead::Good)
        return read.object.value(versionKey).toInt();
    return HomeParts::files(home, HomeParts::Set(QFlag(setUp | HomeParts::Results))).isEmpty() ? current : 0;
}

bool record(const QString& home, int version, QString* error)
{
    return HomeFiles::writeJson(fileOf(home), {{versionKey, version}}, error);
}

QString newerText(const QString& home)
{
    return VersionTr::tr("文件夹 %1 由更新的程序版本使用过（版本%2，本程序为%3）。请安装更新的程序，或换用其他文件夹。"
                         "其中的文件没有改动。")
        .arg(QDir::toNativeSeparators(home))
        .arg(of(home))
        .arg(current);
}

QString enter(const QString& home, const std::vector<Migration>& migrations)
{
    if (of(home) > current)
        return newerText(home);
    const QString unfinished = Restore::finish(home).error;
    if (!unfinished.isEmpty())
        return unfinished;
    const int version = of(home);
    const bool known = QFile::exists(fileOf(home));
    if (known && version == current)
        return {};
    const QString problem = version < current ? migrate(home, version, migrations) : QString();
    QString error;
    if (problem.isEmpty() && !record(home, current, &error))
        qWarning("%s", qUtf8Printable(error)); // a home that cannot be written is reported where that matters
    return problem;
}

} // namespace HomeVersion
