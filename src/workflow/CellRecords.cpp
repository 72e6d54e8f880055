#include "workflow/CellRecords.h"

#include "config/ksSysConfig.h"
#include "db/QSqliteWheelHubZd.h"
#include "db/ResultRecorder.h"
#include "db/archive/ImageArchive.h"
#include "db/archive/QDiskCleanThread.h"
#include "platform/AppHome.h"
#include "workflow/CellResultStore.h"
#include "workflow/ModelManager.h"

#include <QDir>

CellRecords::CellRecords(const QString& home, const ksSysConfig& settings, QObject* parent)
    : QObject(parent)
    , m_home(home)
    , m_settings(settings)
    , m_archive(std::make_unique<ImageArchive>(home))
{
}

CellRecords::~CellRecords() = default;

void CellRecords::prepareImageFolders()
{
    m_archive->prepare();
    m_sourceCleaner = startCleaner(m_home + QStringLiteral("/DBFiles/SrcImages/"), m_settings.cleanSrcImages);
    m_resultCleaner = startCleaner(m_home + QStringLiteral("/DBFiles/Images/"), m_settings.cleanRltImages);
}

std::unique_ptr<QDiskCleanThread> CellRecords::startCleaner(const QString& root, bool byAge) const
{
    auto cleaner = std::make_unique<QDiskCleanThread>();
    cleaner->setMode(QDiskCleanThread::Folders);
    cleaner->setRootPath(root);
    cleaner->setAgeCleaning(byAge);
    cleaner->setAgeLimit(m_settings.cleanDays);
    cleaner->setMinFreeSpace(m_settings.minFreeSpace);
    cleaner->start();
    return cleaner;
}

void CellRecords::openResultDatabase()
{
    const QString folder = platform::inHome(QStringLiteral("\\DBFiles"));
    QDir().mkpath(folder);
    m_results = std::make_unique<StationDB>(platform::inHome(QStringLiteral("\\DBFiles\\Pellix.db")));
    if (!m_results->initialise())
        SystemLog::warning(tr("结果数据库打开失败：%1").arg(m_results->lastError()));
    m_recorder = std::make_unique<ResultRecorder>(*m_results);
    m_store = std::make_unique<CellResultStore>(m_settings, *m_archive, *m_recorder);
}

void CellRecords::openModelLibrary(PlcIndexTable& indices, const QStringList& stations)
{
    m_library = std::make_unique<QSqliteWheelHubZd>(m_home + QStringLiteral("/DBFiles/"));
    if (!m_library->createTable())
        SystemLog::warning(tr("型号库打开失败：%1").arg(m_library->lastError()));
    m_models = std::make_unique<ModelManager>(*m_library, indices, stations);
}

IResultStore* CellRecords::store() const
{
    return m_store.get();
}
