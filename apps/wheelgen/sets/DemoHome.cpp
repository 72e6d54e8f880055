#include "DemoHome.h"

#include "WheelSet.h"

#include <valvecell/CameraCodes.h>
#include <valvecell/HomeFiles.h>

#include <QJsonArray>
#include <QSettings>

namespace {

QString solutionOf(int station)
{
    return QStringLiteral("工位%1").arg(station);
}

QString cameraKey(int station)
{
    return QStringLiteral("cam%1").arg(station);
}

QString imageFolder(int station)
{
    return QStringLiteral("images/%1").arg(station);
}

/// Each station shows other designs, so that a mix-up of the stations shows as well.
QStringList designsOf(int station)
{
    return station == 1 ? QStringList{QStringLiteral("five"), QStringLiteral("six"), QStringLiteral("twin"),
                                      QStringLiteral("steel")}
                        : QStringList{QStringLiteral("seven"), QStringLiteral("ten"), QStringLiteral("mesh"),
                                      QStringLiteral("forged")};
}

WheelSetPlan wheelsOf(int station, const DemoPlan& plan)
{
    WheelSetPlan wheels;
    wheels.count = DemoHome::imagesPerStation;
    wheels.seed = 100 + static_cast<quint64>(station);
    wheels.withoutHole = 1.0 / DemoHome::imagesPerStation;
    wheels.designs = designsOf(station);
    wheels.difficulty = wheel::Difficulty::Demo;
    wheels.size = plan.size;
    wheels.jobs = plan.jobs;
    return wheels;
}

/// The stations differ in offsets and in the order of X and Y, so that a mix-up of the two shows in the answers.
QJsonObject globalConfig(const DemoPlan& plan)
{
    QJsonObject config{{QStringLiteral("onlineMode"), true},
                       {QStringLiteral("use_clear_protect"), true},
                       {QStringLiteral("trigerFilter"), 50},
                       {QStringLiteral("use4pointstand"), false}};
    for (int station : {1, 2}) {
        const auto key = [&](const char* name) {
            return QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(station);
        };
        const auto* design = wheel::findDesign(designsOf(station).first().toStdString());
        config[key("station_camkey")] = cameraKey(station);
        config[key("station_solution")] = solutionOf(station);
        config[key("station_runModel")] = QString::fromStdString(design->name);
        config[key("station_xytrans")] = station == 2;
        config[key("StationScale")] = WheelSet::mmPerPx(plan.size);
        config[key("StationXOffset")] = station == 1 ? 12.5 : 150.75;
        config[key("StationYOffset")] = station == 1 ? 8.25 : 20.5;
    }
    return config;
}

/// Both stations know all designs, and the engine's built-in model under 99.
QJsonObject plcIndex()
{
    QJsonArray table;
    for (const auto& design : wheel::designs())
        table.append(QJsonObject{{QStringLiteral("Name"), QString::fromStdString(design.name)},
                                 {QStringLiteral("PlcIndex"), design.plcIndex}});
    table.append(QJsonObject{{QStringLiteral("Name"), QStringLiteral("auto")}, {QStringLiteral("PlcIndex"), 99}});
    return {{solutionOf(1), table}, {solutionOf(2), table}};
}

QJsonObject camera(int station, const DemoPlan& plan)
{
    QJsonObject entry{{QStringLiteral("key"), cameraKey(station)}, {QStringLiteral("exposure_ms"), 5}};
    if (plan.network) {
        entry[QStringLiteral("type")] = static_cast<int>(CameraType::Gige);
        entry[QStringLiteral("device")] = DemoHome::cameraAddress(station);
        return entry;
    }
    entry[QStringLiteral("type")] = static_cast<int>(CameraType::Virtual);
    entry[QStringLiteral("folder")] = plan.camerasFrom.isEmpty() ? imageFolder(station) : plan.camerasFrom;
    entry[QStringLiteral("transfer_ms")] = 10;
    return entry;
}

QJsonObject cameras(const DemoPlan& plan)
{
    return {{QStringLiteral("cameras"), QJsonArray{camera(1, plan), camera(2, plan)}}};
}

/// Taught by the design's nominal lengths; the demo's wheels differ from them by up to 3 percent.
QJsonObject model(const wheel::Design& design, cv::Size size)
{
    const double rim = wheel::nominalRimRadius(size);
    QJsonObject parameters = WheelSet::modelParameters({rim, design.face.ring * rim, design.face.hole * rim}, 3);
    parameters[QStringLiteral("name")] = QString::fromStdString(design.name);
    return parameters;
}

class Maker
{
public:
    Maker(const DemoPlan& plan, QStringList* made, QString* error)
        : m_plan(plan)
        , m_made(made)
        , m_error(error)
    {
    }

    bool images(int station)
    {
        const QString folder = imageFolder(station), truth = folder + QStringLiteral("/truth.json");
        if (exists(truth))
            return true;
        if (m_plan.camerasFrom.isEmpty())
            return note(folder, WheelSet::write(path(folder), wheelsOf(station, m_plan), m_error));
        QFile known(m_plan.camerasFrom + QStringLiteral("/truth.json"));
        if (!known.exists())
            return true;
        if (known.open(QIODevice::ReadOnly))
            return note(truth, HomeFiles::writeFile(path(truth), known.readAll(), m_error));
        *m_error = QStringLiteral("%1: %2").arg(known.fileName(), known.errorString());
        return false;
    }

    bool json(const QString& file, const QJsonObject& content)
    {
        return exists(file) || note(file, HomeFiles::writeJson(path(file), content, m_error));
    }

    /// The settings library itself writes this file, so that the port's path is escaped as it will be read.
    bool settings()
    {
        const QString file = QStringLiteral("user/systemConfig.ini");
        const QString port = QStringLiteral("COM/Port"), baud = QStringLiteral("COM/Baute");
        const bool isThere = exists(file);
        QSettings ini(path(file), QSettings::IniFormat);
        ini.setIniCodec("UTF-8");
        if (isThere && (m_plan.port.isEmpty() || ini.value(port) == m_plan.port))
            return true;
        ini.setValue(port, m_plan.port.isEmpty() ? path(QStringLiteral("plc")) : m_plan.port);
        ini.setValue(baud, ini.value(baud, 115200));
        ini.sync();
        if (ini.status() != QSettings::NoError)
            *m_error = QStringLiteral("%1: cannot be written").arg(path(file));
        return note(file, ini.status() == QSettings::NoError);
    }

    bool solution(int station)
    {
        const QString folder = QStringLiteral("user/solutions/%1").arg(solutionOf(station));
        if (!json(folder + QStringLiteral("/solution.json"),
                  {{QStringLiteral("name"), solutionOf(station)}, {QStringLiteral("result"), QStringLiteral("hole")}}))
            return false;
        for (const auto& design : wheel::designs()) {
            const QString name = QString::fromStdString(design.name);
            if (!json(QStringLiteral("%1/%2.model.json").arg(folder, name), model(design, m_plan.size)))
                return false;
        }
        return true;
    }

private:
    QString path(const QString& file) const { return m_plan.home + QLatin1Char('/') + file; }
    bool exists(const QString& file) const { return QFile::exists(path(file)); }

    bool note(const QString& file, bool good)
    {
        if (good)
            m_made->append(file);
        return good;
    }

    const DemoPlan& m_plan;
    QStringList* m_made;
    QString* m_error;
};

/// Writes each file that the home lacks.
bool writeMissing(const DemoPlan& plan, QStringList* made, QString* error)
{
    Maker maker(plan, made, error);
    return maker.images(1) && maker.images(2) &&
           maker.json(QStringLiteral("user/globalConfig.json"), globalConfig(plan)) && maker.settings() &&
           maker.json(QStringLiteral("user/plcIndex.json"), plcIndex()) &&
           maker.json(QStringLiteral("user/camera.json"), cameras(plan)) && maker.solution(1) && maker.solution(2);
}

/// Counts up when a demo home made before would not do any more.
constexpr int currentVersion = 1;

struct Stamp
{
    bool present = false;
    bool current = false; ///< complete, and made by this version
    bool ours = false;    ///< nothing in the home was there before
    QString camerasFrom;
    bool network = false;
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
        return {false, false, !QFile::exists(home + QStringLiteral("/user")), {}, false};
    const QJsonObject& stamp = read.object;
    return {true,
            stamp[QStringLiteral("complete")].toBool() && stamp[QStringLiteral("version")].toInt() == currentVersion,
            stamp[QStringLiteral("ours")].toBool(), stamp[QStringLiteral("cameras_from")].toString(),
            stamp[QStringLiteral("network")].toBool()};
}

bool writeStamp(const DemoPlan& plan, bool ours, bool complete, QString* error)
{
    return HomeFiles::writeJson(stampPath(plan.home),
                                {{QStringLiteral("version"), currentVersion},
                                 {QStringLiteral("complete"), complete},
                                 {QStringLiteral("ours"), ours},
                                 {QStringLiteral("cameras_from"), plan.camerasFrom},
                                 {QStringLiteral("network"), plan.network}},
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

/// Takes away what belongs to an earlier choice of cameras or of their images, so that it is made for the present one.
bool forget(const QString& home, std::initializer_list<const char*> files, QString* error)
{
    for (const char* file : files)
        if (!removeEntry(home + QLatin1Char('/') + QLatin1String(file))) {
            *error = QStringLiteral("%1/%2: cannot be replaced").arg(home, QLatin1String(file));
            return false;
        }
    return true;
}

} // namespace

QString DemoHome::cameraAddress(int station)
{
    return QStringLiteral("127.0.0.%1").arg(station + 1);
}

/// The stamp says incomplete before the first file changes, and complete after the last.
bool DemoHome::make(const DemoPlan& plan, QStringList* made, QString* error)
{
    const Stamp stamp = readStamp(plan.home);
    const bool otherKind = stamp.present && stamp.network != plan.network;
    if (!stamp.ours && (plan.fresh || otherKind || !plan.camerasFrom.isEmpty())) {
        *error = QStringLiteral("%1: holds a home that is no demo; nothing in it is replaced").arg(plan.home);
        return false;
    }
    const bool anew = stamp.present && stamp.ours && (plan.fresh || !stamp.current);
    if (anew && !clear(plan.home, error))
        return false;
    if (!writeStamp(plan, stamp.ours, false, error))
        return false;
    const bool otherImages = stamp.present && stamp.camerasFrom != plan.camerasFrom;
    if ((otherImages || !plan.camerasFrom.isEmpty()) &&
        !forget(plan.home, {"user/camera.json", "images/1/truth.json", "images/2/truth.json"}, error))
        return false;
    if (otherKind && !forget(plan.home, {"user/camera.json"}, error))
        return false;
    return writeMissing(plan, made, error) && writeStamp(plan, stamp.ours, true, error);
}
