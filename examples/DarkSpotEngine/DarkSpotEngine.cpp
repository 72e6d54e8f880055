// An engine with one solution, which answers the darkest pixel of the image: what an engine has to do around its
// finding.

#include <valvecell/Export.h>
#include <valvecell/IEngine.h>
#include <valvecell/ResultKeys.h>

#include <QElapsedTimer>
#include <QImage>
#include <QPointF>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace {

const QString onlySolution = QStringLiteral("dark");

QVariantMap judged(const QImage& image)
{
    const QImage gray = image.convertToFormat(QImage::Format_Grayscale8);
    QPoint darkest;
    int least = 256;
    for (int y = 0; y < gray.height(); ++y) {
        const uchar* const line = gray.constScanLine(y);
        for (int x = 0; x < gray.width(); ++x) {
            if (line[x] < least) {
                least = line[x];
                darkest = {x, y};
            }
        }
    }
    const bool found = least < 256;
    return {{ResultKeys::angle, found ? 0.0 : 361.0},
            {ResultKeys::error, found ? 0 : 8},
            {ResultKeys::score, found ? 1.0 : 0.0},
            {ResultKeys::image, image},
            {ResultKeys::resultTip, found ? QString() : QStringLiteral("无图像")},
            {ResultKeys::centerPoint, QPointF(darkest)}};
}

class DarkSpotEngine : public IEngine, public ITaskList
{
public:
    ~DarkSpotEngine()
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_ending = true;
            m_tasks.clear();
        }
        m_changed.notify_one();
        if (m_thread.joinable())
            m_thread.join(); // the task in hand is answered
    }

    void initialise() override
    {
        m_thread = std::thread([this] { work(); });
    }
    ITaskList* taskList() override { return this; }
    QStringList list() override { return {onlySolution}; }

    /// Returns at once; one thread keeps the results in the order of the tasks.
    void runTask(const QVariantMap& input, const QString& solution, const QString& model,
                 ResultCallback callback) override
    {
        const QImage image = input.value(ResultKeys::originImage).value<QImage>();
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_tasks.push_back({image, solution, model, std::move(callback)});
        }
        m_changed.notify_one();
    }

private:
    struct Task
    {
        QImage image;
        QString solution;
        QString model;
        ResultCallback callback;
    };

    void work()
    {
        for (;;) {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_changed.wait(lock, [this] { return m_ending || !m_tasks.empty(); });
            if (m_ending)
                return;
            const Task task = std::move(m_tasks.front());
            m_tasks.pop_front();
            lock.unlock();
            answer(task);
        }
    }

    /// A task that cannot run is answered without ResultKeys::algoResult.
    static void answer(const Task& task)
    {
        QElapsedTimer clock;
        clock.start();
        QVariantMap result{{ResultKeys::originImage, task.image},
                           {ResultKeys::solutionName, task.solution},
                           {ResultKeys::taskName, task.model},
                           {ResultKeys::taskCali, true}};
        if (task.solution == onlySolution)
            result.insert(ResultKeys::algoResult, judged(task.image));
        result.insert(ResultKeys::taskTime, double(clock.nsecsElapsed()) / 1e6);
        task.callback(result);
    }

    std::mutex m_mutex; // protects the following
    std::condition_variable m_changed;
    std::deque<Task> m_tasks;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace

VALVECELL_MODULE_VERSION("1.0")

VALVECELL_MODULE_EXPORT void* Lib_Engine_Init(void*)
{
    return static_cast<IEngine*>(new DarkSpotEngine);
}
