#include "Task.h"

#include "Pictures.h"
#include "finder/ImageConversion.h"

#include <valvecell/ResultKeys.h>

#include <QDebug>
#include <QElapsedTimer>
#include <QPointF>

#include <exception>

namespace {

QString key(const char* name)
{
    return QString::fromLatin1(name);
}

QPointF toPointF(const cv::Point2d& point)
{
    return {point.x, point.y};
}

struct Answered
{
    finder::FindResult found;
    QString tip;
    QImage picture;
};

void insertMouth(const finder::Mouth& mouth, QVariantMap* map)
{
    map->insert(key(ResultKeys::mouthPixels), mouth.valid ? mouth.pixels : 0);
    if (!mouth.valid)
        return;
    map->insert(key(ResultKeys::mouthResidual), mouth.residual);
    map->insert(key(ResultKeys::mouthSpread), mouth.spread);
    map->insert(key(ResultKeys::mouthBlur), mouth.blur);
    map->insert(key(ResultKeys::mouthFilled), mouth.filled);
    map->insert(key(ResultKeys::mouthEdge), static_cast<int>(mouth.edge));
    map->insert(key(ResultKeys::outerRadius), mouth.outerRadius);
}

QVariantMap algoResult(const Answered& answered, SolutionStore::Answer answer)
{
    const finder::FindResult& found = answered.found;
    const bool hub = answer == SolutionStore::Answer::Hub;
    QVariantMap map{
        {key(ResultKeys::angle), found.angle},
        {key(ResultKeys::error), static_cast<int>(found.error)},
        {key(ResultKeys::score), found.score},
        {key(ResultKeys::image), answered.picture},
        {key(ResultKeys::resultTip), answered.tip},
        {key(ResultKeys::centerPoint), found.found() ? toPointF(hub ? found.axis : found.hole) : QPointF()},
    };
    map.insert(key(ResultKeys::edgePoints), found.edgePoints);
    map.insert(key(ResultKeys::residual), found.residual);
    map.insert(key(ResultKeys::runnerUpScore), found.runnerUpScore);
    map.insert(key(ResultKeys::hubCenter), toPointF(found.axis));
    map.insert(key(ResultKeys::hubRadius), found.hub.radius);
    map.insert(key(ResultKeys::holeRadius), found.holeRadius);
    if (found.found()) {
        map.insert(key(ResultKeys::holeCenter), toPointF(found.hole));
        insertMouth(found.mouth, &map);
    }
    return map;
}

Answered refused(finder::FindError error, const QString& reason)
{
    Answered answered;
    answered.found.error = error;
    answered.tip =
        reason.isEmpty() ? finder::resultTip(error) : QStringLiteral("%1：%2").arg(finder::resultTip(error), reason);
    return answered;
}

/// An image that exhausts the memory, or that a library call refuses, is a bad image and nothing worse.
Answered answer(const QImage& origin, const finder::HoleModel& model, finder::Finder& finder)
{
    try {
        const finder::GrayImage image = finder::toGray(origin);
        const finder::FindResult found = finder.find(image.gray, model);
        return {found, finder::tipOf(found), drawResult(image.gray, found)};
    } catch (const std::exception& problem) {
        qWarning("the image cannot be judged: %s", problem.what());
        return refused(finder::FindError::BadImage, {});
    }
}

} // namespace

QVariantMap runTask(const Task& task, finder::Finder& finder, finder::FindResult* found)
{
    QElapsedTimer clock;
    clock.start();
    const QVariant origin = task.input.value(key(ResultKeys::originImage));
    QVariantMap map{
        {key(ResultKeys::originImage), origin},
        {key(ResultKeys::solutionName), task.solution},
        {key(ResultKeys::taskName), task.model},
        // A task that cannot run is no untaught one: the plant shall read "no task", not "not calibrated".
        {key(ResultKeys::taskCali), !task.known || task.parameters.taught},
    };
    if (task.known) {
        const Answered answered = task.refusal.isEmpty() ? answer(origin.value<QImage>(), task.parameters, finder)
                                                         : refused(finder::FindError::BadModel, task.refusal);
        map.insert(key(ResultKeys::algoResult), algoResult(answered, task.answer));
        if (found)
            *found = answered.found;
    }
    map.insert(key(ResultKeys::taskTime), static_cast<double>(clock.nsecsElapsed()) / 1e6);
    return map;
}

TaskThread::TaskThread()
    : m_thread([this] { run(); })
{
}

TaskThread::~TaskThread()
{
    stop();
    m_thread.join();
}

void TaskThread::add(Job job)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_waiting.push_back(std::move(job));
    }
    m_changed.notify_one();
}

void TaskThread::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_one();
}

bool TaskThread::take(Job* job)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait(lock, [this] { return m_stopping || !m_waiting.empty(); });
    if (m_stopping)
        return false;
    *job = std::move(m_waiting.front());
    m_waiting.pop_front();
    return true;
}

void TaskThread::run()
{
    finder::Finder finder;
    // Each job goes before the next is waited for: it may hold an image of many megabytes.
    for (Job job; take(&job); job = nullptr)
        job(finder);
}
