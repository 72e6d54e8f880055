#include "DemoHome.h"

#include "DemoFiles.h"

#include <valvecell/HomeFiles.h>

namespace {

/// Counts up when a demo home made before would not do any more.
constexpr int kVersion = 1;

struct Stamp
{
    bool present = false;
    bool current = false; ///< complete, and made by this version
    bool ours = false;    ///< nothing in the home was there before
    QString camerasFrom;
};

QString stampPath(const QString& home)
{
    return home + QStringLiteral("/demo.json");
}

/// A home without a stamp is ours only while it is empty.
Stamp readStamp(const QString& home)
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(stampPath(home));
    if (read.state != HomeFiles::JsonRead::Good)
        return {false, false, !QFile::exists(home + QStringLiteral("/user")), {}};
    const QJsonObject& stamp = read.object;
    return {true, stamp[QStringLiteral("complete")].toBool() && stamp[QStringLiteral("version")].toInt() == kVersion,
            stamp[QStringLiteral("ours")].toBool(), stamp[QStringLiteral("cameras_from")].toString()};
}

bool writeStamp(const DemoPlan& plan, bool ours, bool complete, QString* error)
{
    return HomeFiles::writeJson(stampPath(plan.home),
                                {{QStringLiteral("version"), kVersion},
                                 {QStringLiteral("complete"), complete},
                                 {QStringLiteral("ours"), ours},
                                 {QStringLiteral("cameras_from"), plan.camerasFrom}},
                                error);
}

/// Removes a file, a folder with its content or a link; what a link points to stays.
bool removeEntry(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir() && !info.isSymLink())
        return QDir(path).removeRecursively();
    return (!info.exists() && !info.isSymLink()) || QFile::remove(path);
}

/// Clears a home of ours of what this program and the cell keep in it.
bool clear(const QString& home, QString* error)
{
    QStringList entries{QStringLiteral("user"), QStringLiteral("images"), QStringLiteral("DBFiles"),
                        QStringLiteral("showImg.ini")};
    entries += QDir(home).entryList({QStringLiteral("*.db"), QStringLiteral("*.db-*")}, QDir::Files);
    for (const QString& entry : entries)
        if (!removeEntry(home + QLatin1Char('/') + entry)) {
            *error = QStringLiteral("%1/%2: cannot be removed").arg(home, entry);
            return false;
        }
    return true;
}

/// Takes away what belongs to the images of an earlier choice of folder, so that it is made for the present one.
bool forgetCameras(const QString& home, QString* error)
{
    for (const char* file : {"user/camera.json", "images/1/truth.json", "images/2/truth.json"})
        if (!removeEntry(home + QLatin1Char('/') + QLatin1String(file))) {
            *error = QStringLiteral("%1/%2: cannot be replaced").arg(home, QLatin1String(file));
            return false;
        }
    return true;
}

} // namespace

/// The stamp says incomplete before the first file changes, and complete after the last.
bool DemoHome::make(const DemoPlan& plan, QStringList* made, QString* error)
{
    const Stamp stamp = readStamp(plan.home);
    if (!stamp.ours && (plan.fresh || !plan.camerasFrom.isEmpty())) {
        *error = QStringLiteral("%1: holds a home that is no demo; nothing in it is replaced").arg(plan.home);
        return false;
    }
    const bool anew = stamp.present && stamp.ours && (plan.fresh || !stamp.current);
    if (anew && !clear(plan.home, error))
        return false;
    if (!writeStamp(plan, stamp.ours, false, error))
        return false;
    const bool otherImages = stamp.present && stamp.camerasFrom != plan.camerasFrom;
    if ((otherImages || !plan.camerasFrom.isEmpty()) && !forgetCameras(plan.home, error))
        return false;
    return DemoFiles::writeMissing(plan, made, error) && writeStamp(plan, stamp.ours, true, error);
}
