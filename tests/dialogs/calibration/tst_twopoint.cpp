#include "CalibrationBench.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "dialogs/calibration/CalibrationHistory.h"
#include "support/Table.h"

#include <QFileDialog>
#include <QMenu>

#include <cmath>

namespace {

const QString doneStyle = QStringLiteral("background-color: rgb(255, 168, 55);");
const QString refusedStyle = QStringLiteral("background-color: rgb(200, 68, 55);");

/// What draggedPointsAndTypedLengthAreStored() drags and types, under the file's keys.
const QVector<QPair<const char*, QJsonValue>> applied{
    {"point1_x_", 50},         {"point1_y_", 60},          {"point2_x_", 290},
    {"point2_y_", 240},        {"length_", 45.0},          {"StationScale_", 0.15},
    {"StationXOffset_", 12.5}, {"StationYOffset_", -3.25}, {"station_xytrans_", true}};

struct Session
{
    Session() { dialog.show(); }

    QString status(const char* name = "label_status") { return hand.get<QLabel>(name)->text(); }
    QString statusStyle() { return hand.get<QLabel>("label_status")->styleSheet(); }

    /// Chooses a file in the dialog that the button opened.
    void choose(const QString& path)
    {
        hand.press("m_pbLoadImg");
        auto* chooser = dialog.findChild<QFileDialog*>();
        QVERIFY(chooser);
        QCOMPARE(chooser->windowTitle(), QStringLiteral("选择标定图"));
        QCOMPARE(chooser->nameFilters(), QStringList{QStringLiteral("Image Files (*.png *.jpg *.bmp)")});
        chooser->selectFile(path);
        emit chooser->fileSelected(path); // as its own button does
        chooser->close();
        QTRY_VERIFY(hand.canPress("m_pbLoadImg"));
    }

    ksImageCaliUI dialog;
    DialogDriver hand{dialog};
    Markers markers{dialog, 1};
};

} // namespace

class TwoPointTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void panelsShowWhatIsStored()
    {
        CalibrationBench bench;
        StationConfig& second = bench.config()->stations[1];
        second.twoPoint = {{10, 20}, {310, 420}, 1234.5678, 2.4691356, -12.5, 0.0000123};
        second.swapXY = true;
        Session session;
        QCOMPARE(session.dialog.windowTitle(), QStringLiteral("相机视场标定"));
        const QVector<QPair<const char*, QString>> shown{
            {"m_lineEdit_P1X", "0"},           {"m_lineEdit_P2Y", "100"},           {"m_lineEdit_Pixels", "141.421"},
            {"m_lineEdit_Length", "1000"},     {"m_lineEdit_Scale", "1"},           {"m_lineEdit_P1X_2", "10"},
            {"m_lineEdit_P1Y_2", "20"},        {"m_lineEdit_P2X_2", "310"},         {"m_lineEdit_P2Y_2", "420"},
            {"m_lineEdit_Pixels_2", "500"},    {"m_lineEdit_Length_2", "1234.57"},  {"m_lineEdit_Scale_2", "2.46914"},
            {"m_lineEdit_Xoffset_2", "-12.5"}, {"m_lineEdit_Yoffset_2", "1.23e-05"}};
        for (const auto& row : shown)
            QCOMPARE(session.hand.text(row.first), row.second);
        QVERIFY(session.hand.isChecked("checkBox_XY_2") && !session.hand.isChecked("checkBox_XY_1"));
        QCOMPARE(session.hand.get<QPushButton>("m_pbLock")->text(), QStringLiteral("解锁"));
        QCOMPARE(Markers(session.dialog, 2).place(QStringLiteral("P2")), QPointF(310, 420));
        QCOMPARE(session.hand.get<QGroupBox>("CalibrationPanel")->title(), QStringLiteral("工位1相机视场标定"));
    }

    void draggedPointsAndTypedLengthAreStored_data() { Table::of<int>({{"station 1", 1}, {"station 2", 2}}); }

    void draggedPointsAndTypedLengthAreStored()
    {
        const auto [station] = Table::row<int>();
        CalibrationBench bench;
        Session session;
        Markers markers(session.dialog, station);
        AuditChanges audit;
        connect(&session.dialog, &CalibrationDialog::calibrationApplied,
                [&audit](const AuditChanges& changes) { audit += changes; });
        const QByteArray end = station == 2 ? "_2" : "";
        session.hand.press("m_pbLock" + end);
        markers.drag(QStringLiteral("P1"), {50, 60});
        markers.drag(QStringLiteral("P2"), {290, 240});
        QCOMPARE(session.hand.text("m_lineEdit_P2X" + end), QStringLiteral("290"));
        QCOMPARE(session.hand.text("m_lineEdit_Pixels" + end), QStringLiteral("300")); // 240 and 180
        session.hand.type("m_lineEdit_Length" + end, QStringLiteral("45"));
        session.hand.type("m_lineEdit_Xoffset" + end, QStringLiteral("12.5"));
        session.hand.type("m_lineEdit_Yoffset" + end, QStringLiteral("-3.25"));
        session.hand.press(station == 2 ? "checkBox_XY_2" : "checkBox_XY_1");
        session.hand.press("m_pbApply" + end);
        QCOMPARE(session.hand.text("m_lineEdit_Scale" + end), QStringLiteral("0.15"));
        QCOMPARE(session.status("label_status" + end), QStringLiteral("参数已生效"));

        const QString n = QString::number(station);
        QVERIFY2(listed(audit).contains("StationScale_" + n + ":1>0.15"), qPrintable(listed(audit)));
        session.hand.press("m_pbApply" + end);
        QCOMPARE(audit.size(), 9); // the second time nothing has changed
        const QJsonObject file = bench.stored();
        for (const auto& [key, value] : applied)
            QCOMPARE(file.value(key + n), value);
        const QString other = QString::number(3 - station);
        QCOMPARE(file.value("StationScale_" + other), QJsonValue(1.0));
        QCOMPARE(file.value("point2_x_" + other), QJsonValue(100));
    }

    void scaleComesFromTheShownTexts_data()
    {
        // point 1 is (0, 0)
        const QString none = "两点实际距离应大于 0";
        Table::of<QPoint, QString, double, double, QString>(
            {{"3 and 4", QPoint(3, 4), "10", 2.0, 10.0, ""},
             // sqrt(100^2 + 72^2) = 123.2233744..., shown as 123.223
             {"six digits count", QPoint(100, 72), "10", 10.0 / 123.223, 10.0, ""},
             {"no length", QPoint(3, 4), "", 0.0, 0.0, "“”不是数字，按 0 计算；" + none},
             {"equal points", QPoint(0, 0), "25", 1.0, 25.0, "P1 与 P2 重合"},
             {"equal points, no length", QPoint(0, 0), "0", qQNaN(), 0.0, "P1 与 P2 重合；" + none},
             {"outside", QPoint(480, 0), "48", 0.1, 48.0, "P2 在图像之外"},
             {"all digits count", QPoint(0, 1000), "1234.5678", 1.2345678, 1234.5678, "P2 在图像之外"},
             {"letters", QPoint(3, 4), "ten", 1.0, 1000.0, "“ten”不是数字，不能应用；" + none},
             {"comma", QPoint(3, 4), "10,5", 1.0, 1000.0, "“10,5”不是数字，不能应用；" + none},
             {"full-width digits", QPoint(3, 4), "１０", 1.0, 1000.0, "“１０”不是数字，不能应用；" + none},
             {"more than a number holds", QPoint(3, 4), "1e999", 1.0, 1000.0, "“1e999”不是数字，不能应用；" + none},
             {"infinity", QPoint(3, 4), "inf", 1.0, 1000.0, "“inf”不是数字，不能应用；" + none},
             {"negative", QPoint(3, 4), "-10", -2.0, -10.0, none},
             {"blanks around", QPoint(3, 4), " 10 ", 2.0, 10.0, ""}});
    }

    void scaleComesFromTheShownTexts()
    {
        const auto [point2, length, scale, storedLength, warning] =
            Table::row<QPoint, QString, double, double, QString>();
        CalibrationBench bench;
        bench.config()->stations[0].twoPoint.point2 = point2;
        Session session;
        session.hand.type("m_lineEdit_Length", length);
        QCOMPARE(session.status("label_warning"), warning.isEmpty() ? QString() : QStringLiteral("⚠ ") + warning);
        session.hand.press("m_pbApply");
        const bool isRefused = warning.contains("不能应用");
        QCOMPARE(session.status(), isRefused   ? QStringLiteral("“%1”不是数字，没有应用").arg(length)
                                   : scale > 0 ? QStringLiteral("参数已生效")
                                               : QString());
        QCOMPARE(session.hand.question().isEmpty(), isRefused || scale > 0);
        if (!session.hand.question().isEmpty()) // one that no place can be answered by
            session.hand.press("firstAnswer");
        QCOMPARE(bench.stored().isEmpty(), isRefused);
        bench.restart();
        const TwoPointCalibration& stored = bench.config()->stations[0].twoPoint;
        QVERIFY2(std::isnan(scale) ? std::isnan(stored.scale) : stored.scale == scale,
                 QByteArray::number(stored.scale, 'g', 17));
        QCOMPARE(stored.length, storedLength);
        Session again; // NaN and the like are shown again, not refused
        QCOMPARE(again.hand.text("m_lineEdit_Scale"), QString::number(scale));
    }

    void applyChangesWhatWasChangedAndNothingElse()
    {
        CalibrationBench bench;
        StationConfig& station = bench.config()->stations[0];
        station.twoPoint = {{0, 0}, {100, 100}, 1234.5678, 0.28076543, 5, 1234.5678};
        Session session;
        session.hand.act({"m_lineEdit_Xoffset=6.25", "m_pbApply"});
        QCOMPARE(told(session.status(), station.twoPoint.scale, station.twoPoint.length, station.twoPoint.xOffset),
                 "参数已生效|0.28076543|1234.5678|6.25");
        QCOMPARE(station.twoPoint.yOffset, 1234.5678);

        session.hand.type("m_lineEdit_Length", "50"); // what is typed and not applied is given up
        session.dialog.close();
        session.dialog.show();
        QCOMPARE(session.hand.text("m_lineEdit_Length"), QStringLiteral("1234.57"));
        session.hand.act({"m_lineEdit_Length=39.9", "m_pbApply"});
        QCOMPARE(station.twoPoint.scale, 39.9 / 141.421);
    }

    void scaleThatMovesFarIsAQuestionAndCanBeTakenBack_data()
    {
        Table::of<QString, bool>({{"1.9 % further", "40.4610", false}, {"2.1 % further", "40.5404", true}});
    }
    void scaleThatMovesFarIsAQuestionAndCanBeTakenBack()
    {
        const auto [length, asks] = Table::row<QString, bool>();
        CalibrationBench bench;
        TwoPointCalibration& stored = bench.config()->stations[0].twoPoint;
        stored = {{0, 0}, {100, 100}, 39.7066, 0.28076543, 5, 7};
        Session session;
        session.dialog.setUser([] { return QStringLiteral("王工"); });
        session.hand.act({"m_lineEdit_Length=" + length, "m_pbApply"});
        QCOMPARE(session.hand.question(), asks ? QStringLiteral("比例将由 0.280765 变为 0.286665 mm/px") : QString());
        if (!asks)
            return;
        QCOMPARE(stored.scale, 0.28076543);
        bench.config()->stations[0].runModel = "钢圈"; // the PLC does not wait for the answer
        session.hand.press("firstAnswer");
        QVERIFY(stored.scale > 0.286);
        QCOMPARE(bench.config()->stations[0].runModel, QStringLiteral("钢圈"));

        auto* menu = session.hand.get<QPushButton>("earlierButton")->menu();
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 2); // the one before this program kept any, too
        QVERIFY2(menu->actions()[0]->text().contains("王工"), qPrintable(menu->actions()[0]->text()));
        menu->actions()[1]->trigger();
        QVERIFY2(session.hand.question().contains("0.280765"), qPrintable(session.hand.question()));
        QVERIFY(stored.scale > 0.286);
        session.hand.press("firstAnswer");
        QCOMPARE(stored.scale, 0.28076543);
        QCOMPARE(bench.stored().value("StationScale_1"), QJsonValue(0.28076543));
        QCOMPARE(session.hand.text("m_lineEdit_Length"), QStringLiteral("39.7066"));
    }

    void calibrationsAreKeptUpToALimit()
    {
        CalibrationBench bench;
        const CalibrationHistory history(2, CalibrationHistory::Kind::TwoPoint);
        StationConfig station;
        QString error;
        QVERIFY(history.add(station, station, "甲", &error));
        const QByteArray line = bench.home.read("/user/calibrations.jsonl");
        bench.home.write("/user/calibrations.jsonl", line.repeated(CalibrationHistory::maxLines) + "{\"time\": cut");
        station.twoPoint.scale = 3;
        QVERIFY(history.add(StationConfig(), station, "乙", &error));
        QCOMPARE(bench.home.read("/user/calibrations.jsonl").count('\n'), CalibrationHistory::maxLines);
        const QVector<AppliedCalibration> kept = history.read();
        QCOMPARE(kept[0].user, QStringLiteral("乙"));
        QCOMPARE(history.restored({}, kept[0].values).twoPoint.scale, 3.0);
        QVERIFY(CalibrationHistory(1, CalibrationHistory::Kind::TwoPoint).read().isEmpty());
    }

    void calibrationThatTheFileSpoiledIsMadeAnew()
    {
        CalibrationBench bench;
        bench.home.write("/user/globalConfig.json", R"({"StationScale_1": "0,28", "length_1": 30})");
        bench.config()->load();
        Session session;
        session.hand.act({"m_lineEdit_Xoffset=6", "m_pbApply"});
        QVERIFY2(session.hand.question().contains("0,28"), qPrintable(session.hand.question()));
        QVERIFY(!bench.config()->calibration(1).problem().isEmpty());
        session.hand.press("firstAnswer");
        QCOMPARE(bench.config()->calibration(1).problem(), QString());
        QCOMPARE(bench.stored().value("StationScale_1"), QJsonValue(30 / 141.421));
    }

    void referenceIsReadWheneverTheDialogIsShown()
    {
        CalibrationBench bench;
        ksImageCaliUI dialog;
        Markers markers(dialog, 1);
        QVERIFY(markers.viewer().image().isNull());
        dialog.show();
        QCOMPARE(markers.viewer().imageSize(), QSize(CalibrationBench::width, CalibrationBench::height));
        QCOMPARE(markers.place(QStringLiteral("P2")), QPointF(100, 100));
        dialog.close();
        CalibrationBench::picture({200, 100}).save(bench.home.path("/user/StandImage_1.jpg")); // in the other dialog
        QFile file(bench.home.path("/user/StandImage_1.jpg"));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(5), QFileDevice::FileModificationTime));
        dialog.show();
        QCOMPARE(markers.viewer().imageSize(), QSize(200, 100));
    }

    void failureStaysToBeRead()
    {
        CalibrationBench bench;
        Session session;
        session.hand.press("m_pbLock_2"); // its message goes after a second
        const auto timers = [&session] {
            return QAbstractEventDispatcher::instance()->registeredTimers(&session.dialog);
        };
        QCOMPARE(timers().size(), 1);
        QCOMPARE(timers()[0].interval, 1000);
        session.hand.act({"m_lineEdit_Length=abc", "m_pbApply"});
        QCOMPARE(timers().size(), 1);
        QVERIFY(timers()[0].interval >= 2000);
    }

    void otherNamesOnlyRefreshAndCoordinatesAreCut()
    {
        CalibrationBench bench;
        Session session;
        AwesomeRoiInfo info;
        info.center = {10.9, -3.7};
        emit session.markers.viewer().filterroiChanged(info, QStringLiteral("P2"));
        QCOMPARE(told(session.hand.text("m_lineEdit_P2X"), session.hand.text("m_lineEdit_P2Y")), "10|-3");
        session.hand.get<QLineEdit>("m_lineEdit_Pixels")->setText(QStringLiteral("7"));
        emit session.markers.viewer().filterroiChanged(info, QStringLiteral("R1"));
        QCOMPARE(session.hand.text("m_lineEdit_P2X"), QStringLiteral("10"));
        QCOMPARE(session.hand.text("m_lineEdit_Pixels"), QStringLiteral("10.4403")); // sqrt(109)
    }

    void lockGuardsTheMarkersAndMessagesGoTogether()
    {
        CalibrationBench bench;
        Session session;
        session.markers.drag(QStringLiteral("P2"), {120, 130});
        QCOMPARE(session.status(), QStringLiteral("不能操作,请解锁"));
        QCOMPARE(session.statusStyle(), refusedStyle);
        QCOMPARE(session.hand.text("m_lineEdit_P2X"), QStringLiteral("100"));

        session.hand.press("m_pbLock");
        QCOMPARE(told(session.hand.get<QPushButton>("m_pbLock")->text(), session.status()), "上锁|已解锁");
        QCOMPARE(session.statusStyle(), doneStyle);
        session.markers.drag(QStringLiteral("P2"), {120, 130});
        QCOMPARE(session.hand.text("m_lineEdit_P2X"), QStringLiteral("120"));
        session.hand.act({"m_pbLock", "m_pbLock_2"});
        QCOMPARE(told(session.status(), session.status("label_status_2")), "已上锁|已解锁");
        session.markers.drag(QStringLiteral("P2"), {20, 30});
        QCOMPARE(session.hand.text("m_lineEdit_P2X"), QStringLiteral("120"));
        QTRY_COMPARE(session.status(), QString()); // all with the first one's timer
        QCOMPARE(told(session.status("label_status_2"), session.statusStyle()), "|");
    }

    void chosenImageReplacesTheReference()
    {
        CalibrationBench bench;
        Session session;
        session.hand.press("m_pbLock");
        session.markers.drag(QStringLiteral("P1"), {30, 40});
        const QString chosen = bench.home.path(QStringLiteral("/新图.png"));
        CalibrationBench::picture({601, 401}).save(chosen);
        session.choose(chosen);
        QCOMPARE(session.markers.viewer().imageSize(), QSize(601, 401));
        QCOMPARE(QImage(bench.home.path("/user/StandImage_1.jpg")).size(), QSize(601, 401));
        QCOMPARE(session.markers.place(QStringLiteral("P1")).toPoint(), QPoint(31, 41)); // 30.5: the pixel's middle
        QCOMPARE(session.hand.text("m_lineEdit_P1X"), QStringLiteral("30"));
        QCOMPARE(session.hand.get<QPushButton>("m_pbLock")->text(), QStringLiteral("解锁"));
        session.markers.drag(QStringLiteral("P1"), {60, 60});
        QCOMPARE(session.hand.text("m_lineEdit_P1X"), QStringLiteral("30")); // locked again
        QVERIFY(QImage(bench.home.path("/user/StandImage_2.jpg")).size() == QSize(480, 320));
    }

    void unusableImageLeavesNoReference_data()
    {
        Table::of<QByteArray>({{"text with a picture's suffix", "no picture"},
                               {"empty", QByteArray()},
                               {"the reference itself", "self"}});
    }

    void unusableImageLeavesNoReference()
    {
        const auto [content] = Table::row<QByteArray>();
        CalibrationBench bench;
        Session session;
        QString chosen = bench.home.path("/user/StandImage_1.jpg");
        if (content != "self") {
            bench.home.write("/chosen.jpg", content);
            chosen = bench.home.path("/chosen.jpg");
        }
        session.choose(chosen);
        QVERIFY(session.markers.viewer().image().isNull());
        QVERIFY(!QFile::exists(bench.home.path("/user/StandImage_1.jpg")));
        QVERIFY2(session.status().startsWith(QStringLiteral("标定图像未保存")), qPrintable(session.status()));
        QVERIFY(session.markers.viewer().roi(QStringLiteral("P1")));
        bench.home.write("/user/StandImage_2.jpg", "GIF89a");
        Session without; // a start without a reference image, and with a damaged one
        QVERIFY(without.markers.viewer().image().isNull());
        without.hand.press("m_pbApply");
        QCOMPARE(without.status(), QStringLiteral("参数已生效"));
    }

    void failedSaveIsReported()
    {
        CalibrationBench bench;
        Session session;
        bench.home.block();
        session.hand.press("m_pbApply");
        QVERIFY2(session.status().contains(QStringLiteral("未能保存")), qPrintable(session.status()));
        QCOMPARE(session.statusStyle(), refusedStyle);
        QCOMPARE(bench.config()->stations[0].twoPoint.length, 1000.0);
        session.hand.press("m_pbExit");
        QVERIFY(!session.dialog.isVisible());
    }

    void zoomIsRememberedForEachStation()
    {
        CalibrationBench bench;
        Session session;
        for (const int station : {2, 1}) {
            ksImgViewer& viewer = Markers(session.dialog, station).viewer();
            viewer.setImageScale(1.0);
            Mouse(viewer).wheel(120 * station);
        }
        QThreadPool::globalInstance()->waitForDone();
        const QSettings file(bench.home.path("/showImg.ini"), QSettings::IniFormat);
        QCOMPARE(file.value("ShowImg/Scale_Standard_1").toDouble(), 1.1);
        QCOMPARE(file.value("ShowImg/Scale_Standard_2").toDouble(), 1.21);
        QCOMPARE(file.allKeys().size(), 2);
    }
};

QTEST_MAIN(TwoPointTest)
#include "tst_twopoint.moc"
