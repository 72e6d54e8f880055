#include "Locate.h"

#include "finder/Finder.h"
#include "finder/ImageConversion.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <opencv2/imgcodecs.hpp>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

const QStringList imagePatterns{QStringLiteral("*.bmp"),  QStringLiteral("*.png"), QStringLiteral("*.jpg"),
                                QStringLiteral("*.jpeg"), QStringLiteral("*.tif"), QStringLiteral("*.tiff"),
                                QStringLiteral("*.pgm")};

QImage readImage(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0)
        return {};
    const QByteArray bytes = file.readAll();
    const cv::Mat raw(1, bytes.size(), CV_8UC1, const_cast<char*>(bytes.constData()));
    try {
        return finder::toImage(cv::imdecode(raw, cv::IMREAD_UNCHANGED));
    } catch (const std::exception& problem) {
        qWarning("%s: %s", qUtf8Printable(path), problem.what());
        return {};
    }
}

Located locateOne(const QString& path, finder::HoleModel model, const QJsonObject& parameters, finder::Finder& finder)
{
    Located located;
    located.file = path;
    const QImage image = readImage(path);
    located.read = !image.isNull();
    QString error;
    if (!finder::applyParameters(parameters.value(QFileInfo(path).fileName()).toObject().toVariantMap(), &model,
                                 &error)) {
        qWarning("parameters of %s: %s", qUtf8Printable(path), qUtf8Printable(error));
        located.result.error = finder::FindError::BadModel;
        return located;
    }
    QElapsedTimer clock;
    clock.start();
    const finder::GrayImage gray = finder::toGray(image);
    located.result = finder.find(gray.gray, model);
    located.milliseconds = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    return located;
}

/// Results that arrive in any order and leave in the order of the files.
class Sorter
{
public:
    explicit Sorter(int count)
        : m_results(count)
        , m_present(static_cast<size_t>(count), false)
    {
    }

    int next()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_next < m_results.size() ? m_next++ : -1;
    }

    void put(int i, const Located& located)
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_results[i] = located;
            m_present[i] = true;
        }
        m_changed.notify_one();
    }

    Located waitFor(int i)
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this, i] { return m_present[i]; });
        return m_results[i];
    }

private:
    std::mutex m_mutex; // protects all below
    std::condition_variable m_changed;
    QVector<Located> m_results;
    std::vector<bool> m_present;
    int m_next = 0;
};

QJsonValue ifSo(bool known, double value)
{
    return known ? QJsonValue(value) : QJsonValue();
}

} // namespace

QStringList imageFiles(const QStringList& arguments)
{
    QStringList files;
    for (const QString& argument : arguments) {
        if (!QFileInfo(argument).isDir()) {
            files.append(argument);
            continue;
        }
        const QDir folder(argument);
        for (const QString& name : folder.entryList(imagePatterns, QDir::Files, QDir::Name))
            files.append(folder.filePath(name));
    }
    return files;
}

void locateAll(const QStringList& files, const finder::HoleModel& model, const QJsonObject& parameters, int jobs,
               const std::function<void(const Located&)>& done)
{
    Sorter sorter(files.size());
    const auto work = [&] {
        finder::Finder finder;
        for (int i = sorter.next(); i >= 0; i = sorter.next())
            sorter.put(i, locateOne(files[i], model, parameters, finder));
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < jobs; ++i)
        threads.emplace_back(work);
    for (int i = 0; i < files.size(); ++i)
        done(sorter.waitFor(i));
    for (std::thread& thread : threads)
        thread.join();
}

QJsonObject lineOf(const Located& located)
{
    const finder::FindResult& r = located.result;
    const bool hub = r.hub.radius > 0;
    return {{QStringLiteral("image"), QFileInfo(located.file).fileName()},
            {QStringLiteral("found"), r.found()},
            {QStringLiteral("angle"), r.angle},
            {QStringLiteral("x"), ifSo(r.found(), r.hole.x)},
            {QStringLiteral("y"), ifSo(r.found(), r.hole.y)},
            {QStringLiteral("hub_x"), ifSo(hub, r.hub.center.x)},
            {QStringLiteral("hub_y"), ifSo(hub, r.hub.center.y)},
            {QStringLiteral("radius"), ifSo(r.found(), r.holeRadius)},
            {QStringLiteral("score"), r.score},
            {QStringLiteral("error"), static_cast<int>(r.error)},
            {QStringLiteral("tip"), finder::resultTip(r.error)},
            {QStringLiteral("ms"), located.milliseconds},
            {QStringLiteral("rim_radius"), ifSo(hub, r.hub.radius)},
            {QStringLiteral("runner_up"), r.runnerUpScore},
            {QStringLiteral("edge_points"), r.edgePoints},
            {QStringLiteral("residual"), r.residual}};
}
