#include "finder/places/HoleChoice.h"
#include "support/Table.h"

#include <QtTest>

using finder::Doubt;
using finder::FindError;
using finder::HoleModel;
using finder::RankedHole;

namespace {

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

/// Which of the judged places is the hole.
class ChoiceTest : public QObject
{
    Q_OBJECT

private slots:
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
        QVERIFY(finder::chooseHole(model, hub, &all).error != FindError::None);
        QVERIFY(all.front().company < 0);
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

QTEST_GUILESS_MAIN(ChoiceTest)
#include "tst_choice.moc"
