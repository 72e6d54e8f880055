#include "Locate.h"

#include "finder/Finder.h"
#include "finder/ImageConversion.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <opencv2/imgcodecs.hpp>

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

namespace {

const QStringList imagePatterns{QStringLiteral("*.bmp"),  QStringLiteral("*.png"), QStringLiteral("*.jpg"),
                                QStringLiteral("*.jpeg"), QStringLiteral("*.tif"), QStringLiteral("*.tiff"),
                                QStringLiteral("*.pgm")};

LocateRun runOn(const QImage& image, const finder::HoleModel& model, finder::Finder& finder, QString* problem)
{
    LocateRun run;
    QElapsedTimer clock;
    clock.start();
    try {
        run.result = finder.find(finder::toGray(image).gray, model);
    } catch (const std::exception& thrown) {
        *problem = QStringLiteral("the image cannot be judged: %1").arg(QString::fromUtf8(thrown.what()));
    }
    run.milliseconds = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    return run;
}

/// Takes over the values that stand in for the model's; refuses what is no set of parameters.
bool standIn(const QJsonValue& values, finder::HoleModel* model, QString* error)
{
    *error = QStringLiteral("not an object");
    return values.isUndefined() ||
           (values.isObject() && finder::applyParameters(values.toObject().toVariantMap(), model, error));
}

/// Parameters that make no model count as an error of the model, as they do in the engine.
Located locateOne(const QString& path, const LocatePlan& plan, finder::Finder& finder)
{
    Located located;
    located.file = path;
    located.compared = !plan.edited.isEmpty();
    const QImage image = readImage(path, &located.problem);
    finder::HoleModel model = plan.model;
    finder::HoleModel edited;
    QString wrong;
    const bool usable = standIn(plan.parameters.value(QFileInfo(path).fileName()), &model, &wrong);
    edited = model;
    const bool editable = finder::applyParameters(plan.edited, &edited, &wrong);
    if (located.problem.isEmpty() && (!usable || !editable))
        located.problem = QStringLiteral("parameters of %1: %2").arg(QFileInfo(path).fileName(), wrong);
    located.present.result.error = located.edited.result.error = finder::FindError::BadModel;
    if (usable)
        located.present = runOn(image, model, finder, &located.problem);
    if (usable && editable && located.compared)
        located.edited = runOn(image, edited, finder, &located.problem);
    const finder::FindError error = located.present.result.error;
    if (located.problem.isEmpty() && (error == finder::FindError::BadImage || error == finder::FindError::BadModel))
        located.problem = finder::tipOf(located.present.result);
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

} // namespace

/// Through memory, since the decoder opens no path with Chinese in it on every platform.
QImage readImage(const QString& path, QString* problem)
{
    QFile file(path);
    *problem = QFileInfo(path).isDir() ? QStringLiteral("a folder, not an image") : QString();
    if (problem->isEmpty() && !file.open(QIODevice::ReadOnly))
        *problem = file.errorString();
    else if (problem->isEmpty() && file.size() == 0)
        *problem = QStringLiteral("the file is empty");
    if (!problem->isEmpty())
        return {};
    const QByteArray bytes = file.readAll();
    const cv::Mat raw(1, bytes.size(), CV_8UC1, const_cast<char*>(bytes.constData()));
    try {
        const QImage image = finder::toImage(cv::imdecode(raw, cv::IMREAD_UNCHANGED));
        if (image.isNull())
            *problem = QStringLiteral("no image, or of a kind that cannot be read");
        return image;
    } catch (const std::exception& thrown) {
        *problem = QStringLiteral("no image: %1").arg(QString::fromUtf8(thrown.what()).simplified());
        return {};
    }
}

QString imagePatternText()
{
    return imagePatterns.join(QStringLiteral(", "));
}

QStringList imageFiles(const QStringList& arguments, QStringList* empty)
{
    QStringList files;
    for (const QString& argument : arguments) {
        const QString path = QFileInfo(argument).absoluteFilePath();
        if (!QFileInfo(path).isDir()) {
            files.append(path);
            continue;
        }
        QStringList below;
        QDirIterator walk(path, imagePatterns, QDir::Files, QDirIterator::Subdirectories);
        while (walk.hasNext())
            below.append(walk.next());
        below.sort();
        files += below;
        if (below.isEmpty())
            empty->append(argument);
    }
    return files;
}

/// Each thread has a finder of its own, which reuses its memory from image to image.
void locateAll(const QStringList& files, const LocatePlan& plan, const std::function<void(const Located&)>& done)
{
    Sorter sorter(files.size());
    const auto work = [&] {
        finder::Finder finder;
        for (int i = sorter.next(); i >= 0; i = sorter.next())
            sorter.put(i, locateOne(files[i], plan, finder));
    };
    std::vector<std::thread> threads;
    threads.reserve(static_cast<size_t>(plan.jobs));
    for (int i = 0; i < plan.jobs; ++i)
        threads.emplace_back(work);
    for (int i = 0; i < files.size(); ++i)
        done(sorter.waitFor(i));
    for (std::thread& thread : threads)
        thread.join();
}
