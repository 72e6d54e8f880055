#include "ModelTeacher.h"
#include "Wheels.h"
#include "support/Table.h"

#include <QRandomGenerator>

namespace {

constexpr double clumsiness = 5; // pixels by which a click is off

/// A person's click near a point.
QPointF clickNear(const cv::Point2d& point, quint32 seed)
{
    QRandomGenerator random(seed);
    const double angle = random.generateDouble() * 2 * CV_PI;
    return {point.x + clumsiness * std::cos(angle), point.y + clumsiness * std::sin(angle)};
}

/// Anywhere on the outer edge of the rim.
cv::Point2d onRim(const wheel::WheelTruth& truth, double angle)
{
    return truth.hub + truth.rimRadius * cv::Point2d(std::cos(angle), std::sin(angle));
}

QVariantMap teach(const wheel::WheelSpec& spec, quint32 seed, QString* error)
{
    const wheel::WheelTruth truth = wheel::truthOf(spec);
    ModelTeacher teacher;
    return teacher.propose(finder::toImage(Wheels::image(spec)), clickNear(onRim(truth, 0.7 * seed), seed),
                           clickNear(truth.holeCenter, seed + 100), error);
}

/// Another wheel of the kind, in worse light and focus than the one that was taught.
wheel::WheelSpec worseWheel(const QString& design, quint64 seed, bool hole)
{
    wheel::WheelSpec spec = Wheels::spec(design.toStdString(), seed, hole);
    spec.optics.blur = 1.6;
    spec.optics.noise = 8;
    spec.light.gradient = 0.3;
    return spec;
}

} // namespace

class TeachingTest : public QObject
{
    Q_OBJECT

private slots:
    void twoRoughClicksTeachEveryDesign_data()
    {
        QTest::addColumn<QString>("design");
        for (const wheel::Design& design : wheel::designs())
            QTest::newRow(design.key.c_str()) << QString::fromStdString(design.key);
    }
    void twoRoughClicksTeachEveryDesign()
    {
        QFETCH(QString, design);
        QString error;
        const wheel::WheelSpec good = Wheels::spec(design.toStdString(), 501);
        const QVariantMap parameters = teach(good, 3, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        const wheel::WheelTruth truth = wheel::truthOf(good);
        const auto near = [&](const char* name, double value, double share) {
            const double taught = parameters.value(QLatin1String(name)).toDouble();
            return std::abs(taught - value) < share * value;
        };
        QVERIFY(near("rim_radius", truth.rimRadius, 0.01));
        QVERIFY(near("ring_radius", truth.ringRadius, 0.01));
        QVERIFY(near("hole_radius", truth.holeRadius, 0.15));
        finder::HoleModel model;
        QVERIFY2(finder::applyParameters(parameters, &model, &error), qPrintable(error));
        QVERIFY(model.taught);
        for (quint64 seed = 1; seed <= 2; ++seed) {
            const wheel::WheelSpec other = worseWheel(design, 900 + seed, true);
            const finder::FindResult found = Wheels::locate(Wheels::image(other), model);
            QVERIFY2(found.found(), qPrintable(finder::resultTip(found.error)));
            QVERIFY(Wheels::turnBetween(found.angle, wheel::truthOf(other).angle) < 0.2);
            QVERIFY(!Wheels::locate(Wheels::image(worseWheel(design, 950 + seed, false)), model).found());
        }
    }

    void clicksThatShowNoHoleAreRefusedWithTheReason_data()
    {
        const wheel::WheelTruth truth = wheel::truthOf(Wheels::spec());
        const QPointF rim = clickNear(onRim(truth, 2), 1);
        const QPointF hole = clickNear(truth.holeCenter, 2);
        const QPointF hub(truth.hub.x, truth.hub.y);
        const auto at = [&](double share, const QPointF& point) { return hub + share * (point - hub); };
        Table::of<QPointF, QPointF, QString>({{"rim clicked on a spoke", at(0.6, rim), hole, "轮缘"},
                                              {"rim clicked beside the wheel", at(1.15, rim), hole, "轮缘"},
                                              {"hole clicked on bare metal", rim, 2 * hub - hole, "清晰的孔"},
                                              {"hole clicked outside of the rim", rim, at(1.3, hole), "轮缘以内"},
                                              {"beside the image", QPointF(-40, 5), hole, "不在图像内"},
                                              {"no number", rim, QPointF(qQNaN(), 7), "不在图像内"}});
    }
    void clicksThatShowNoHoleAreRefusedWithTheReason()
    {
        const auto [rim, hole, reason] = Table::row<QPointF, QPointF, QString>();
        QString error;
        ModelTeacher teacher;
        const QImage image = finder::toImage(Wheels::image(Wheels::spec()));
        QVERIFY(teacher.propose(image, rim, hole, &error).isEmpty());
        QVERIFY2(error.contains(reason), qPrintable(error));
    }

    void imageWithoutAWheelIsRefused()
    {
        ModelTeacher teacher;
        QImage black(800, 600, QImage::Format_RGB32);
        black.fill(Qt::black);
        for (const QImage& image : {QImage(), QImage(20, 20, QImage::Format_Mono), black}) {
            QString error;
            QVERIFY(teacher.propose(image, {700, 300}, {600, 300}, &error).isEmpty());
            QVERIFY(!error.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TeachingTest)
#include "tst_teaching.moc"
