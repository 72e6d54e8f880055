#include "ModelTrials.h"

#include "Pictures.h"
#include "finder/ImageConversion.h"

#include <valvecell/IModelExamples.h>
#include <valvecell/ResultKeys.h>

#include <QCoreApplication>
#include <QDebug>

#include <algorithm>
#include <cmath>
#include <exception>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(TrialStages)
};

constexpr double faintest = 0.05; // score below which a candidate only hides the others

QString number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

/// Odds in the words of a table: what speaks for a hole has a plus.
QString odds(double logarithm)
{
    return (logarithm < 0 ? QString() : QStringLiteral("+")) + number(logarithm, 1);
}

QPointF pointOf(const cv::Point2d& point)
{
    return {point.x, point.y};
}

/// Where the points that a fit used lie in the image.
QVector<QPointF> placesOf(const std::vector<finder::EdgePoint>& points, const finder::Outline& outline)
{
    QVector<QPointF> places;
    for (const finder::EdgePoint& point : points) {
        const double radius = outline.radiusAt(point.angle) + point.residual;
        if (point.used)
            places.append(pointOf(outline.center + radius * cv::Point2d(std::cos(point.angle), std::sin(point.angle))));
    }
    return places;
}

/// The candidate that the answer was made of, else the best one; null when there is none.
const finder::RankedHole* chosen(const std::vector<finder::RankedHole>& holes, const finder::FindResult& found)
{
    for (const finder::RankedHole& ranked : holes) {
        const finder::Outline outline = ranked.outline();
        if (found.found() && cv::norm(outline.center - found.hole) < outline.radius)
            return &ranked;
    }
    return holes.empty() ? nullptr : &holes.front();
}

TrialStage hubStage(const finder::RimFit& rim, const finder::FindResult& found)
{
    TrialStage stage;
    stage.title = Tr::tr("轮毂拟合");
    const bool hub = found.hub.radius > 0;
    if (!hub && !rim.valid) {
        stage.note = finder::resultTip(found.error);
        return stage;
    }
    stage.note = Tr::tr("轮缘可见 %1%，残差 %2 px，边缘宽 %3 px")
                     .arg(number(100 * rim.coverage, 0), number(rim.residual, 2), number(rim.edgeWidth, 1));
    if (!hub)
        stage.note = Tr::tr("%1：%2").arg(finder::resultTip(found.error), stage.note);
    stage.circles.append({pointOf(rim.outline.center), rim.outline.radius,
                          QStringLiteral("%1 px").arg(number(rim.outline.radius, 1)), hub});
    stage.points = placesOf(rim.points, rim.outline);
    return stage;
}

/// Best first. A place that was measured in several sizes is shown once, by its best measurement.
QVector<TrialCircle> circlesOf(const std::vector<finder::RankedHole>& holes, const finder::RankedHole* best,
                               const finder::FindResult& found)
{
    QVector<TrialCircle> circles;
    const auto isShown = [&circles](const QPointF& center) {
        return std::any_of(circles.begin(), circles.end(), [&center](const TrialCircle& shown) {
            const QPointF apart = shown.center - center;
            return std::hypot(apart.x(), apart.y()) < 2 * shown.radius;
        });
    };
    for (const finder::RankedHole& ranked : holes) {
        const finder::Outline outline = ranked.outline();
        const double score = ranked.score;
        if (&ranked != best && (score < faintest || isShown(pointOf(outline.center))))
            continue;
        circles.append({pointOf(outline.center), outline.radius, number(score, 2), found.found() && &ranked == best});
    }
    return circles;
}

TrialStage ringStage(const finder::RingMap& ring, const finder::Outline& hub, const QVector<TrialCircle>& candidates)
{
    TrialStage stage;
    stage.title = Tr::tr("展开的环");
    stage.note = Tr::tr("从轮毂中心起 %1 到 %2 px，上方为外侧，角度同结果")
                     .arg(number(ring.radiusOfColumn(0), 0), number(ring.radiusOfColumn(ring.map().cols - 1), 0));
    const RingPicture picture(ring, hub);
    stage.picture = picture.image();
    for (TrialCircle circle : candidates) {
        circle.center = picture.placeOf(circle.center);
        circle.radius /= ring.step();
        stage.circles.append(circle);
    }
    return stage;
}

TrialStage candidateStage(const QVector<TrialCircle>& candidates, const finder::RankedHole* best,
                          const finder::FindResult& found, const finder::HoleModel& model)
{
    TrialStage stage;
    stage.title = Tr::tr("候选孔与得分");
    stage.circles = candidates;
    stage.note = Tr::tr("%1 处，得分下限 %2").arg(candidates.size()).arg(number(model.scoreLimit, 2));
    if (best) {
        stage.note += Tr::tr("；最佳 %1（图像 %2，位置 %3，尺寸 %4，示例 %5，同类 %6），次高 %7")
                          .arg(number(best->score, 2), odds(best->seen.evidence), odds(best->place), odds(best->size),
                               odds(best->examples), odds(best->company), number(found.runnerUpScore, 2));
        if (found.doubt != finder::Doubt::None)
            stage.note += QStringLiteral("；") + finder::doubtText(found.doubt);
    }
    return stage;
}

TrialStage edgeStage(const cv::Mat& gray, const finder::HoleFit& hole)
{
    TrialStage stage;
    stage.title = Tr::tr("边缘点");
    stage.note = Tr::tr("%1 点中采用 %2 点，孔半径 %3 px")
                     .arg(hole.points.size())
                     .arg(hole.fit.used)
                     .arg(number(hole.fit.outline.radius, 2));
    const Magnifier magnifier(gray, hole.fit.outline.center, 2.2 * hole.fit.outline.radius);
    stage.picture = magnifier.image();
    stage.circles.append(
        {magnifier.placeOf(pointOf(hole.fit.outline.center)), hole.fit.outline.radius * magnifier.factor(), {}, true});
    for (const QPointF& point : placesOf(hole.points, hole.fit.outline))
        stage.points.append(magnifier.placeOf(point));
    return stage;
}

TrialStage residualStage(const finder::HoleFit& hole)
{
    TrialStage stage;
    stage.title = Tr::tr("残差");
    stage.note =
        Tr::tr("均方根 %1 px；横轴：方向（°），纵轴：偏离轮廓（px），灰圈未采用").arg(number(hole.fit.residual, 3));
    const ResidualChart chart(hole.points);
    stage.picture = chart.image();
    stage.points = chart.used();
    return stage;
}

QString edgeName(finder::MouthEdge edge)
{
    switch (edge) {
    case finder::MouthEdge::Chamfer:
        return Tr::tr("倒角");
    case finder::MouthEdge::Counterbore:
        return Tr::tr("沉孔");
    case finder::MouthEdge::Plain:
        break;
    }
    return Tr::tr("直边");
}

QString noteOf(const finder::Mouth& mouth)
{
    return Tr::
        tr("%1 像素，残差 %2 灰度，中心不确定度 %3 px；%4，孔口半径 %5 px，外缘半径 %6 px；%7，孔壁 %8 px，模糊 %9 px")
            .arg(mouth.pixels)
            .arg(number(mouth.residual, 1), number(mouth.spread, 2), edgeName(mouth.edge), number(mouth.radius, 2),
                 number(mouth.outerRadius, 2), mouth.filled ? Tr::tr("孔内有物") : Tr::tr("通孔"),
                 number(cv::norm(mouth.wall), 1), number(mouth.blur, 1));
}

/// The mouth as an ellipse of points, and the circles that hold it and its outer edge.
TrialStage mouthStage(const cv::Mat& gray, const finder::FindResult& found)
{
    constexpr int points = 48;
    const finder::Mouth& mouth = found.mouth;
    TrialStage stage;
    stage.title = Tr::tr("孔口拟合");
    stage.note = mouth.valid ? noteOf(mouth) : Tr::tr("未能拟合孔口，中心与半径取自边缘点的轮廓");
    const Magnifier magnifier(gray, found.hole, 1.4 * std::max(1.6 * found.holeRadius, mouth.outerRadius));
    stage.picture = magnifier.image();
    const auto add = [&](const cv::Point2d& center, double radius, const QString& label, bool accepted) {
        stage.circles.append({magnifier.placeOf(pointOf(center)), radius * magnifier.factor(), label, accepted});
    };
    add(found.hole, found.holeRadius, {}, true);
    if (!mouth.valid)
        return stage;
    if (mouth.edge != finder::MouthEdge::Plain)
        add(mouth.outerCenter, mouth.outerRadius, Tr::tr("外缘"), false);
    const cv::Point2d along(std::cos(mouth.axisAngle), std::sin(mouth.axisAngle));
    const cv::Point2d across = mouth.axisRatio * cv::Point2d(-along.y, along.x);
    for (int i = 0; i < points; ++i) {
        const double angle = 2 * CV_PI * i / points;
        const cv::Point2d arm = mouth.radius * (std::cos(angle) * along + std::sin(angle) * across);
        stage.points.append(magnifier.placeOf(pointOf(mouth.center + arm)));
    }
    return stage;
}

/// A finder of its own, so that no stage of a former trial is left where this one did not come to it.
IModelTrial::Outcome runWithStages(const Task& task)
{
    finder::Finder finder;
    finder::FindResult found;
    IModelTrial::Outcome outcome;
    outcome.result = runTask(task, finder, &found);
    if (!task.known || !task.refusal.isEmpty())
        return outcome;
    try {
        const QImage origin = task.input.value(QString::fromLatin1(ResultKeys::originImage)).value<QImage>();
        outcome.stages = trialStages(finder::toGray(origin).gray, finder, found, task.parameters);
    } catch (const std::exception& problem) {
        qWarning("the stages cannot be shown: %s", problem.what());
    }
    return outcome;
}

} // namespace

QVector<TrialStage> trialStages(const cv::Mat& gray, const finder::Finder& finder, const finder::FindResult& found,
                                const finder::HoleModel& model)
{
    const finder::FindTrace& trace = finder.trace();
    QVector<TrialStage> stages{hubStage(trace.rim, found)};
    if (finder.ring().map().empty())
        return stages;
    const finder::RankedHole* best = chosen(trace.holes, found);
    const QVector<TrialCircle> candidates = circlesOf(trace.holes, best, found);
    stages.append(ringStage(finder.ring(), found.hub, candidates));
    stages.append(candidateStage(candidates, best, found, model));
    if (best && trace.outline.fit.valid) {
        stages.append(edgeStage(gray, trace.outline));
        stages.append(residualStage(trace.outline));
    }
    if (found.found())
        stages.append(mouthStage(gray, found));
    return stages;
}

ModelTrials::ModelTrials(const SolutionStore* store)
    : m_store(store)
{
}

void ModelTrials::runTrial(const QImage& image, const QString& solution, const QVariantMap& parameters, bool withStages,
                           Callback callback)
{
    Task task;
    task.input = {{QString::fromLatin1(ResultKeys::originImage), image}};
    task.solution = solution;
    // The built-in model is in every solution, so this asks for the solution's settings.
    task.known = m_store->lookUp(solution, finder::autoModelName(), &task.parameters, &task.answer);
    task.parameters = {};
    const QString shown = parameters.value(QString::fromLatin1(IModelExamples::examplesOf)).toString();
    task.parameters.examples = m_store->examples(solution, shown);
    finder::applyParameters(parameters, &task.parameters, &task.refusal);
    m_thread.add([task, withStages, callback = std::move(callback)](finder::Finder& finder) {
        const Outcome outcome = withStages ? runWithStages(task) : Outcome{runTask(task, finder), {}};
        if (callback)
            callback(outcome);
    });
}
