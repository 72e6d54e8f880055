#include "workflow/AlarmWatch.h"

#include "common/Scheduler.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "db/log/ksLogDB.h"
#include "workflow/AlarmBook.h"
#include "workflow/CellRecords.h"

#include <valvecell/Extension.h>
#include <valvecell/HomeFiles.h>
#include <valvecell/ICameraSettings.h>
#include <valvecell/ICoreCtrl.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialStatus.h>

#include <QDir>
#include <QDirIterator>

namespace {

using DamagedFiles = QVector<QPair<QString, QString>>; ///< name below the folder, and what is wrong

DamagedFiles damagedFiles(const QString& folder)
{
    DamagedFiles damaged;
    QDirIterator files(folder, {QStringLiteral("*.json")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        const HomeFiles::JsonRead read = HomeFiles::readJson(path);
        if (read.state == HomeFiles::JsonRead::Damaged)
            damaged.append({QDir(folder).relativeFilePath(path), read.error});
    }
    return damaged;
}

} // namespace

AlarmWatch::AlarmWatch(const ksGlobalConfig& config, const ksSysConfig& settings, AlarmBook& book, QObject* parent)
    : QObject(parent)
    , m_config(config)
    , m_settings(settings)
    , m_book(book)
{
}

void AlarmWatch::check()
{
    checkPort();
    checkCameras();
    checkLog();
    checkRecords();
    checkSetUp();
}

void AlarmWatch::checkPort()
{
    const auto* port = extensionOf<ISerialStatus>(m_port);
    if (!port)
        return;
    const SerialStatus status = port->status();
    // By the configured name: behind it is no device while the cable is pulled.
    if (status.open || m_lostPort != m_settings.comPort)
        m_book.clear(Alarm::PortLost, m_lostPort);
    if (!status.open) {
        m_lostPort = m_settings.comPort;
        m_book.raise(Alarm::PortLost, m_lostPort, status.lastError);
    }
    checkSilence(status.open);
}

void AlarmWatch::checkSilence(bool portOpen)
{
    const bool listens = portOpen && m_config.onlineMode;
    m_silent = listens ? m_silent + 1 : 0;
    m_book.set(m_silent > silenceSeconds, Alarm::PlcSilent, {}, {});
}

void AlarmWatch::checkCameras()
{
    if (!m_cameras)
        return;
    const QStringList present = m_cameras->cameraKeys();
    checkCameraKeys(present);
    auto* cameras = extensionOf<ICameraSettings>(m_cameras);
    if (!cameras)
        return;
    QStringList wanted;
    for (const StationConfig& station : m_config.stations) {
        if (present.contains(station.camKey))
            wanted.append(station.camKey);
    }
    for (const QString& key : qAsConst(m_watched)) {
        if (!wanted.contains(key)) // the station has another camera now
            m_book.clear(Alarm::CameraLost, key);
    }
    for (const QString& key : qAsConst(wanted)) {
        const QString message = cameras->status(key).message;
        m_book.set(!message.isEmpty(), Alarm::CameraLost, key, message);
    }
    m_watched = wanted;
}

/// An image that came too late is no flood.
void AlarmWatch::checkFlood(const QHash<QString, int>& unasked)
{
    constexpr int manyInASecond = 5;
    for (const QString& key : std::exchange(m_flooding, {})) {
        if (unasked.value(key) < manyInASecond)
            m_book.clear(Alarm::CameraFloods, key);
    }
    for (auto it = unasked.begin(); it != unasked.end(); ++it) {
        if (it.value() >= manyInASecond) {
            m_flooding.append(it.key());
            m_book.raise(Alarm::CameraFloods, it.key(), {});
        }
    }
}

/// A second station that is not in use has neither camera nor solution.
void AlarmWatch::checkCameraKeys(const QStringList& present)
{
    for (int number = 1; number <= 2; ++number) {
        const StationConfig& station = m_config.station(number);
        const bool isUsed = number == 1 || !station.camKey.isEmpty() || !station.solution.isEmpty();
        m_book.set(isUsed && !present.contains(station.camKey), Alarm::CameraUnknown, QString::number(number),
                   station.camKey);
    }
}

void AlarmWatch::checkFiles(const QString& home, const Scheduler& scheduler)
{
    const QString folder = home + QStringLiteral("/user");
    const auto raise = [this](const DamagedFiles& files) {
        for (const auto& [file, problem] : files)
            m_book.raise(Alarm::ConfigDamaged, file, problem);
    };
    if (scheduler.usesThreads())
        m_reading.run([folder] { return damagedFiles(folder); }, raise);
    else
        raise(damagedFiles(folder));
}

void AlarmWatch::checkLog()
{
    const QStringList files = m_log ? m_log->movedAside() : QStringList();
    for (const QString& file : files)
        m_book.raiseCounted(Alarm::DatabaseMovedAside, QFileInfo(file).absoluteFilePath(), 1);
}

void AlarmWatch::checkRecords()
{
    if (!m_records)
        return;
    const CellRecords::Health health = m_records->health();
    // The cleaner keeps the disk at its limit; well below it, it does not keep up. -1: not known (yet).
    const bool low = health.freeMiB >= 0 && health.freeMiB < health.wantedMiB * 9 / 10;
    const bool enough = health.freeMiB < 0 || health.freeMiB >= health.wantedMiB;
    if (low || enough)
        m_book.set(low, Alarm::DiskLow, {}, QString::number(health.freeMiB / 1024.0, 'f', 1));
    m_book.set(!health.libraryError.isEmpty(), Alarm::LibraryUnusable, {}, health.libraryError);
    if (health.clockJump.isValid())
        m_book.raise(Alarm::ClockJumped, {}, health.clockJump.toString(QStringLiteral("yyyy-MM-dd hh:mm")));
    m_book.set(health.imagesUnwritable, Alarm::ImagesUnwritable, {}, {});
    m_book.set(health.resultsWaiting > 0, Alarm::ResultsWaiting, {}, QString::number(health.resultsWaiting));
    if (health.imagesGivenUp > 0)
        m_book.raiseCounted(Alarm::ImagesGivenUp, {}, health.imagesGivenUp);
    for (const QString& file : health.movedAside)
        m_book.raiseCounted(Alarm::DatabaseMovedAside, file, 1);
}

void AlarmWatch::checkSetUp()
{
    m_book.set(m_config.onlineMode && !m_config.useClearProtect, Alarm::ProtectionOff, {}, {});
    constexpr int checksBetween = 10; // the disk is looked at, and may be a slow one
    if (m_checks++ % checksBetween == 0)
        checkPresence();
}

void AlarmWatch::checkPresence()
{
    for (const char* name : {"/user/users.json", "/user/access.json"}) {
        const QString path = HomeFiles::home() + QLatin1String(name);
        m_book.set(HomeFiles::isGone(path), Alarm::FileGone, path, {});
    }
}
