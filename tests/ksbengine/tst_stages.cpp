#include "finder/Edges.h"
#include "finder/Pyramid.h"
#include "finder/places/HoleChoice.h"
#include "finder/places/HoleJudge.h"
#include "finder/places/Views.h"
#include "support/Table.h"

#include <opencv2/imgproc.hpp>

using finder::Doubt;
using finder::FindError;
using finder::HoleModel;
using finder::RankedHole;

namespace {

cv::Mat noise(int rows, int columns)
{
    cv::Mat image(rows, columns, CV_8UC1);
    cv::RNG random(4711);
    random.fill(image, cv::RNG::UNIFORM, 0, 256);
    return image;
}

constexpr double rim = 800;
constexpr double ring = 700;
constexpr double size = 20;
const finder::Outline hub{{1200, 1000}, rim, 0, 0};

HoleModel taught()
{
    HoleModel model;
    model.rimRadius = rim;
    model.ringRadius = ring;
    model.holeRadius = size;
    model.taught = true;
    return model;
}

struct Spot
{
    double degrees;
    double evidence;
    double reach = ring;
    double radius = size;
    finder::Lookalike lookalike = finder::Lookalike::Blot;
};
using Spots = QVector<Spot>;

RankedHole hole(const Spot& spot)
{
    const double angle = spot.degrees * CV_PI / 180;
    RankedHole hole;
    hole.seen.center = hub.center + spot.reach * cv::Point2d(std::cos(angle), std::sin(angle));
    hole.seen.radius = hole.seen.outerRadius = spot.radius;
    hole.seen.evidence = spot.evidence;
    hole.seen.lookalike = spot.lookalike;
    return hole;
}

std::vector<RankedHole> holes(const Spots& spots)
{
    std::vector<RankedHole> all;
    for (const Spot& spot : spots)
        all.push_back(hole(spot));
    return all;
}

} // namespace

Q_DECLARE_METATYPE(Spot)
Q_DECLARE_METATYPE(FindError)
Q_DECLARE_METATYPE(Doubt)

/// What the finder's stages are made of.
class StagesTest : public QObject
{
    Q_OBJECT

private slots:
    void raysAreBilinearToTheBorder()
    {
        const cv::Mat gray = noise(97, 131); // no row of padding: whoever reads on reads beyond the image
        finder::Ray ray;
        for (int count = 1; count < 40; ++count) {
            const double angle = 0.37 * count;
            const int side = count % 5;
            const cv::Point2d center(66.2, 48.7);
            QVERIFY(finder::sampleWideRay(gray, center, angle, 1.5, 0.8, count, side, &ray));
            QCOMPARE(ray.values.size(), size_t(count));
            for (int i = 0; i < count; ++i) {
                const double r = 1.5 + 0.8 * i;
                double sum = 0;
                for (int k = -side; k <= side; ++k)
                    sum += finder::grayAt(gray, float(center.x + r * std::cos(angle) - k * std::sin(angle)),
                                          float(center.y + r * std::sin(angle) + k * std::cos(angle)));
                QVERIFY(std::abs(ray.values[i] - sum / (2 * side + 1)) < 1); // steps are rounded to 1/4096 pixel
            }
        }
        for (const double angle : {0.0, CV_PI / 2, CV_PI, 3 * CV_PI / 2}) {
            const double edge = std::abs(std::sin(angle)) > 0.5 ? 46 : 63;
            QVERIFY(finder::sampleRay(gray, {65, 48}, angle, 0, 1, int(edge), &ray));
            QVERIFY(!finder::sampleRay(gray, {65, 48}, angle, 0, 1, int(edge) + 4, &ray));
        }
    }

    void pyramidHoldsMeansOfTheLevelBelow_data()
    {
        Table::of<int, int, int>({{"power of two", 64, 128, 7},
                                  {"odd sides", 77, 131, 7},
                                  {"one row", 1, 40, 1},
                                  {"narrow", 300, 3, 2},
                                  {"again, smaller than the one before", 33, 35, 6}});
    }
    void pyramidHoldsMeansOfTheLevelBelow()
    {
        const auto [rows, columns, levels] = Table::row<int, int, int>();
        static finder::Pyramid pyramid; // kept from image to image, as in the finder
        const cv::Mat wide = noise(rows, columns + 5);
        const cv::Mat gray = wide.colRange(2, 2 + columns); // an image with a stride of its own
        pyramid.build(gray);
        QCOMPARE(pyramid.levels(), levels);
        QCOMPARE(cv::countNonZero(pyramid.level(0) != gray), 0);
        const cv::Mat top = pyramid.level(levels - 1).clone(); // asked for first
        for (int k = 1; k < levels; ++k) {
            const cv::Mat finer = pyramid.level(k - 1);
            const cv::Mat level = pyramid.level(k);
            QCOMPARE(level.size(), cv::Size(finer.cols / 2, finer.rows / 2));
            for (int y = 0; y < level.rows; ++y) {
                for (int x = 0; x < level.cols; ++x)
                    QCOMPARE(int(level.at<uchar>(y, x)), int(cv::sum(finer(cv::Rect(2 * x, 2 * y, 2, 2)))[0] + 2) / 4);
            }
        }
        QCOMPARE(cv::countNonZero(pyramid.level(levels - 1) != top), 0);
        QCOMPARE(finder::Pyramid::levelOfSide({2448, 2048}, 256), 3);
        QCOMPARE(finder::Pyramid::levelOfSide({2448, 2047}, 256), 2);
        QCOMPARE(finder::Pyramid::levelOfSide({100, 80}, 256), 0);
        QCOMPARE(finder::Pyramid::fromLevel(cv::Point2d(2, 5), 3), cv::Point2d(19.5, 43.5)); // the middles of pixels
        QCOMPARE(finder::Pyramid::toLevel(cv::Point2d(19.5, 43.5), 3), cv::Point2d(2, 5));
    }

    void viewsAndRingsAreSampledWhereTheyLie_data()
    {
        Table::of<double, double>(
            {{"magnified", 0.4, 3}, {"pixel for pixel", 1, 1}, {"halved", 2.1, 1.2}, {"an eighth", 8.4, 3}});
    }

    /// On a plane of gray values every mean of a block and every value between pixels is known, and a place that is
    /// half a pixel off shows.
    void viewsAndRingsAreSampledWhereTheyLie()
    {
        const auto [step, bend] = Table::row<double, double>();
        const auto plane = [](const cv::Point2d& p) { return 20 + 0.2 * p.x + 0.1 * p.y; };
        cv::Mat gray(640, 800, CV_8UC1);
        for (int y = 0; y < gray.rows; ++y) {
            for (int x = 0; x < gray.cols; ++x)
                gray.at<uchar>(y, x) = cv::saturate_cast<uchar>(plane(cv::Point2d(x, y)));
        }
        finder::Pyramid pyramid;
        pyramid.build(gray);
        const cv::Point2d middle(401.3, 322.8);
        const double half = step * finder::HoleView::side / 2;
        const cv::Point2d along(std::cos(bend), std::sin(bend));
        const cv::Point2d down(-along.y, along.x);
        std::array<float, finder::HoleView::places> values{};
        finder::HoleView{middle, along, half}.sample(pyramid, values.data());
        double off = 0;
        for (int row = 0; row < finder::HoleView::side; ++row) {
            for (int column = 0; column < finder::HoleView::side; ++column) {
                const cv::Point2d place =
                    middle + ((column + 0.5) * step - half) * along + ((row + 0.5) * step - half) * down;
                const double difference = double(values[size_t(row * finder::HoleView::side + column)]) - plane(place);
                QVERIFY2(std::abs(difference) < 1, qPrintable(QString::number(difference)));
                off += difference / finder::HoleView::places;
            }
        }
        // Each halving rounds up by an eighth of a gray level.
        QVERIFY2(std::abs(off) < 0.5, qPrintable(QString("in the mean off by %1").arg(off)));

        finder::RingMap ring;
        ring.unwrap(pyramid, {middle, 200, 0, 0}, {150, 190}, step);
        QCOMPARE(told(ring.turn() % finder::RingMap::multiple, ring.map().cols % finder::RingMap::multiple), "0|0");
        for (int row = 0; row < ring.map().rows; row += 3) {
            for (int column = 0; column < ring.map().cols; ++column) {
                const double root = ring.map().at<uchar>(row, column) / 16.0;
                QVERIFY(std::abs(root * root - plane(ring.toImage(cv::Point2d(column, row)))) < 2);
            }
        }
    }

    void judgeSeesWhatItHasLearntFrom_data()
    {
        using Values = QVector<double>;
        Table::of<double, Values, Values, Values>(
            {{"small", 6, {-1.857, -0.493, -0.599, 0.605}, {0.605, 0.682, -0.51, -0.881}, {-0.63, 0.087, 0.032, 0.664}},
             {"large",
              25,
              {0.329, 0.945, -0.517, 0.088},
              {0.088, 0.329, -0.256, -0.366},
              {0.509, 0.796, 0.114, 0.396}}});
    }

    /// Values by training/judge/sampling.py and judge.py of the same picture: what the finder samples in another way
    /// than the training did would be judged by chance.
    void judgeSeesWhatItHasLearntFrom()
    {
        const auto [radius, near, wide, absolute] =
            Table::row<double, QVector<double>, QVector<double>, QVector<double>>();
        cv::Mat gray(300, 400, CV_8UC1);
        for (int y = 0; y < gray.rows; ++y) {
            for (int x = 0; x < gray.cols; ++x)
                gray.at<uchar>(y, x) =
                    uchar(std::floor(128.5 + 60 * std::sin(x / 9.0) + 50 * std::cos(y / 13.0 + x / 31.0)));
        }
        finder::Pyramid pyramid;
        pyramid.build(gray);
        std::array<float, 3 * finder::HoleView::places> pictures{};
        finder::takePictures(pyramid, {90, 60}, {12, 0, 220}, {210.3, 140.6}, radius, pictures.data());
        const std::array<cv::Point, 4> places{{{0, 0}, {20, 7}, {16, 16}, {3, 31}}};
        for (int i = 0; i < 4; ++i) {
            const int place = places[size_t(i)].y * finder::HoleView::side + places[size_t(i)].x;
            for (const auto& [picture, expected] : {std::pair{0, near[i]}, {1, wide[i]}, {2, absolute[i]}}) {
                const double seen = double(pictures[size_t(picture * finder::HoleView::places + place)]);
                QVERIFY2(std::abs(seen - expected) < 0.02, qPrintable(QString("%1 for %2").arg(seen).arg(expected)));
            }
        }
    }

    void clearestPlaceIsAnsweredAndDoubtIsNamed_data()
    {
        using finder::Lookalike;
        const double third = size / 3;
        Table::of<Spots, FindError, Doubt>({
            {"nothing", {}, FindError::NoHole, Doubt::NothingSeen},
            {"one hole", {{10, 5}}, FindError::None, Doubt::None},
            {"a hole and lesser places", {{10, 5}, {70, -2}, {150, 0}}, FindError::None, Doubt::None},
            {"two alike", {{10, 5}, {200, 5}}, FindError::Ambiguous, Doubt::TwoAlike},
            {"two nearly alike", {{10, 5}, {200, 4.4}}, FindError::Ambiguous, Doubt::TwoAlike},
            {"the same hole seen twice", {{10, 5}, {10.2, 4.8}}, FindError::None, Doubt::None},
            {"dirt", {{10, -4}}, FindError::NoHole, Doubt::Ragged},
            {"a mark", {{10, -4, ring, size, Lookalike::Flat}}, FindError::NoHole, Doubt::Flat},
            {"a letter", {{10, -4, ring, size, Lookalike::Letter}}, FindError::NoHole, Doubt::Letter},
            {"a slot", {{10, -4, ring, size, Lookalike::Edge}}, FindError::NoHole, Doubt::Edge},
            {"a hole on another ring", {{10, 2, 1.12 * ring}}, FindError::NoHole, Doubt::OffRing},
            {"a drain of a third of the size", {{10, 2, ring, third}}, FindError::NoHole, Doubt::OtherSize},
            {"a drain beside the hole", {{10, 5, ring, third}, {100, 5}}, FindError::None, Doubt::None},
        });
    }
    void clearestPlaceIsAnsweredAndDoubtIsNamed()
    {
        const auto [spots, error, doubt] = Table::row<Spots, FindError, Doubt>();
        std::vector<RankedHole> all = holes(spots);
        const finder::HoleChoice choice = finder::chooseHole(taught(), hub, &all);
        QCOMPARE(choice.error, error);
        QCOMPARE(choice.doubt, doubt);
        double sum = 0;
        for (const RankedHole& one : all)
            sum += one.score;
        QVERIFY(all.size() < 2 || cv::norm(all[0].seen.center - all[1].seen.center) < size || sum <= 1);
    }

    void holeThatIsAloneStandsOutFromARound()
    {
        // Five vents as clear as the valve hole, of its size, on a ring of their own.
        std::vector<RankedHole> all = holes({{0, 5, 0.8 * rim},
                                             {72, 5, 0.8 * rim},
                                             {144, 5.3, 0.8 * rim},
                                             {216, 5, 0.8 * rim},
                                             {288, 5, 0.8 * rim},
                                             {30, 5}});
        const HoleModel model = finder::autoModel();
        const finder::HoleChoice choice = finder::chooseHole(model, hub, &all);
        QCOMPARE(choice.error, FindError::None);
        QVERIFY(cv::norm(all.front().seen.center - hole({30, 5}).seen.center) < 1);
        // And a round without it is nothing to answer.
        all.erase(all.begin());
        QVERIFY(finder::chooseHole(model, hub, &all).error != FindError::None && all.front().company < 0);
    }

    void limitDecidesByProbability()
    {
        std::vector<RankedHole> all = holes({{10, 4}, {100, 0}});
        finder::chooseHole(taught(), hub, &all);
        const double score = all.front().score;
        QVERIFY(score > 0.6 && score < 1);
        HoleModel model = taught();
        model.scoreLimit = score - 0.01;
        QCOMPARE(finder::chooseHole(model, hub, &all).error, FindError::None);
        model.scoreLimit = score + 0.005;
        QCOMPARE(finder::chooseHole(model, hub, &all).error, FindError::NoHole);
        all = holes({{10, 3}});
        all.front().examples = -5; // what was rejected before
        QCOMPARE(finder::chooseHole(taught(), hub, &all).doubt, Doubt::Rejected);
        QVERIFY(all.front().score < 0.3);
    }
};

QTEST_APPLESS_MAIN(StagesTest)
#include "tst_stages.moc"
