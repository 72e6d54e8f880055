#include "CalibrationBench.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "support/Table.h"

#include <cmath>

namespace {

struct Session
{
    explicit Session(int number = 1)
        : station(number)
    {
        dialog.show();
    }

    QByteArray name(const char* base) const { return station == 2 ? QByteArray(base) + "_2" : QByteArray(base); }
    QString label(const char* base) const { return hand.get<QLabel>(name(base))->text(); }

    void typeReal(const QVector<QPointF>& points)
    {
        for (int i = 0; i < points.size(); ++i) {
            const QByteArray field = "m_lineEdit_RealP" + QByteArray::number(i + 1);
            hand.type(name(field + 'X'), QString::number(points[i].x(), 'g', 10));
            hand.type(name(field + 'Y'), QString::number(points[i].y(), 'g', 10));
        }
    }

    /// All markers of a new station lie on one place, the latest on top.
    void dragAll(const QVector<QPoint>& pixels, const QPoint& test)
    {
        markers.drag(QStringLiteral("Test"), test);
        for (int i = pixels.size() - 1; i >= 0; --i)
            markers.drag(QStringLiteral("P%1").arg(i + 1), pixels[i]);
    }

    int station;
    ksImageCaliUI4P dialog;
    DialogDriver hand{dialog};
    Markers markers{dialog, station};
};

QVector<double> storedMap(const QJsonObject& station)
{
    QVector<double> map;
    for (const char* key : {"m11", "m21", "dx", "m12", "m22", "dy"})
        map.append(station.value(QLatin1String(key)).toDouble());
    return map;
}

} // namespace

class FourPointTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void draggedAndTypedPointsAreStored_data() { Table::of<int>({{"station 1", 1}, {"station 2", 2}}); }

    // x' = 0.1 x + 0.02 y + 5, y' = -0.02 x + 0.1 y - 7, by hand; the fourth pair, which is wrong, takes no part
    void draggedAndTypedPointsAreStored()
    {
        const auto [station] = Table::row<int>();
        CalibrationBench bench;
        Session session(station);
        session.hand.press(session.name("m_pbLock"));
        session.dragAll({{100, 50}, {300, 50}, {100, 250}, {300, 250}}, {200, 150});
        session.typeReal({{16, -4}, {36, -8}, {20, 16}, {41, 12.5}});
        session.hand.type(session.name("m_lineEdit_Xoffset"), QStringLiteral("1.5"));
        session.hand.type(session.name("m_lineEdit_Yoffset"), QStringLiteral("-0.25"));
        session.hand.press(station == 2 ? "checkBox_XY_2" : "checkBox_XY_1");
        session.hand.press(session.name("m_pbApply"));
        auto* question = session.hand.get<QuestionStrip>(session.name("question"));
        QVERIFY2(question->findChild<QLabel*>(session.name("question"))->text().contains("X -1.000 mm，Y -0.500 mm"),
                 "the wrong fourth pair");
        session.hand.press(session.name("firstAnswer"));
        QCOMPARE(session.label("label_status"), QStringLiteral("参数已生效"));
        QCOMPARE(session.label("label_testPixPoint"), QStringLiteral("(200.000，150.000)"));
        QCOMPARE(session.label("label_testRealPoint"), QStringLiteral("(28.000，4.000)"));

        const QJsonObject file = bench.stored().value(QStringLiteral("station%1_4p").arg(station)).toObject();
        const QVector<QPair<const char*, double>> numbers{
            {"pixpoint1_x", 100}, {"pixpoint1_y", 50},    {"pixpoint2_x", 300}, {"pixpoint3_y", 250},
            {"pixpoint4_x", 300}, {"pixpoint4_y", 250},   {"Realpoint1_x", 16}, {"Realpoint2_y", -8},
            {"Realpoint4_x", 41}, {"Realpoint4_y", 12.5}, {"testPoint_x", 200}, {"testPoint_y", 150},
            {"xoffset", 1.5},     {"yoffset", -0.25}};
        for (const auto& number : numbers)
            QCOMPARE(file.value(QLatin1String(number.first)), QJsonValue(number.second));
        QCOMPARE(file.value(QLatin1String("bXYTrans")), QJsonValue(true));
        const QVector<double> byHand{0.1, 0.02, 5, -0.02, 0.1, -7};
        const QVector<double> map = storedMap(file);
        for (int i = 0; i < 6; ++i)
            QVERIFY2(std::abs(map[i] - byHand[i]) < 1e-12, QByteArray::number(map[i], 'g', 17));
        QVERIFY(session.label("label_facts").contains(QStringLiteral("P4 残差：X -1.000 mm，Y -0.500 mm")));

        bench.restart();
        Session again(station);
        QCOMPARE(again.label("label_testRealPoint"), QStringLiteral("(28.000，4.000)"));
        QCOMPARE(again.hand.text(again.name("m_lineEdit_RealP4Y")), QStringLiteral("12.5"));
        QCOMPARE(again.hand.text(again.name("m_lineEdit_P4X")), QStringLiteral("300"));
        again.hand.press(again.name("m_pbApply")); // nothing changes by applying what was read
        QCOMPARE(bench.stored().value(QStringLiteral("station%1_4p").arg(station)).toObject(), file);
    }

    void testPointIsMappedByTheMapInForce()
    {
        CalibrationBench bench;
        bench.config()->stations[0].fourPoint.map = {0.5, 0, 1, 0, 0.25, -1};
        Session session;
        session.hand.press("m_pbLock");
        session.markers.drag(QStringLiteral("Test"), {120, 44});
        QCOMPARE(session.label("label_testPixPoint"), QStringLiteral("(120.000，44.000)"));
        QCOMPARE(session.label("label_testRealPoint"), QStringLiteral("(61.000，10.000)"));
        session.markers.drag(QStringLiteral("P1"), {200, 44});
        QCOMPARE(session.label("label_testRealPoint"), QStringLiteral("(61.000，10.000)"));
        QVERIFY(bench.stored().isEmpty()); // nothing is written before it is applied
    }

    void oddPointsAreStoredAsTheyComeAndComeBack_data()
    {
        const QVector<QPoint> good{{0, 0}, {100, 0}, {0, 100}, {50, 50}};
        Table::of<QVector<QPoint>, QString, QString>(
            {{"on one line", QVector<QPoint>{{0, 0}, {100, 100}, {200, 200}, {1, 5}}, "3", "图像点 P1、P2、P3 共线"},
             {"equal", QVector<QPoint>{{10, 10}, {10, 10}, {200, 20}, {1, 5}}, "3", "P1 与 P2 重合"},
             {"all equal", QVector<QPoint>{{10, 10}, {10, 10}, {10, 10}, {10, 10}}, "3", "P2 与 P3 重合"},
             {"beyond single precision", good, "1e39", ""},
             {"letters", good, "x", "“x”不是数字"},
             {"outside", QVector<QPoint>{{-5, 0}, {100, 0}, {0, 100}, {481, 3}}, "3", "P1, P4 在图像之外"}});
    }

    void oddPointsAreStoredAsTheyComeAndComeBack()
    {
        const auto [pixels, realP1X, warning] = Table::row<QVector<QPoint>, QString, QString>();
        CalibrationBench bench;
        std::copy(pixels.cbegin(), pixels.cend(), bench.config()->stations[0].fourPoint.pixelPoints.begin());
        Session session;
        session.typeReal({{0, 0}, {10, 0}, {0, 10}, {1, 2}});
        session.hand.type("m_lineEdit_RealP1X", realP1X);
        QVERIFY2(session.label("label_warning").contains(warning), qPrintable(session.label("label_warning")));
        session.hand.press("m_pbApply");
        const bool isRefused = warning.contains(QStringLiteral("不是数字"));
        QCOMPARE(session.hand.question().isEmpty(), isRefused); // not usable, or P4 is far off
        if (!session.hand.question().isEmpty())
            session.hand.press("firstAnswer");
        QCOMPARE(bench.stored().isEmpty(), isRefused);
        if (isRefused)
            return;
        const FourPointCalibration applied = bench.config()->stations[0].fourPoint;
        bench.restart();
        const FourPointCalibration& read = bench.config()->stations[0].fourPoint;
        for (int i = 0; i < 6; ++i)
            QVERIFY(read.map[i] == applied.map[i] || (std::isnan(read.map[i]) && std::isnan(applied.map[i])));
        QCOMPARE(read.realPoints[0].x(), realP1X.toDouble());
        Session again;
        QCOMPARE(again.label("label_testRealPoint"), session.label("label_testRealPoint"));
    }

    void everyTextFollowsTheLanguageAndFits_data()
    {
        Table::of<bool, bool>({{"2 points", false, false},
                               {"2 points, one station", false, true},
                               {"4 points", true, false},
                               {"4 points, one station", true, true}});
    }
    void everyTextFollowsTheLanguageAndFits()
    {
        const auto [fourPoints, oneStation] = Table::row<bool, bool>();
        CalibrationBench bench;
        bench.config()->stations[0].twoPoint = {{42, 80}, {198, 113}, 478.25, 0.299927, -12.5, 33.75};
        bench.config()->stations[1].fourPoint.pixelPoints = {QPoint(10, 10), QPoint(10, 10), QPoint(90, 10), QPoint()};
        const std::unique_ptr<CalibrationDialog> dialog(
            fourPoints ? static_cast<CalibrationDialog*>(new ksImageCaliUI4P) : new ksImageCaliUI);
        dialog->setWindowTitle(QStringLiteral("图像标定"));
        dialog->setOneStation(oneStation);
        dialog->show();
        const DialogDriver hand(*dialog);
        hand.act({"m_pbApply", "m_pbLock"});
        const auto faults = [&] { // the status cuts its own text, with the whole in its tip
            const QStringList all = hand.clipped() + Look::overlapping(*dialog);
            return all.filter(QRegularExpression("^(?!label_status)"));
        };
        QTRY_COMPARE(faults(), QStringList());
        if (!hand.question().isEmpty()) // to be asked again in English
            hand.press("noAnswer");
        const English english;
        QTRY_COMPARE(hand.get<QPushButton>("m_pbLock")->text(), QStringLiteral("Lock")); // stays unlocked
        QCOMPARE(hand.get<QPushButton>("m_pbLock_2")->text(), QStringLiteral("Unlock"));
        QCOMPARE(dialog->windowTitle(), QStringLiteral("图像标定")); // its opener's
        hand.act({"m_pbApply", "m_pbLock"});
        QCOMPARE(hand.text<QLabel>("label_status"), QStringLiteral("Locked"));
        QTRY_COMPARE(faults(), QStringList());
        QCOMPARE(hand.chinese(), QStringList("图像标定"));
        hand.shoot(QString("calibration_%1_%2x").arg(QTest::currentDataTag()).arg(qApp->devicePixelRatio()));
    }
};

QTEST_MAIN(FourPointTest)
#include "tst_fourpoint.moc"
