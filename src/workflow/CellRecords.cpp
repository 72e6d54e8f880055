#include "workflow/CellRecords.h"

#include "config/ksSysConfig.h"
#include "db/QSqliteWheelHubZd.h"
#include "db/ResultRecorder.h"
#include "db/archive/ImageArchive.h"
#include "db/archive/QDiskCleanThread.h"
#include "db/log/ksLogDB.h"
#include "workflow/ModelManager.h"

#include <QDir>

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

QString CellResultStore::saveSourceImage(int station, const QString& model, const QImage& image)
{
    return isOn(m_settings.saveSrcImage, station) ? m_archive.save(station, model, image, ImageArchive::Source)
                                                  : QString();
}

QString CellResultStore::saveResultImage(int station, const QString& model, const QImage& image)
{
    return isOn(m_settings.saveRltImage, station) ? m_archive.save(station, model, image, ImageArchive::Result)
                                                  : QString();
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
    m_sourceCleaner = startCleaner(m_home + QStringLiteral("/DBFiles/SrcImages/"), m_settings.cleanSrcImages);
    m_resultCleaner = startCleaner(m_home + QStringLiteral("/DBFiles/Images/"), m_settings.cleanRltImages);
    if (m_scheduler.usesThreads())
        return;
    m_cleaning = m_scheduler.timer(Scheduler::Repeating, [this] { clean(); });
    m_cleaning->start(QDiskCleanThread::msBetweenPasses);
}

std::unique_ptr<QDiskCleanThread> CellRecords::startCleaner(const QString& root, bool byAge) const
{
    auto cleaner = std::make_unique<QDiskCleanThread>();
    cleaner->setMode(QDiskCleanThread::Folders);
    cleaner->setRootPath(root);
    cleaner->setAgeCleaning(byAge);
    cleaner->setAgeLimit(m_settings.cleanDays);
    cleaner->setMinFreeSpace(m_settings.minFreeSpace);
    cleaner->setScheduler(m_scheduler);
    if (m_scheduler.usesThreads())
        cleaner->start();
    return cleaner;
}

void CellRecords::clean()
{
    m_sourceCleaner->pass();
    m_resultCleaner->pass();
}

void CellRecords::applySettings()
{
    if (m_sourceCleaner)
        m_sourceCleaner->change(m_settings.cleanSrcImages, m_settings.cleanDays, m_settings.minFreeSpace);
    if (m_resultCleaner)
        m_resultCleaner->change(m_settings.cleanRltImages, m_settings.cleanDays, m_settings.minFreeSpace);
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
    for (QDiskCleanThread* cleaner : {m_sourceCleaner.get(), m_resultCleaner.get()}) {
        if (cleaner)
            guards << &cleaner->clock();
    }
    if (m_results)
        guards << &m_results->thinner().clock();
    if (m_log)
        guards << &m_log->thinner().clock();
    return guards;
}

bool CellRecords::isKeepingShortened() const
{
    return m_sourceCleaner && (m_sourceCleaner->isKeepingShortened() || m_resultCleaner->isKeepingShortened());
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
    checkClock();
    connect(m_archive.get(), &ImageArchive::ended, m_recorder.get(), &ResultRecorder::onPictureEnded);
    m_store = std::make_unique<CellResultStore>(m_settings, *m_archive, *m_recorder);
    m_thinning = m_scheduler.timer(Scheduler::SingleShot, [this] { thin(); });
    thinAsSet();
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

/// Both cleaners look at the same drive, so one speaks for both; a jump of the clock may meet any guard first.
CellRecords::Health CellRecords::health() const
{
    Health health;
    health.wantedMiB = qint64(m_settings.minFreeSpace) * 1024;
    health.libraryError = m_libraryError;
    health.imagesGivenUp = m_archive->givenUp();
    health.imagesUnwritable = m_archive->isUnwritable();
    if (m_sourceCleaner)
        health.freeMiB = m_sourceCleaner->lastFreeMiB();
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
