#include "CameraCell.h"
#include "Resources.h"
#include "dialogs/cameras/QCameraSettingsUI.h"
#include "viewer/ksImgViewer.h"

namespace {

struct Bench
{
    CameraCell& cell;
    QCameraSettingsUI dialog;
    DialogDriver hand{dialog};

    explicit Bench(CameraCell& of, const QString& key = CameraCell::left())
        : cell(of)
        , dialog(*of.core, of.config, key)
    {
        QObject::connect(&dialog, &QCameraSettingsUI::settingsApplied,
                         [this](const AuditChanges& changes) { cell.audit += changes; });
        dialog.show();
    }

    int pictureWidth() const { return hand.get<ksImgViewer>("viewer")->imageSize().width(); }
    bool isLive() const { return hand.isChecked("liveButton"); }
};

} // namespace

class CameraSettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void livePictureFeedsNoStation()
    {
        CameraCell cell;
        Bench bench(cell);
        bench.hand.press("singleButton");
        QTRY_COMPARE(bench.pictureWidth(), 640);
        QTRY_COMPARE(bench.hand.text<QLabel>("formatLabel"), "GRAY8, 640 × 512");
        QVERIFY(cell.settings()->applySettings(CameraCell::left(), {{"folder", "images/3"}}, nullptr));
        bench.hand.press("liveButton");
        QTRY_COMPARE(bench.pictureWidth(), 1920);
        QVERIFY(bench.isLive());
        QCOMPARE(cell.parts.load(), 0);
        cell.core->trigger({CameraCell::left()});
        QTRY_COMPARE(cell.parts.load(), 1);
        bench.dialog.hide();
        QVERIFY2(!bench.isLive(), "nobody looks");
    }

    void stationsCameraIsLeftAloneOnline()
    {
        CameraCell cell;
        Bench station(cell);
        Bench spare(cell, CameraCell::right());
        station.hand.press("liveButton");
        spare.hand.press("liveButton");
        QTRY_COMPARE(station.pictureWidth(), 640);
        cell.config.onlineMode = true;
        QTRY_VERIFY(!station.isLive() && !station.hand.canPress("singleButton"));
        QTRY_VERIFY(station.hand.message("liveMessage").contains("在线模式"));
        QVERIFY(spare.isLive());
        cell.config.onlineMode = false;
        QTRY_VERIFY(station.hand.canPress("liveButton"));
    }

    void settingsAreAppliedAndTold()
    {
        CameraCell cell;
        Bench bench(cell);
        const QByteArray before = cell.file();
        bench.hand.type("exposureEdit", "１２．５");
        bench.hand.type("folderEdit", "无/此处");
        QTRY_COMPARE(bench.hand.message(), "图像文件夹“" + cell.home.path("/无/此处") + "”不存在");
        QCOMPARE(cell.file(), before);
        bench.hand.press("applyButton"); // it may be a drive that comes later
        QCOMPARE(bench.hand.message(), "已保存");
        QCOMPARE(cell.settings()->settings(CameraCell::left())["exposure_ms"].toDouble(), 12.5);
        QCOMPARE(listed(cell.audit), "camera/左/exposure_ms:1>12.5 camera/左/folder:images/1>无/此处");
        QTRY_VERIFY(bench.hand.message("statusMessage").contains("无/此处"));
        QTRY_COMPARE(bench.hand.text<QLabel>("stateLabel"), "Uninitialized");
        bench.hand.press("singleButton");
        QTRY_VERIFY(bench.hand.message("liveMessage").contains("不存在"));
        bench.hand.shoot("camera-nofolder");
        bench.hand.type("exposureEdit", "99");
        bench.hand.press("cancelButton");
        QCOMPARE(cell.settings()->settings(CameraCell::left())["exposure_ms"].toDouble(), 12.5);
        bench.dialog.show();
        QCOMPARE(bench.hand.text("exposureEdit"), "12.5");
    }

    void fileThatCannotBeWrittenChangesNothing()
    {
        CameraCell cell;
        Bench bench(cell);
        cell.home.write("/user/camera.json", R"({"cameras": []})"); // somebody took the camera out by hand
        bench.hand.type("exposureEdit", "9");
        bench.hand.press("okButton");
        QVERIFY(bench.dialog.isVisible());
        cell.config.onlineMode = true;
        QTRY_VERIFY(bench.hand.message("liveMessage").contains("在线模式")); // the dialog has looked again
        QVERIFY(bench.hand.message().startsWith("未能保存，参数没有改变"));
        QCOMPARE(cell.settings()->settings(CameraCell::left())["exposure_ms"].toDouble(), 1.0);
        QVERIFY(cell.audit.isEmpty());
    }

    void cameraRemovedWhileTheDialogIsOpen()
    {
        CameraCell cell;
        Bench bench(cell);
        bench.hand.press("liveButton");
        QTRY_COMPARE(bench.pictureWidth(), 640);
        bench.hand.type("exposureEdit", "9");
        QVERIFY(cell.remove(CameraCell::left()));
        bench.hand.press("okButton");
        QVERIFY(bench.dialog.isVisible());
        QCOMPARE(bench.hand.message(), "相机“左”已不存在");
        QTRY_VERIFY(!bench.isLive() && !bench.hand.canPress("okButton"));
        bench.hand.shoot("camera-gone");
        QVERIFY(cell.add(CameraCell::left()));
        QTRY_VERIFY(bench.hand.canPress("liveButton") && bench.hand.canPress("okButton"));
        bench.hand.press("liveButton");
        QTRY_COMPARE(bench.pictureWidth(), 1920);
    }

    void secondWindowDoesNotUndoTheFirst()
    {
        CameraCell cell;
        Bench first(cell);
        Bench second(cell);
        Bench watching(cell);
        second.hand.type("transferEdit", "33");
        first.hand.type("exposureEdit", "22");
        first.hand.press("okButton");
        second.hand.press("okButton");
        const QVariantMap now = cell.settings()->settings(CameraCell::left());
        QCOMPARE(now["exposure_ms"].toDouble(), 22.0);
        QCOMPARE(now["transfer_ms"].toDouble(), 33.0);
        QTRY_COMPARE(watching.hand.text("exposureEdit"), "22");
    }

    void tabWalksThroughTheFieldsAsTheyStand()
    {
        CameraCell cell;
        Bench bench(cell);
        QStringList walk;
        QWidget* at = bench.hand.get<QWidget>("exposureEdit");
        for (int i = 0; i < 100 && at->objectName() != "applyButton"; ++i, at = at->nextInFocusChain()) {
            if (at->isVisible() && at->focusPolicy() & Qt::TabFocus && !at->objectName().isEmpty())
                walk << at->objectName();
        }
        QCOMPARE(walk.join(' '), "exposureEdit transferEdit folderEdit folderButton viewer liveButton singleButton "
                                 "okButton cancelButton");
    }

    void everyTextFollowsTheLanguageAndFits()
    {
        CameraCell cell;
        Bench bench(cell);
        bench.hand.press("singleButton");
        QTRY_COMPARE(bench.pictureWidth(), 640);
        bench.hand.fits("camera-zh");
        const English english;
        bench.hand.readsInEnglish("Camera settings", "camera-en", {CameraCell::left()});
        QVERIFY2(bench.dialog.minimumSizeHint().height() <= 740, "does not fit a screen of 1280 x 800");
    }
};

QTEST_MAIN(CameraSettingsTest)
#include "tst_camerasettings.moc"
