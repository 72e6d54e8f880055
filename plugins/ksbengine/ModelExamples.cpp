#include "ModelExamples.h"

#include "ExampleFile.h"
#include "finder/Finder.h"
#include "finder/HoleExamples.h"
#include "finder/ImageConversion.h"

#include <QDebug>

#include <algorithm>
#include <exception>

namespace {

using finder::HoleExample;
using finder::HoleExamples;

constexpr double clickReach = 15;        // how far a click may be off
constexpr double faintestExample = 0.05; // score
constexpr double ringSlack = 3;          // percent of the ring, where a hole is looked for at the point alone

QVector<HoleExample>& listOf(HoleExamples& examples, IModelExamples::Kind kind)
{
    return kind == IModelExamples::Kind::Hole ? examples.holes : examples.rejected;
}

QVector<IModelExamples::Example> shown(const QVector<HoleExample>& list)
{
    QVector<IModelExamples::Example> examples;
    for (const HoleExample& example : list)
        examples.append({finder::toImage(example.patch), example.source});
    return examples;
}

HoleExamples known(const SolutionStore& store, const QString& solution, const QString& model)
{
    const auto examples = store.examples(solution, model);
    return examples ? *examples : HoleExamples();
}

/// Measures one place of one image.
class Measurement
{
public:
    Measurement(const cv::Mat& gray, const cv::Point2d& point)
        : m_gray(gray)
        , m_point(point)
    {
    }

    /// An example without a patch, and the reason, when there is nothing to measure.
    HoleExample take(const finder::HoleModel& model, QString* error);

private:
    bool look(const finder::HoleModel& model);
    bool isHere(const cv::Point2d& center, double radius) const
    {
        return cv::norm(center - m_point) < std::max(clickReach, radius);
    }

    const cv::Mat m_gray;
    const cv::Point2d m_point;
    finder::Finder m_finder;
    finder::FindResult m_found;
    cv::Point2d m_center;
    double m_radius = 0;
};

/// Whether the finder sees a hole at the point: as its answer, else as the best of what it weighed.
bool Measurement::look(const finder::HoleModel& model)
{
    m_found = m_finder.find(m_gray, model);
    if (m_found.found() && isHere(m_found.hole, m_found.holeRadius)) {
        m_center = m_found.hole;
        m_radius = m_found.holeRadius;
        return true;
    }
    double best = faintestExample;
    for (const finder::RankedHole& ranked : m_finder.trace().holes) {
        const finder::Outline outline = ranked.outline();
        const double score = ranked.score;
        if (score > best && isHere(outline.center, outline.radius)) {
            best = score;
            m_center = outline.center;
            m_radius = outline.radius;
        }
    }
    return best > faintestExample;
}

HoleExample Measurement::take(const finder::HoleModel& model, QString* error)
{
    const bool seen = look(model);
    const finder::Outline hub = m_found.hub;
    if (!(hub.radius > 0)) {
        *error = finder::resultTip(m_found.error);
        return {};
    }
    if (seen)
        return finder::makeExample(m_gray, hub, m_center, m_radius);
    // As the person says: a valve may hide the hole from the finder, but not its place, and its size is known.
    const HoleExample pointed = finder::makeExample(m_gray, hub, m_point, model.holeRange(hub.radius).middle());
    if (pointed.patch.empty() || pointed.ringShare >= 1) {
        *error = ModelExamples::tr("所点位置不在轮缘以内");
        return {};
    }
    finder::HoleModel nearby = model;
    nearby.rimRadius = hub.radius;
    nearby.ringRadius = pointed.ringRadius;
    nearby.ringTolerance = ringSlack;
    nearby.holeRadius = model.holeRadius > 0 ? pointed.holeRadius : 0;
    if (look(nearby))
        return finder::makeExample(m_gray, hub, m_center, m_radius);
    if (model.holeRadius > 0)
        return pointed;
    *error = ModelExamples::tr("所点位置附近没有可测量的孔");
    return {};
}

} // namespace

ModelExamples::ModelExamples(SolutionStore* store)
    : m_store(store)
{
}

QVariantMap ModelExamples::makeExample(const QImage& image, const QVariantMap& parameters, const QPointF& point,
                                       const QString& source, QString* error)
{
    QString reason;
    HoleExample example;
    finder::HoleModel model;
    try {
        const finder::GrayImage origin = finder::toGray(image);
        if (finder::applyParameters(parameters, &model, &reason))
            example = Measurement(origin.gray, {point.x(), point.y()}).take(model, &reason);
    } catch (const std::exception& problem) {
        qWarning("the image cannot be taught from: %s", problem.what());
        reason = finder::resultTip(finder::FindError::BadImage);
    }
    if (error)
        *error = reason;
    example.source = source;
    return example.patch.empty() ? QVariantMap() : ExampleFile::entryOf(example).toVariantMap();
}

IModelExamples::Examples ModelExamples::examples(const QString& solution, const QString& model)
{
    const HoleExamples all = known(*m_store, solution, model);
    const QString trouble = m_store->exampleTrouble(solution, model);
    return {shown(all.holes), shown(all.rejected),
            trouble.isEmpty() ? QString() : tr("部分示例无法读取，型号照常运行：%1").arg(trouble)};
}

bool ModelExamples::addExample(const QString& solution, const QString& model, Kind kind, const QVariantMap& example,
                               QString* error)
{
    QString reason;
    QString* const why = error ? error : &reason;
    HoleExample added;
    if (!ExampleFile::readEntry(QJsonObject::fromVariantMap(example), &added, why))
        return false;
    HoleExamples all = known(*m_store, solution, model);
    HoleExamples::add(&listOf(all, kind), added);
    // What a person says now overrules what was said of the same place before.
    QVector<HoleExample>& other = listOf(all, kind == Kind::Hole ? Kind::Rejected : Kind::Hole);
    other.erase(std::remove_if(other.begin(), other.end(),
                               [&added](const HoleExample& known) {
                                   return finder::distanceBetween(known.patch, added.patch) < HoleExamples::same;
                               }),
                other.end());
    return m_store->setExamples(solution, model, all, why);
}

bool ModelExamples::removeExample(const QString& solution, const QString& model, Kind kind, int index, QString* error)
{
    QString reason;
    QString* const why = error ? error : &reason;
    HoleExamples all = known(*m_store, solution, model);
    QVector<HoleExample>& list = listOf(all, kind);
    if (index < 0 || index >= list.size()) {
        *why = tr("没有第 %1 个示例").arg(index + 1);
        return false;
    }
    list.remove(index);
    return m_store->setExamples(solution, model, all, why);
}

bool ModelExamples::copyExamples(const QString& solution, const QString& from, const QString& to, QString* error)
{
    QString reason;
    return m_store->setExamples(solution, to, known(*m_store, solution, from), error ? error : &reason);
}

QVariantMap ModelExamples::proposeSizes(const QString& solution, const QString& model, QString* error)
{
    finder::HoleModel proposed;
    SolutionStore::Answer answer = SolutionStore::Answer::Hole;
    const bool exists = m_store->lookUp(solution, model, &proposed, &answer);
    const QVector<HoleExample> holes = known(*m_store, solution, model).holes;
    if (exists && finder::proposeSizes(holes, &proposed))
        return finder::parametersOf(proposed);
    if (error)
        *error = exists ? tr("至少需要 %1 个孔示例，现有 %2 个").arg(finder::fewestForSizes).arg(holes.size())
                        : tr("方案“%1”中没有型号“%2”").arg(solution, model);
    return {};
}
