#include "CameraCell.h"
#include "support/Table.h"

#include <QJsonArray>

Q_DECLARE_METATYPE(CameraEntry)
Q_DECLARE_METATYPE(PixelFormat)
Q_DECLARE_METATYPE(QImage::Format)

namespace {

QByteArray oneCamera(const char* settings = R"("exposure_ms":1,"transfer_ms":1)")
{
    return R"({"cameras":[{"key":"cam1","type":100,"folder":"images/1",)" + QByteArray(settings) + "}]}";
}

const QStringList cam1{QStringLiteral("cam1")};

} // namespace

class CoreCtrlTest : public QObject
{
    Q_OBJECT

private slots:
    void twoStationsGetTheirImagesInNameOrderAndAroundAgain()
    {
        CameraCell cell;
        cell.saveImage("/images/1/2.png", 12);
        cell.saveImage("/images/1/10.bmp", 10);
        cell.saveImage(QStringLiteral("/images/1/车轮.png"), 14);
        cell.saveImage("/images/1/a.jpg", 13);
        cell.saveImage("/other/only.png", 77);
        cell.home.write("/images/1/truth.json", "{}");
        ICoreCtrl* core = cell.start(R"({"cameras":[
            {"key":"左","type":100,"folder":"images/1","exposure_ms":1,"transfer_ms":0.5},
            {"key":"右","type":100,"folder":")" +
                                     cell.home.path("/other").toUtf8() + R"(","exposure_ms":0}]})");
        const QStringList keys{QStringLiteral("左"), QStringLiteral("右")};
        QCOMPARE(core->cameraKeys(), keys);
        for (int i = 0; i < 6; ++i)
            core->trigger(keys);
        QTRY_COMPARE(cell.widths(keys[0]), QVector<int>({10, 12, 13, 14, 10, 12}));
        QTRY_COMPARE(cell.widths(keys[1]), QVector<int>(6, 77));
    }

    void imageNeverComesBeforeItsExposureIsOver()
    {
        CameraCell cell;
        cell.saveImage("/images/1/a.png", 5);
        ICoreCtrl* core = cell.start(oneCamera(R"("exposure_ms":60,"transfer_ms":40.5)"));
        QElapsedTimer clock;
        clock.start();
        core->trigger(cam1);
        core->trigger(cam1);
        QTRY_COMPARE(cell.widths("cam1").size(), 1);
        QVERIFY(clock.nsecsElapsed() >= 100'500'000);
        QTRY_COMPARE(cell.widths("cam1").size(), 2);
        QVERIFY2(clock.nsecsElapsed() >= 201'000'000, "the second exposure begins when the first is through");
    }

    void spoiledConfigurationGivesNoCameraAndSaysWhere_data()
    {
        Table::of<QByteArray, QString>({{"missing", QByteArray(), "camera.json: no such file"},
                                        {"empty", "", "camera.json, line 1"},
                                        {"cut off", oneCamera().chopped(9).replace(",", ",\n"), "camera.json, line 5"},
                                        {"list", "[1,2]", "camera.json: the top level"},
                                        {"without list", "{}", "camera.json, cameras: "},
                                        {"huge", QByteArray(65 * 1024 * 1024, ' '), "camera.json: larger"}});
    }
    void spoiledConfigurationGivesNoCameraAndSaysWhere()
    {
        const auto [json, said] = Table::row<QByteArray, QString>();
        CameraCell cell;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QRegularExpression::escape(said)));
        QCOMPARE(cell.start(json)->cameraKeys(), QStringList());
        QCOMPARE(cell.home.read("/user/camera.json"), json);
    }

    void badEntryNeverTakesTheGoodOnesDown()
    {
        CameraCell cell;
        cell.saveImage("/images/1/a.png", 5);
        for (const char* place : {"\\[0\\]", "\\[1\\]", "\\[3\\].*taken"})
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("camera.json, cameras") + place));
        cell.start(R"({"cameras":[ 7, {"key":" ","type":100},
            {"key":"good","type":100,"folder":"images/1"},
            {"key":"good","type":100,"folder":"images/2"},
            {"key":"hik","type":140}, {"key":"odd","type":210}, {"key":"text","type":"100"},
            {"key":"nofolder","type":100}, {"key":"gone","type":100,"folder":"gone"},
            {"key":"slow","type":100,"folder":"images/1","exposure_ms":1e9},
            {"key":"typed","type":100,"folder":"images/1","transfer_ms":"10"}]})");
        const QStringList keys{"good", "hik", "odd", "text", "nofolder", "gone", "slow", "typed"};
        QCOMPARE(cell.core->cameraKeys(), keys);
        const auto status = [&cell](const QString& key) { return cell.settings()->status(key); };
        QTRY_COMPARE(status("good").state, CameraState::Running);
        QTRY_VERIFY(status("gone").message.contains("/gone"));
        for (const QString& key : keys.mid(1)) {
            QCOMPARE(status(key).state, CameraState::Uninitialized);
            QVERIFY2(!status(key).message.isEmpty(), qPrintable(key));
        }
        QVERIFY(status("hik").type == CameraType::Hik && status("hik").message.contains("140"));
        QCOMPARE(status("odd").type, CameraType::Unknown);
        QCOMPARE(status("slow").message,
                 QStringLiteral("相机“slow”：曝光时间 (exposure_ms) 的值“1000000000”不对，应为：0 到 10000 毫秒"));
        QVERIFY(status("typed").message.contains("transfer_ms"));

        cell.core->trigger(keys + QStringList("stranger"));
        QTRY_COMPARE(cell.widths("good").size(), 1);
        QCOMPARE(cell.notes("cameraUnusable").size(), 3);
        QTRY_COMPARE(cell.notes("noImage").size(), 4);
        QVERIFY(cell.notes("unknownCamera").value(0).contains("stranger"));
    }

    void emptyFolderAndSpoiledImagesAreReported()
    {
        CameraCell cell;
        QDir().mkpath(cell.home.path("/images/1"));
        cell.start(oneCamera())->trigger(cam1);
        QTRY_COMPARE(cell.notes("noImage").size(), 1);
        QCOMPARE(cell.settings()->status("cam1").state, CameraState::Opened);
        QVERIFY(cell.preview("cam1"));
        QTRY_VERIFY(cell.notes("preview").join(' ').contains("images/1"));
        cell.saveImage("/images/1/a.png", 5);
        cell.home.write("/images/1/b.bmp", "");
        cell.home.write("/images/1/c.png", "\x89PNG\r\n\x1a\nrubbish");
        cell.home.write("/images/1/d.pgm", "P5 30000 30000 255\n"); // a promise of 900 MB, and nothing behind it
        cell.saveImage("/images/1/e.png", 6);
        for (int i = 0; i < 3; ++i)
            cell.core->trigger(cam1);
        QTRY_COMPARE(cell.widths("cam1"), QVector<int>({5, 6, 5}));
        QTRY_COMPARE(cell.settings()->status("cam1").state, CameraState::Running);
        QCOMPARE(cell.settings()->status("cam1").size, QSize(5, 3));
        const QString skipped = cell.notes("imageSkipped").join('\n');
        QVERIFY2(QRegularExpression("b.bmp.*\n.*c.png.*\n.*30000 × 30000").match(skipped).hasMatch(),
                 qPrintable(skipped));
    }

    void grayImagesComeWithoutPalette_data()
    {
        QImage gray(31, 2, QImage::Format_Grayscale8);
        gray.fill(QColor(90, 90, 90));
        QImage reversed(31, 2, QImage::Format_Indexed8);
        reversed.setColorTable({qRgb(90, 90, 90), qRgb(0, 0, 0)});
        reversed.fill(0);
        QImage coloured = reversed;
        coloured.setColor(1, qRgb(255, 0, 0));
        const auto gray8 = QImage::Format_Grayscale8;
        Table::of<QString, QImage, QImage::Format, PixelFormat>(
            {{"bmp", "a.bmp", gray, gray8, PixelFormat::Gray8},
             {"palette out of order", "a.bmp", reversed, gray8, PixelFormat::Gray8},
             {"coloured palette", "a.bmp", coloured, QImage::Format_RGB32, PixelFormat::Rgb32},
             {"16 bit", "a.png", gray.convertToFormat(QImage::Format_Grayscale16), QImage::Format_Grayscale16,
              PixelFormat::Gray16}});
    }
    void grayImagesComeWithoutPalette()
    {
        const auto [file, saved, delivered, reported] = Table::row<QString, QImage, QImage::Format, PixelFormat>();
        CameraCell cell;
        cell.saveImage("/images/1/" + file, saved);
        cell.start(oneCamera())->trigger(cam1);
        QTRY_COMPARE(cell.images("cam1").value(0).format(), delivered);
        QCOMPARE(cell.images("cam1").value(0).pixelColor(30, 1), QColor(90, 90, 90));
        QTRY_COMPARE(cell.settings()->status("cam1").format, reported);
    }

    void burstIsQueuedUpToALimitAndStopDeliversTheCaptureInHandAtOnce()
    {
        CameraCell cell;
        cell.saveImage("/images/1/a.png", 5);
        ICoreCtrl* core = cell.start(oneCamera(R"("exposure_ms":10000,"transfer_ms":10000)"));
        for (int i = 0; i < 40; ++i)
            core->trigger(cam1);
        const int dropped = cell.notes("triggerDropped").size();
        QVERIFY2(dropped == 23 || dropped == 24, qPrintable(QString::number(dropped)));
        QElapsedTimer clock;
        clock.start();
        core->stop();
        QVERIFY(clock.elapsed() < 10'000);
        QCOMPARE(cell.widths("cam1").size(), 1);
        core->trigger(cam1);
        QCOMPARE(cell.settings()->status("cam1").state, CameraState::Closed);
    }

    void wrongSettingIsRefusedAndNothingChanges()
    {
        CameraCell cell;
        const QByteArray json = R"({"cameras":[{"key":"cam1","type":100,"folder":"f"},{"key":"hik","type":140}]})";
        cell.start(json);
        const QVariantMap before = cell.settings()->settings("cam1");
        const std::tuple<QString, QVariantMap, QString> wrongs[] = {
            {"cam1",
             {{"exposure_ms", -1}, {"folder", "x"}},
             "“cam1”：曝光时间 (exposure_ms) 的值“-1”不对，应为：0 到 10000 毫秒"},
            {"cam1", {{"gain_db", 3}}, "gain_db"},
            {"hik", {{"exposure_ms", 3}}, "140"},
            {"camX", {{"exposure_ms", 3}}, "camX"}};
        for (const auto& [key, settings, said] : wrongs) {
            QString error;
            QVERIFY(!cell.settings()->applySettings(key, settings, &error));
            QVERIFY2(error.contains(said), qPrintable(error));
        }
        QCOMPARE(cell.settings()->settings("cam1"), before);
        QCOMPARE(cell.home.read("/user/camera.json"), json);
    }

    void settingsAreAppliedAndKept()
    {
        CameraCell cell;
        cell.saveImage("/images/1/a.png", 5);
        cell.saveImage("/images/2/a.png", 6);
        cell.start(R"({"note":"夜班","cameras":[{"key":"cam0","type":120,"ip":"10.0.0.1"},
            {"key":"cam1","type":100,"folder":"images/1","exposure_ms":10000,"comment":"left"}]})");
        QString error;
        const QVariantMap wanted{{"folder", "images/2"}, {"exposure_ms", 0}, {"transfer_ms", 2.5}};
        QVERIFY2(cell.settings()->applySettings("cam1", wanted, &error), qPrintable(error));
        QCOMPARE(cell.settings()->settings("cam1"), wanted);
        cell.core->trigger(cam1);
        QTRY_COMPARE(cell.widths("cam1"), QVector<int>{6});

        const QJsonObject stored = cell.stored();
        QCOMPARE(stored["note"].toString(), QStringLiteral("夜班"));
        QCOMPARE(stored["cameras"][0]["ip"].toString(), QStringLiteral("10.0.0.1"));
        QCOMPARE(stored["cameras"][1]["comment"].toString(), QStringLiteral("left"));
        QCOMPARE(stored["cameras"][1]["transfer_ms"].toDouble(), 2.5);

        cell.home.write("/user/camera.json", "{\"cameras\": [oops"); // spoiled by hand meanwhile
        QVERIFY2(cell.settings()->applySettings("cam1", {{"exposure_ms", 3}}, &error), qPrintable(error));
        QCOMPARE(cell.home.keptAside("/user/camera.json").size(), 1);
        QCOMPARE(cell.stored()["note"].toString(), QStringLiteral("夜班"));
    }

    void livePictureIsNeverTakenForAPart()
    {
        CameraCell cell;
        for (int width = 1; width <= 3; ++width)
            cell.saveImage(QStringLiteral("/images/1/%1.png").arg(width), width);
        ICoreCtrl* core = cell.start(oneCamera());
        for (int i = 1; i <= 5; ++i) {
            QVERIFY(cell.preview("cam1"));
            QTRY_COMPARE(cell.notes("preview").size(), i);
        }
        QCOMPARE(cell.notes("preview").join(' ').remove("preview: "), "1 2 3 1 2");
        QCOMPARE(cell.widths("cam1"), QVector<int>());
        core->trigger(cam1);
        core->trigger(cam1);
        QTRY_COMPARE(cell.widths("cam1"), QVector<int>({1, 2}));
        QVERIFY(!cell.preview("stranger"));
        QVERIFY(cell.settings()->applySettings("cam1", {{"exposure_ms", 10000}}, nullptr));
        for (int i = 0; i < 10; ++i)
            cell.preview("cam1");
        QVERIFY2(!cell.preview("cam1"), "they do not pile up");
        QVERIFY(cell.settings()->applySettings("cam1", {{"exposure_ms", 0}, {"transfer_ms", 0}}, nullptr));
        core->trigger(cam1);
        QTRY_COMPARE(cell.widths("cam1"), QVector<int>({1, 2, 3})); // a part goes before
        QTRY_COMPARE(cell.notes("preview").size(), 9);
    }

    void camerasComeChangeAndGoWhileTheOthersWork()
    {
        CameraCell cell;
        cell.saveImage("/images/1/a.png", 5);
        cell.saveImage("/images/2/a.png", 6);
        cell.start(R"({"note":"夜班","cameras":[{"key":"gige","type":120,"ip":"10.0.0.1"}, {"key":" ","type":100},
            {"key":"cam1","type":100,"folder":"images/1","exposure_ms":0},
            {"key":"old","type":100,"folder":"images/1","exposure_ms":10000}]})");
        cell.core->trigger({"old"});
        cell.home.write("/user/camera.json", cell.home.read("/user/camera.json").replace("10.0.0.1", "10.0.0.2"));
        const CameraEntry added{QStringLiteral("左相机"), CameraType::Virtual, {{"folder", "images/2"}}};
        const CameraEntry changed{"gige", CameraType::Virtual, {{"folder", "images/2"}, {"exposure_ms", 1}}};
        QString error;
        QVERIFY2(cell.list()->changeCameras({added, changed}, {"old"}, &error), qPrintable(error));
        const QStringList keys{"gige", "cam1", QStringLiteral("左相机")};
        QCOMPARE(cell.core->cameraKeys(), keys);
        cell.core->trigger(keys);
        for (const QString& key : keys)
            QTRY_COMPARE(cell.widths(key), QVector<int>{key == "cam1" ? 5 : 6});
        QTRY_COMPARE(cell.widths("old"), QVector<int>{5}); // the capture in hand
        QCOMPARE(cell.stored()["cameras"].toArray().at(0)["ip"].toString(), QStringLiteral("10.0.0.2"));
        QCOMPARE(cell.stored()["cameras"].toArray().size(), 4);
        QCOMPARE(cell.settings()->status("old").state, CameraState::Uninitialized);
        cell.stop();
        QCOMPARE(cell.start(QByteArray())->cameraKeys(), keys);
    }

    void wrongCameraListIsRefusedAndNothingChanges_data()
    {
        const auto camera = [](const char* key, const char* setting = "folder", const QVariant& value = "f") {
            return CameraEntry{key, CameraType::Virtual, {{setting, value}}};
        };
        Table::of<CameraEntry, QString, QString>({{"last one", CameraEntry(), "cam1", "1"},
                                                  {"no key", camera(" "), "", "不能为空"},
                                                  {"path", camera("../cam"), "", "点"},
                                                  {"separator", camera("a\\b"), "", "“\\”"},
                                                  {"endless", camera(QByteArray(65, 'x')), "", "64"},
                                                  {"no driver", CameraEntry{"cam2", CameraType::Hik, {}}, "", "140"},
                                                  {"no folder", camera("cam2", "folder", ""), "", "folder"},
                                                  {"one is wrong", camera("cam2", "gain_db", 1), "cam1", "gain_db"},
                                                  {"added by hand meanwhile", camera("hand"), "", "hand"}});
    }
    void wrongCameraListIsRefusedAndNothingChanges()
    {
        const auto [entry, removed, said] = Table::row<CameraEntry, QString, QString>();
        CameraCell cell;
        cell.start(oneCamera());
        if (entry.key == "hand")
            cell.home.write("/user/camera.json", R"({"cameras":[{"key":"cam1"},{"key":"hand"}]})");
        const QByteArray json = cell.home.read("/user/camera.json");
        QString error;
        const QVector<CameraEntry> put(entry.type == CameraType::Unknown ? 0 : 1, entry);
        QVERIFY(!cell.list()->changeCameras(put, removed.split(' ', Qt::SkipEmptyParts), &error));
        QVERIFY2(error.contains(said), qPrintable(error));
        QCOMPARE(cell.core->cameraKeys(), cam1);
        QCOMPARE(cell.home.read("/user/camera.json"), json);
    }
};

QTEST_GUILESS_MAIN(CoreCtrlTest)
#include "tst_kscorectrl.moc"
