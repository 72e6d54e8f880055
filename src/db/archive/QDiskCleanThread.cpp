#include "db/archive/QDiskCleanThread.h"

#include "db/archive/FolderSweep.h"
#include "db/log/LogLine.h"
#include "platform/System.h"

#include <QDebug>

#include <chrono>

namespace {

constexpr int daysWhenUnset = 3;
/// The archive's last day is the least that is kept.
constexpr int daysWhenSpaceIsLow = 1;

} // namespace

QDiskCleanThread::QDiskCleanThread(QObject* parent)
    : QThread(parent)
    , m_freeSpace(platform::freeSpaceMiB)
{
}

QDiskCleanThread::~QDiskCleanThread()
{
    stop();
    wait();
}

void QDiskCleanThread::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_stopped.notify_all();
}

bool QDiskCleanThread::isStopped() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_stop;
}

bool QDiskCleanThread::pauseUnlessStopped()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return !m_stopped.wait_for(lock, std::chrono::milliseconds(msBetweenPasses), [this] { return m_stop; });
}

/// Unknown counts as none: better too few images than a full disk. Logged when it begins.
qint64 QDiskCleanThread::freeMiB()
{
    const qint64 free = m_freeSpace(m_root);
    if (free < 0 && !m_probeFailed)
        qWarning("ERROR: Call to GetDiskFreeSpaceEx() failed.");
    m_probeFailed = free < 0;
    m_lastFree = free;
    return qMax<qint64>(0, free);
}

QDateTime QDiskCleanThread::cutOff(const QDateTime& now) const
{
    return now.addDays(-(m_days < 1 ? daysWhenUnset : m_days));
}

/// Low space asks for one sweep of the oldest images, whatever that frees; the next pass looks again.
void QDiskCleanThread::cleanFiles(const QDateTime& now)
{
    const auto stop = [this] { return isStopped(); };
    if (m_cleanByAge && now.isValid())
        FolderSweep::deleteFilesBefore(m_root, cutOff(now), stop);
    if (spaceIsLow())
        m_cleanForSpace = true;
    if (!m_cleanForSpace || isStopped())
        return;
    FolderSweep::deleteOldestImages(m_root, stop);
    m_cleanForSpace = false;
    qWarning("Delete Imgs  Finish...");
}

void QDiskCleanThread::cleanFolders(const QDateTime& now)
{
    if (!m_cleanByAge)
        return;
    if (m_days < 1)
        m_days = daysWhenUnset;
    if (now.isValid())
        FolderSweep::deleteFoldersBefore(m_root, cutOff(now), [this] { return isStopped(); });
}

void QDiskCleanThread::change(bool byAge, qint32 days, qint32 minFreeGiB)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_change = Change{byAge, days, minFreeGiB};
}

/// Once space was low, the limit that was set for it stays; only the space to keep free follows the settings.
void QDiskCleanThread::takeChange()
{
    std::optional<Change> change;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        change.swap(m_change);
    }
    if (!change)
        return;
    m_minFreeGiB = change->minFreeGiB;
    if (m_overridden)
        return;
    m_cleanByAge = change->byAge;
    m_days = change->days;
}

/// Kept: from here on to the end of the thread the setting is overridden.
void QDiskCleanThread::shortenKeeping()
{
    if (!m_overridden)
        SystemLog::warning(
            tr("剩余空间不足%1 GB，%2的图像从现在起到程序结束只保留1天").arg(QString::number(m_minFreeGiB), m_root));
    m_overridden = true;
    m_cleanByAge = true;
    m_days = daysWhenSpaceIsLow;
}

void QDiskCleanThread::pass()
{
    const QDateTime now = m_scheduler->now();
    if (m_clock.check(*m_scheduler))
        SystemLog::warning(tr("系统时间突变为%1，暂停按天数清理%2").arg(now.toString(Qt::ISODate), m_root));
    takeChange();
    if (spaceIsLow())
        shortenKeeping();
    const QDateTime trusted = m_clock.jump().isValid() ? QDateTime() : now;
    if (m_mode == Files)
        cleanFiles(trusted);
    else if (m_mode == Folders)
        cleanFolders(trusted);
    if (m_interval < 3)
        m_interval = 2;
}

void QDiskCleanThread::run()
{
    while (!isStopped()) {
        pass();
        if (!pauseUnlessStopped())
            break;
    }
}
