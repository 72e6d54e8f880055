#include "ModelTeacher.h"

#include "finder/Finder.h"
#include "finder/ImageConversion.h"

#include <QCoreApplication>
#include <QDebug>

#include <algorithm>
#include <array>
#include <exception>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ModelTeacher)
};

// How far a click may be off: pixels, or a share of the rim's radius where the image is large.
constexpr double clickPixels = 15;
constexpr double clickShare = 0.03;
constexpr double hubOffset = 0.1;     // of the shorter side: how far the hub may lie from the image's middle
constexpr double faintestHole = 0.3;  // score
constexpr double plainLimit = 0.5;    // score limit of a model whose hole is plain to see
constexpr double ofScore = 0.8;       // of a fainter hole's score: its limit
constexpr double aboveRunnerUp = 0.3; // of the way from the runner-up's score to the hole's

double slackFor(double rimRadius)
{
    return std::max(clickPixels, clickShare * rimRadius);
}

double percentOf(double slack, double value)
{
    return std::clamp(100 * slack / std::max(1.0, value), 1.0, 50.0);
}

double hundredths(double value)
{
    return std::round(100 * value) / 100;
}

/// Distance of a point from the hub, on the circle before tilt.
double radiusOf(const cv::Point2d& point, const finder::Outline& hub)
{
    const cv::Point2d arm = point - hub.center;
    return cv::norm(arm) * hub.radius / hub.radiusAt(std::atan2(arm.y, arm.x));
}

/// One teaching: the image and the two clicks, and what is known so far.
class Lesson
{
public:
    Lesson(const cv::Mat& gray, const cv::Point2d& rim, const cv::Point2d& hole)
        : m_gray(gray)
        , m_rimClick(rim)
        , m_holeClick(hole)
    {
    }

    /// False, with the reason, where there is no wheel or no hole as clicked.
    bool learn(QString* error) { return clickedInside(error) && learnHub(error) && learnHole(error) && confirm(error); }
    const finder::HoleModel& model() const { return m_model; }

private:
    bool clickedInside(QString* error) const;
    bool learnHub(QString* error);
    bool seeHub(double radius, double slack);
    bool learnHole(QString* error);
    bool seeHole(double holeRadius, double holeTolerance);
    bool confirm(QString* error);
    bool confirmWith(double rimTolerance, double ringTolerance);
    void setLimit(const finder::FindResult& found);

    const cv::Mat m_gray;
    const cv::Point2d m_rimClick;
    const cv::Point2d m_holeClick;
    finder::Finder m_finder;
    finder::FindResult m_seen;
    finder::Outline m_hub;
    finder::Outline m_hole;
    finder::HoleModel m_model;
};

bool Lesson::clickedInside(QString* error) const
{
    const cv::Rect2d inside(-0.5, -0.5, m_gray.cols, m_gray.rows);
    const bool both = inside.contains(m_rimClick) && inside.contains(m_holeClick);
    if (!both)
        *error = m_gray.empty() ? finder::resultTip(finder::FindError::BadImage) : Tr::tr("所点位置不在图像内");
    return both;
}

/// Whether the rim that is seen in these radii runs through the click.
bool Lesson::seeHub(double radius, double slack)
{
    finder::HoleModel wide;
    wide.rimRadius = radius;
    wide.rimTolerance = percentOf(slack, radius);
    m_seen = m_finder.find(m_gray, wide);
    m_hub = m_seen.hub;
    return m_hub.radius > 0 && std::abs(radiusOf(m_rimClick, m_hub) - m_hub.radius) < slackFor(m_hub.radius);
}

bool Lesson::learnHub(QString* error)
{
    const cv::Point2d middle(0.5 * (m_gray.cols - 1), 0.5 * (m_gray.rows - 1));
    const double distance = cv::norm(m_rimClick - middle);
    if (seeHub(distance, hubOffset * std::min(m_gray.cols, m_gray.rows)))
        return true;
    // Another of the wheel's concentric edges was taken for the rim: its centre gives the radius that was clicked.
    const double clicked = cv::norm(m_rimClick - m_hub.center);
    if (m_hub.radius > 0 && seeHub(clicked, slackFor(clicked)))
        return true;
    const bool wheel = m_hub.radius > 0 || m_seen.error == finder::FindError::NoHub;
    *error = wheel ? Tr::tr("所点位置附近不是轮缘外边") : finder::resultTip(m_seen.error);
    return false;
}

/// Looks for the best hole of these sizes at the click.
bool Lesson::seeHole(double holeRadius, double holeTolerance)
{
    finder::HoleModel model;
    model.rimRadius = m_hub.radius;
    model.ringRadius = radiusOf(m_holeClick, m_hub);
    model.ringTolerance = percentOf(slackFor(m_hub.radius), model.ringRadius);
    model.holeRadius = holeRadius;
    model.holeTolerance = holeTolerance;
    m_seen = m_finder.find(m_gray, model);
    double best = faintestHole;
    for (const finder::RankedHole& ranked : m_finder.trace().holes) {
        const finder::Outline outline = ranked.outline();
        const double score = ranked.score;
        const bool clicked = cv::norm(outline.center - m_holeClick) < std::max(clickPixels, outline.radius);
        if (clicked && score > best) {
            best = score;
            m_hole = outline;
        }
    }
    return best > faintestHole;
}

bool Lesson::learnHole(QString* error)
{
    if (radiusOf(m_holeClick, m_hub) >= m_hub.radius) {
        *error = Tr::tr("气门孔应在轮缘以内");
        return false;
    }
    struct Sizes
    {
        double radius; ///< 0: as the built-in model has it
        double tolerance;
    };
    for (const Sizes& sizes : {Sizes{0, 25}, Sizes{4, 50}, Sizes{40, 50}, Sizes{100, 50}}) {
        if (seeHole(sizes.radius, sizes.tolerance))
            return true;
    }
    *error = m_seen.error == finder::FindError::CutOff ? finder::resultTip(m_seen.error)
                                                       : Tr::tr("所点位置附近没有清晰的孔");
    return false;
}

/// Above what the next best place scores, so that a wheel without a hole is not answered with that place.
void Lesson::setLimit(const finder::FindResult& found)
{
    const double plain = std::min(plainLimit, ofScore * found.score);
    const double between = found.runnerUpScore + aboveRunnerUp * (found.score - found.runnerUpScore);
    m_model.scoreLimit = hundredths(std::max(plain, between));
}

bool Lesson::confirmWith(double rimTolerance, double ringTolerance)
{
    m_model = {};
    m_model.taught = true;
    m_model.rimRadius = hundredths(m_hub.radius);
    m_model.rimTolerance = rimTolerance;
    m_model.ringRadius = hundredths(radiusOf(m_hole.center, m_hub));
    m_model.ringTolerance = ringTolerance;
    m_model.holeRadius = hundredths(m_hole.radius);
    m_model.scoreLimit = faintestHole;
    m_seen = m_finder.find(m_gray, m_model);
    if (!m_seen.found() || cv::norm(m_seen.hole - m_hole.center) > m_hole.radius)
        return false;
    m_model.rimRadius = hundredths(m_seen.hub.radius);
    m_model.ringRadius = hundredths(radiusOf(m_seen.hole, m_seen.hub));
    m_model.holeRadius = hundredths(m_seen.holeRadius);
    setLimit(m_seen);
    return true;
}

bool Lesson::confirm(QString* error)
{
    // Narrower limits only where another circle or hole nearby makes them necessary.
    struct Tolerances
    {
        double rim;
        double ring;
    };
    const finder::HoleModel defaults;
    for (const Tolerances& tolerances : {Tolerances{defaults.rimTolerance, defaults.ringTolerance},
                                         Tolerances{defaults.rimTolerance, defaults.ringTolerance / 2},
                                         Tolerances{defaults.rimTolerance / 2, defaults.ringTolerance},
                                         Tolerances{defaults.rimTolerance / 2, defaults.ringTolerance / 2}}) {
        if (confirmWith(tolerances.rim, tolerances.ring))
            return true;
    }
    *error = m_seen.found() ? Tr::tr("用提出的参数找到的是另一个孔") : finder::resultTip(m_seen.error);
    return false;
}

} // namespace

QVariantMap ModelTeacher::propose(const QImage& image, const QPointF& rim, const QPointF& hole, QString* error)
{
    QString reason;
    QVariantMap parameters;
    try {
        const finder::GrayImage source = finder::toGray(image);
        Lesson lesson(source.gray, {rim.x(), rim.y()}, {hole.x(), hole.y()});
        if (lesson.learn(&reason))
            parameters = finder::parametersOf(lesson.model());
    } catch (const std::exception& problem) {
        qWarning("the image cannot be taught from: %s", problem.what());
        reason = finder::resultTip(finder::FindError::BadImage);
    }
    if (error)
        *error = reason;
    return parameters;
}
