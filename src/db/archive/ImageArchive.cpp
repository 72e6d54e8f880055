#include "db/archive/ImageArchive.h"

#include "db/SqlText.h"
#include "db/archive/SaveImgThread.h"

#include <QDir>
#include <QFileInfo>

namespace {

/// Images that wait beyond this leave a heap behind that the process would keep.
constexpr qint64 burstBytes = 64LL * 1024 * 1024;

} // namespace

ImageArchive::ImageArchive(const QString& home, QObject* parent)
    : ImageArchive(home, Rules(), parent)
{
}

ImageArchive::ImageArchive(const QString& home, Rules rules, QObject* parent)
    : QObject(parent)
    , m_home(home)
    , m_rules(std::move(rules))
    , m_writeHere(m_rules.scheduler->timer(Scheduler::SingleShot, [this] { writeHere(); }))
{
}

ImageArchive::~ImageArchive()
{
    while (!m_running.isEmpty()) {
        SaveImgThread* const thread = m_running.takeFirst();
        if (m_rules.scheduler->usesThreads())
            thread->wait();
        else
            thread->write();
        count(*thread);
        delete thread;
        startNext();
    }
}

bool ImageArchive::prepare(Keep keep)
{
    bool made = true;
    for (const Kind kind : {Result, Source}) {
        const QString folder = m_home + folderOf(kind, keep);
        if (!QDir().mkpath(folder)) {
            SystemLog::warning(tr("不能创建图像文件夹%1").arg(folder));
            made = false;
        }
    }
    return made;
}

QString ImageArchive::folderOf(Kind kind, Keep keep)
{
    return (keep == AsFailures ? QStringLiteral("/DBFiles/Failed") : QStringLiteral("/DBFiles/")) +
           (kind == Result ? QStringLiteral("Images") : QStringLiteral("SrcImages"));
}

bool ImageArchive::holds(const QString& path) const
{
    const auto isIt = [&path](const SaveImgThread* thread) { return thread->path() == path; };
    return std::any_of(m_waiting.begin(), m_waiting.end(), isIt) ||
           std::any_of(m_running.begin(), m_running.end(), isIt);
}

bool ImageArchive::isFull(const QImage& another) const
{
    return waiting() >= m_rules.maxWaiting || (waiting() > 0 && m_bytes + another.sizeInBytes() > m_rules.maxBytes);
}

/// A second image of the same millisecond, or after the clock was set back, must not replace the first. An image that
/// waits has its name already, but no file yet.
QString ImageArchive::freeName(const QString& folder) const
{
    const QString stem = m_rules.scheduler->now().toString(QStringLiteral("yyyy_MM_dd_hhmmsszzz"));
    QString name = stem + QStringLiteral(".jpg");
    const auto isTaken = [this](const QString& path) { return holds(path) || QFileInfo::exists(path); };
    for (int i = 1; isTaken(folder + QLatin1Char('/') + name); ++i)
        name = QStringLiteral("%1_%2.jpg").arg(stem).arg(i);
    return name;
}

QString ImageArchive::save(int station, const QString& subFolder, const QImage& image, Kind kind, Keep keep)
{
    const QString folder = folderOf(kind, keep) + m_rules.scheduler->now().toString(QStringLiteral("/yyyy-MM-dd/")) +
                           (station == 1 ? QStringLiteral("Station1/") : QStringLiteral("Station2/")) +
                           SqlText::folderName(subFolder);
    QDir().mkpath(m_home + folder);
    const QString name = freeName(m_home + folder);
    if (image.isNull())
        return folder + QLatin1Char('/') + name;
    if (isFull(image)) {
        ++m_givenUp;
        m_crowded.failed(tr("等待保存的图像已有%1幅，放弃保存新图像").arg(waiting()));
        return {};
    }
    auto* const thread = new SaveImgThread(image, m_home + folder, name, this);
    connect(thread, &QThread::finished, this, [this, thread] { onEnded(thread); });
    m_waiting.push_back(thread);
    m_bytes += image.sizeInBytes();
    m_peakBytes = qMax(m_peakBytes, m_bytes);
    startNext();
    return folder + QLatin1Char('/') + name;
}

void ImageArchive::startNext()
{
    if (m_waiting.empty() || m_running.size() >= m_rules.maxRunning)
        return;
    SaveImgThread* const thread = m_waiting.front();
    m_waiting.pop_front();
    m_running.append(thread);
    if (m_waiting.empty() && m_peakBytes > burstBytes) {
        thread->setLastOfBurst();
        m_peakBytes = 0;
    }
    if (m_rules.scheduler->usesThreads())
        thread->start();
    else
        m_writeHere->start(0);
}

void ImageArchive::writeHere()
{
    SaveImgThread* const thread = m_running.first();
    thread->write();
    onEnded(thread);
    if (!m_running.isEmpty())
        m_writeHere->start(0);
}

void ImageArchive::count(const SaveImgThread& thread)
{
    m_bytes -= thread.bytes();
    const bool good = thread.error().isEmpty();
    emit ended(thread.path().mid(m_home.size()), good);
    if (!good) {
        ++m_failed;
        m_unwritable.failed(tr("图像不能保存：%1").arg(thread.error()));
        return;
    }
    m_unwritable.over(tr("图像又能保存，期间有%1幅未能保存"));
    emit saved(thread.path());
}

/// It has kept up once half the queue is gone: at the limit itself, the log would tell of it with every image.
void ImageArchive::onEnded(SaveImgThread* thread)
{
    m_running.removeOne(thread);
    count(*thread);
    thread->wait();
    thread->deleteLater();
    startNext();
    if (waiting() <= m_rules.maxWaiting / 2)
        m_crowded.over(tr("图像保存已跟上，期间放弃了%1幅图像"));
}
