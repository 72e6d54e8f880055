#include "BatchRunner.h"

#include <QDir>

namespace {

constexpr int readers = 2;
constexpr int ahead = 3; // images kept in memory

/// The drawing of every row would fill the memory.
TaskResult withoutImage(TaskResult result)
{
    result.image = QImage();
    return result;
}

} // namespace

BatchRunner::BatchRunner(TaskRunner* runner, QObject* parent)
    : QObject(parent)
    , m_runner(runner)
    , m_background(Background::AtEnd::Wait, readers)
{
}

void BatchRunner::start(const Plan& plan)
{
    ++m_round;
    m_background.clear();
    m_plan = plan;
    m_files.clear();
    m_ready.clear();
    m_next = 0;
    m_asked = 0;
    m_busy = false;
    m_running = true;
    m_background.run([folder = plan.folder] { return ImageFile::below(folder); },
                     [this, round = m_round](const QStringList& files) {
                         if (round == m_round)
                             takeFiles(files);
                     });
}

void BatchRunner::stop()
{
    if (m_running)
        finish();
}

void BatchRunner::finish()
{
    ++m_round;
    m_background.clear();
    m_ready.clear();
    m_running = false;
    emit finished();
}

void BatchRunner::takeFiles(const QStringList& files)
{
    m_files = files;
    emit counted(files.size());
    readAhead();
    runNext();
}

void BatchRunner::readAhead()
{
    for (; m_asked < m_files.size() && m_asked < m_next + ahead; ++m_asked) {
        m_background.run([path = m_files.at(m_asked)] { return ImageFile::read(path); },
                         [this, round = m_round, index = m_asked](const ImageFile& file) {
                             if (round == m_round)
                                 takeFile(index, file);
                         });
    }
}

void BatchRunner::takeFile(int index, const ImageFile& file)
{
    m_ready.insert(index, file);
    runNext();
}

void BatchRunner::runNext()
{
    if (!m_running || m_busy)
        return;
    if (m_next == m_files.size()) {
        finish();
        return;
    }
    if (!m_ready.contains(m_next))
        return;
    const ImageFile file = m_ready.take(m_next);
    ++m_next;
    readAhead();
    m_busy = true;
    m_row = {};
    m_row.path = file.path;
    m_row.name = QDir(m_plan.folder).relativeFilePath(file.path);
    m_row.problem = file.problem();
    if (file.image.isNull())
        complete();
    else
        runFirst(file.image);
}

void BatchRunner::runFirst(const QImage& image)
{
    m_runner->run(image, m_plan.first, false, [this, round = m_round, image](const Trial& trial) {
        if (round != m_round)
            return;
        m_row.first = withoutImage(trial.result);
        if (m_plan.compare)
            runSecond(image);
        else
            complete();
    });
}

void BatchRunner::runSecond(const QImage& image)
{
    m_runner->run(image, m_plan.second, false, [this, round = m_round](const Trial& trial) {
        if (round != m_round)
            return;
        m_row.second = withoutImage(trial.result);
        m_row.compared = true;
        complete();
    });
}

void BatchRunner::complete()
{
    m_busy = false;
    emit rowDone(m_row);
    // Queued: a folder full of unreadable files must not nest one call a file.
    QMetaObject::invokeMethod(
        this,
        [this, round = m_round] {
            if (round == m_round)
                runNext();
        },
        Qt::QueuedConnection);
}
