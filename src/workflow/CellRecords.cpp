#include "workflow/CellRecords.h"

#include "config/ksSysConfig.h"
#include "db/QSqliteWheelHubZd.h"
#include "db/ResultRecorder.h"
#include "db/archive/ImageArchive.h"
#include "db/archive/QDiskCleanThread.h"
#include "db/log/ksLogDB.h"
#include "workflow/ModelManager.h"

#include <QDir>

#include <algorithm>

namespace {

constexpr int msBetweenLooks = 1000;
/// This program is no older, so a clock that shows an earlier date has lost its battery.
constexpr QDate madeOn = QDate::fromJulianDay(2461042); // 2026-01-01

ImageArchive::Rules archiveRules(Scheduler& scheduler)
{
    ImageArchive::Rules rules;
    rules.scheduler = &scheduler;
    return rules;
}

/// A result of no station has no switch of its own and is not archived.
bool isOn(const bool (&switches)[2], int station)
{
    return (station == 1 || station == 2) && switches[station - 1];
}

} // namespace

CellResultStore::CellResultStore(const ksSysConfig& settings, ImageArchive& archive, ResultRecorder& recorder)
    : m_settings(settings)
    , m_archive(archive)
    , m_recorder(recorder)
{
}

QString CellResultStore::saveSourceImage(int station, const QString& model, const QImage& image, bool found)
{
    return isOn(m_settings.saveSrcImage, station) ? save(station, model, image, found, ImageArchive::Source)
                                                  : QString();
}

QString CellResultStore::saveResultImage(int station, const QString& model, const QImage& image, bool found)
{
    return isOn(m_settings.saveRltImage, station) ? save(station, model, image, found, ImageArchive::Result)
                                                  : QString();
}

QString CellResultStore::save(int station, const QString& model, const QImage& image, bool found, int kind)
{
    if (found && m_settings.saveOnlyFailed)
        return {};
    const bool apart = !found && m_settings.failedDays > 0;
    return m_archive.save(station, model, image, ImageArchive::Kind(kind),
                          apart ? ImageArchive::AsFailures : ImageArchive::AsOthers);
}

void CellResultStore::insertResult(const StationResult& result)
{
    StationResult row = result;
    row.value1.clear();
    row.part.user = m_user;
    m_recorder.record(row, m_archive.isWaiting(result.value1) ? result.value1 : QString());
}

CellRecords::CellRecords(const QString& home, const ksSysConfig& settings, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_home(home)
    , m_settings(settings)
    , m_scheduler(scheduler)
    , m_archive(std::make_unique<ImageArchive>(home, archiveRules(scheduler)))
{
}

/// The archive first: what became of its last pictures goes into the rows.
CellRecords::~CellRecords()
{
    m_archive.reset();
}

void CellRecords::prepareImageFolders()
{
    m_archive->prepare();
    startCleaners(ImageArchive::AsOthers);
    startFailureCleaners();
    if (m_scheduler.usesThreads())
        return;
    m_cleaning = m_scheduler.timer(Scheduler::Repeating, [this] { clean(); });
    m_cleaning->start(QDiskCleanThread::msBetweenPasses);
}

void CellRecords::startFailureCleaners()
{
    const bool known = std::any_of(m_cleaners.begin(), m_cleaners.end(),
                                   [](const Cleaner& each) { return each.keep == ImageArchive::AsFailures; });
    const bool there = QDir(m_home + ImageArchive::folderOf(ImageArchive::Source, ImageArchive::AsFailures)).exists();
    if (known || (m_settings.failedDays == 0 && !there))
        return;
    if (m_archive->prepare(ImageArchive::AsFailures))
        startCleaners(ImageArchive::AsFailures);
}

bool CellRecords::cleansByAge(const Cleaner& cleaner) const
{
    return cleaner.kind == ImageArchive::Source ? m_settings.cleanSrcImages : m_settings.cleanRltImages;
}

int CellRecords::daysOf(const Cleaner& cleaner) const
{
    const bool apart = cleaner.keep == ImageArchive::AsFailures && m_settings.failedDays > 0;
    return apart ? m_settings.failedDays : m_settings.cleanDays;
}

void CellRecords::startCleaners(int keep)
{
    for (const ImageArchive::Kind kind : {ImageArchive::Source, ImageArchive::Result}) {
        Cleaner cleaner{kind, keep, std::make_unique<QDiskCleanThread>()};
        QDiskCleanThread& thread = *cleaner.thread;
        thread.setMode(QDiskCleanThread::Folders);
        thread.setRootPath(m_home + ImageArchive::folderOf(kind, ImageArchive::Keep(keep)) + QLatin1Char('/'));
        thread.setAgeCleaning(cleansByAge(cleaner));
        thread.setAgeLimit(daysOf(cleaner));
        thread.setMinFreeSpace(m_settings.minFreeSpace);
        thread.setScheduler(m_scheduler);
        if (m_scheduler.usesThreads())
            thread.start();
        m_cleaners.push_back(std::move(cleaner));
    }
}

void CellRecords::clean()
{
    for (const Cleaner& cleaner : m_cleaners)
        cleaner.thread->pass();
}

void CellRecords::applySettings()
{
    if (!m_cleaners.empty())
        startFailureCleaners();
    for (const Cleaner& cleaner : m_cleaners)
        cleaner.thread->change(cleansByAge(cleaner), daysOf(cleaner), m_settings.minFreeSpace);
    if (m_results)
        thinAsSet();
}

void CellRecords::thinAsSet()
{
    m_results->thinner().setDays(m_settings.recordDays);
    if (m_log)
        m_log->thinner().setDays(m_settings.recordDays);
    m_thinning->start(RowThinner::msBetweenSteps);
}

void CellRecords::thin()
{
    m_thinning->start(m_recorder->waiting() > 0 ? RowThinner::msWhenHeld : m_results->thin());
}

void CellRecords::acceptClock()
{
    const QVector<ClockGuard*> guards = clocks();
    for (ClockGuard* guard : guards)
        guard->accept();
}

QVector<ClockGuard*> CellRecords::clocks() const
{
    QVector<ClockGuard*> guards;
    for (const Cleaner& cleaner : m_cleaners)
        guards << &cleaner.thread->clock();
    if (m_results)
        guards << &m_results->thinner().clock();
    if (m_log)
        guards << &m_log->thinner().clock();
    return guards;
}

bool CellRecords::isKeepingShortened() const
{
    return std::any_of(m_cleaners.begin(), m_cleaners.end(),
                       [](const Cleaner& cleaner) { return cleaner.thread->isKeepingShortened(); });
}

void CellRecords::openResultDatabase()
{
    const QString folder = m_home + QStringLiteral("/DBFiles");
    QDir().mkpath(folder);
    m_results = std::make_unique<StationDB>(folder + QStringLiteral("/Pellix.db"));
    m_results->setScheduler(m_scheduler);
    m_results->initialise();
    ResultRecorder::Rules rules;
    rules.scheduler = &m_scheduler;
    m_recorder = std::make_unique<ResultRecorder>(*m_results, rules);
    connect(m_recorder.get(), &ResultRecorder::retried, this, &CellRecords::retried);
    checkClock();
    connect(m_archive.get(), &ImageArchive::ended, m_recorder.get(), &ResultRecorder::onPictureEnded);
    m_store = std::make_unique<CellResultStore>(m_settings, *m_archive, *m_recorder);
    m_thinning = m_scheduler.timer(Scheduler::SingleShot, [this] { thin(); });
    thinAsSet();
}

bool CellRecords::hasEarlierRows() const
{
    return !m_recorder->holdsEarlier();
}

/// Stored times are local: when summer ends, an hour comes twice.
void CellRecords::checkClock()
{
    constexpr int tolerance = 2 * 60 * 60;
    const QDateTime now = m_scheduler.now();
    const QDateTime last = m_results->lastTime();
    if (now.date() >= madeOn && !(last.isValid() && now.secsTo(last) > tolerance))
        return;
    SystemLog::warning(
        QDiskCleanThread::tr("系统时间突变为%1，暂停按天数清理%2").arg(now.toString(Qt::ISODate), m_home));
    const QVector<ClockGuard*> guards = clocks();
    for (ClockGuard* guard : guards)
        guard->distrust(now);
}

void CellRecords::openModelLibrary(PlcIndexTable& indices, const QStringList& stations)
{
    m_library = std::make_unique<QSqliteWheelHubZd>(m_home + QStringLiteral("/DBFiles/"));
    m_library->setScheduler(m_scheduler);
    openLibrary();
    m_models = std::make_unique<ModelManager>(*m_library, indices, stations, m_scheduler);
    m_libraryOpenings = m_library->openings();
    m_lookAfterLibrary = m_scheduler.timer(Scheduler::Repeating, [this] { lookAfterLibrary(); });
    m_lookAfterLibrary->start(msBetweenLooks);
}

void CellRecords::openLibrary()
{
    const bool open = m_library->createTable();
    const QString refused = m_library->openReport().text;
    m_libraryError = open ? QString() : refused.isEmpty() ? m_library->lastError() : refused;
}

/// A library that could not be opened, or was put aside, is read when there is one again.
void CellRecords::lookAfterLibrary()
{
    openLibrary();
    if (m_library->openings() == m_libraryOpenings)
        return;
    m_libraryOpenings = m_library->openings();
    m_models->reload();
}

IResultStore* CellRecords::store() const
{
    return m_store.get();
}

void CellRecords::setUser(const QString& name)
{
    m_store->setUser(name);
}

/// All cleaners look at the same drive, so one speaks for all; a jump of the clock may meet any guard first.
CellRecords::Health CellRecords::health() const
{
    Health health;
    health.wantedMiB = qint64(m_settings.minFreeSpace) * 1024;
    health.libraryError = m_libraryError;
    health.imagesGivenUp = m_archive->givenUp();
    health.imagesUnwritable = m_archive->isUnwritable();
    if (!m_cleaners.empty())
        health.freeMiB = m_cleaners.front().thread->lastFreeMiB();
    const QVector<ClockGuard*> guards = clocks();
    for (const ClockGuard* guard : guards) {
        if (!health.clockJump.isValid())
            health.clockJump = guard->jump();
    }
    if (m_recorder)
        health.resultsWaiting = m_recorder->waiting();
    if (m_results)
        health.movedAside << m_results->keptAside();
    if (m_library)
        health.movedAside << m_library->keptAside();
    return health;
}
