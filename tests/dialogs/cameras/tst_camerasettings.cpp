#include "CameraCell.h"
#include "Resources.h"
#include "common/forms/ChoiceBox.h"
#include "dialogs/cameras/CameraFeatureModel.h"
#include "dialogs/cameras/PictureMeasures.h"
#include "dialogs/cameras/QCameraSettingsUI.h"
#include "support/FakeCameras.h"
#include "support/Table.h"
#include "viewer/ksImgViewer.h"

#include <QTabWidget>
#include <QTreeView>

namespace {

/// A module of somebody else, with a camera of whatever it describes.
struct OtherModule : FakeCameras
{
    using Kind = CameraParameter::Kind;

    OtherModule()
        : FakeCameras({ICameraSettings::id, ICameraParameters::id, ICameraFeatures::id, ICameraPreview::id})
    {
        keys = QStringList("cam");
        stored = {{"exposure_ms", 5.0}, {"gain_db", 3.0}, {"address", "10.0.0.7"}, {"serial", "A1"}};
        described = {
            {"trigger", "触发方式(&T)", Kind::Choice, "free", 0, 0, {}, {{"free", "连续"}, {"line1", "外部线1"}}, {}},
            {"gamma", "伽马", Kind::Number, 1.0, 0.25, 4, "级", {}, "1 为线性"},
            {"binning", "合并", Kind::Whole, 1, 1, 4, {}, {}, {}},
            {"mirror", "镜像", Kind::Switch, false, 0, 0, {}, {}, {}},
            {"address", "地址", Kind::Text, "10.0.0.1", 0, 0, {}, {}, {}},
            CameraParameter::imageFolder()};
    }
};

/// A picture of stripes across, two of 250 and two of `dark`, blurred or not; a tenth of it overexposed.
QImage stripes(int dark, bool blurred)
{
    QImage image(200, 100, QImage::Format_Grayscale8);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.scanLine(y)[x] = uchar(x < 20 ? 255 : blurred ? (250 + dark) / 2 : x / 2 % 2 ? 250 : dark);
    }
    return image;
}

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

    void formShowsWhatTheModuleDescribes()
    {
        OtherModule module;
        const ksGlobalConfig config;
        QCameraSettingsUI dialog(module, config, "cam");
        dialog.show();
        const DialogDriver hand(dialog);
        QCOMPARE(hand.text<QLabel>("triggerCaption"), "触发方式(&T)");
        QCOMPARE(hand.text<QLabel>("gammaUnit"), "级");
        QCOMPARE(hand.get<QWidget>("gamma")->toolTip(), "1 为线性");
        QCOMPARE(hand.get<QWidget>("trigger")->accessibleName(), "触发方式");
        QCOMPARE(hand.text("address"), "10.0.0.7");
        QVERIFY2(!dialog.findChild<QWidget*>("exposure_ms"), "it is not described");

        auto* choice = hand.get<ChoiceBox>("trigger");
        choice->setCurrentIndex(choice->findText("外部线1"));
        hand.type("gamma", "2.5");
        hand.type("binning", "２");
        hand.press("mirror");
        hand.type("folder", "images/1");
        QEvent asksAgain(QEvent::LanguageChange);
        QCoreApplication::sendEvent(&dialog, &asksAgain);
        hand.press("applyButton"); // what was typed is still there
        const QVariantMap wanted{{"exposure_ms", 5.0},    {"gain_db", 3.0},     {"serial", "A1"},
                                 {"address", "10.0.0.7"}, {"trigger", "line1"}, {"gamma", 2.5},
                                 {"binning", 2},          {"mirror", true},     {"folder", "images/1"}};
        QCOMPARE(module.stored, wanted);
        QCOMPARE(module.stored["binning"].userType(), int(QMetaType::Int));
        QCOMPARE(module.stored["mirror"].userType(), int(QMetaType::Bool));
        module.described.append(CameraParameter::gain()); // the device can do more after all
        QCoreApplication::sendEvent(&dialog, &asksAgain);
        QVERIFY(hand.get<QWidget>("gain_db")->isVisible());
    }

    void wrongValueIsNamedWithCameraParameterValueAndRange_data()
    {
        const QVariant list = QStringList{"free"};
        Table::of<QString, QVariant, QString>(
            {{"choice", "trigger", "laser", "触发方式 (trigger) 的值“laser”不对，应为：free / line1"},
             {"above", "gamma", 4.5, "伽马 (gamma) 的值“4.5”不对，应为：0.25 到 4 级"},
             {"no number", "gamma", qQNaN(), "伽马 (gamma) 的值“nan”不对，应为：0.25 到 4 级"},
             {"number as a text", "gamma", "1", "“1”不对"},
             {"fraction", "binning", 1.5, "合并 (binning) 的值“1.5”不对，应为：整数 1 到 4"},
             {"switch", "mirror", 1, "应为：true / false"},
             {"blank", "address", " ", "地址 (address)"},
             {"list", "address", list, "地址 (address)"},
             {"unknown", "focus", 1, "没有参数“focus”"},
             {"right", "binning", 4.0, ""}});
    }
    void wrongValueIsNamedWithCameraParameterValueAndRange()
    {
        const auto [name, value, said] = Table::row<QString, QVariant, QString>();
        OtherModule module;
        const QString problem = CameraParameters::problem("左", module.described, {{name, value}});
        QVERIFY2(problem.contains(said), qPrintable(problem));
        QCOMPARE(problem.startsWith("相机“左”："), !said.isEmpty());
        module.stored.insert(name, value); // as a plant's file may hold it
        if (name == "trigger") {
            const ksGlobalConfig config;
            QCameraSettingsUI dialog(module, config, "cam");
            dialog.show();
            DialogDriver(dialog).type("folder", "images");
            QCOMPARE(DialogDriver(dialog).message(), said);
            QVERIFY(!DialogDriver(dialog).canPress("okButton"));
        }
    }

    void moduleWithoutDescriptionShowsTheSettingsThatAllShare()
    {
        OtherModule module;
        module.offers.removeAll(ICameraParameters::id);
        const ksGlobalConfig config;
        QCameraSettingsUI dialog(module, config, "cam");
        dialog.show();
        const DialogDriver hand(dialog);
        hand.type("exposure_ms", "7.5");
        hand.type("gain_db", "61");
        QCOMPARE(hand.message(), "增益：应在-20到60之间");
        hand.type("gain_db", "3");
        QVERIFY2(!dialog.findChild<QWidget*>("address"), "nobody knows what it is");
        hand.press("okButton");
        QCOMPARE(module.stored,
                 QVariantMap({{"exposure_ms", 7.5}, {"gain_db", 3.0}, {"address", "10.0.0.7"}, {"serial", "A1"}}));
    }

    void settingThatTheCameraHasNotIsGreyAndSaysWhy()
    {
        OtherModule module;
        module.missing = {{"gamma", "相机没有伽马"}};
        const ksGlobalConfig config;
        QCameraSettingsUI dialog(module, config, "cam");
        dialog.show();
        const DialogDriver hand(dialog);
        auto* gamma = hand.get<QWidget>("gamma");
        QVERIFY(!gamma->isEnabled() && gamma->toolTip() == "相机没有伽马");
        QVERIFY(hand.get<QLabel>("gammaMissing")->isVisible());
        hand.type("folder", "images/1");
        hand.type("binning", "2");
        hand.press("applyButton");
        QVERIFY2(!module.stored.contains("gamma") && module.stored["binning"] == 2, "nobody asked for a gamma");
        module.missing.clear(); // the camera was exchanged
        QTRY_VERIFY(gamma->isEnabled() && !hand.get<QLabel>("gammaMissing")->isVisible());
        QCOMPARE(gamma->toolTip(), "1 为线性");
    }

    void measuresTellLightAndFocus()
    {
        const PictureMeasures sharp = measurePicture(stripes(50, false));
        QVERIFY2(std::abs(sharp.overexposed - 0.096) < 0.001, qPrintable(QString::number(sharp.overexposed)));
        QVERIFY(std::abs(sharp.histogram[255] - sharp.overexposed) < 1e-9 && sharp.histogram[50] > 0.4);
        QVERIFY(measurePicture(stripes(50, true)).focus < sharp.focus / 10);
        for (QImage::Format format : {QImage::Format_Grayscale16, QImage::Format_RGB888, QImage::Format_RGB32}) {
            const PictureMeasures other = measurePicture(stripes(50, false).convertToFormat(format));
            QVERIFY(std::abs(other.focus / sharp.focus - 1) < 0.05 && other.overexposed == sharp.overexposed);
        }
        QCOMPARE(measurePicture(stripes(50, false).scaled(4000, 2000)).histogram.size(), sharp.histogram.size());
        for (const QSize size : {QSize(), QSize(1, 1), QSize(2, 200)})
            QCOMPARE(measurePicture(QImage(size, QImage::Format_Grayscale8)).focus, 0.0);
    }

    void ringIsTurnedToTheBestFocusAndBack()
    {
        OtherModule module;
        module.statisticsNow = {100, 2, 7, 9, 1, 12.5};
        const ksGlobalConfig config;
        QCameraSettingsUI dialog(module, config, "cam");
        dialog.show();
        const DialogDriver hand(dialog);
        const auto figures = [&] { return hand.text<QLabel>("focusLabel").split("，最大 "); };
        module.picture = stripes(50, false);
        hand.press("singleButton");
        QTRY_COMPARE(figures().size(), 2);
        const QString best = figures().last();
        module.picture = stripes(50, true);
        hand.press("singleButton");
        QTRY_VERIFY(figures().first() != best);
        QCOMPARE(figures().last(), best);
        QCOMPARE(hand.text<QLabel>("overexposedLabel"), "9.6 %");
        hand.press("forgetButton");
        QCOMPARE(figures().last(), figures().first());
        QCOMPARE(hand.text<QLabel>("statisticsLabel"),
                 "每秒 12.5 幅，丢失数据包 7（重发 9），不完整图像 2，重新打开 1 次");
    }

    void expertChangesAFeatureOfTheCamera()
    {
        using Feature = CameraFeature;
        OtherModule module;
        module.features = {
            {"Rate", "Frame rate", "Acquisition", Feature::Kind::Number, 10.0, 0.5, 50, "Hz", {}, "per second", {}},
            {"Width", {}, "Image", Feature::Kind::Whole, qlonglong(640), 16, 5e9, {}, {}, {}, {}},
            {"Model", {}, "Device", Feature::Kind::Text, "X1", 0, 0, {}, {}, {}, "只读"},
            {"Reset", {}, "Device", Feature::Kind::Command, {}, 0, 0, {}, {}, {}, {}}};
        module.stored["folder"] = "images"; // OK could be pressed
        const ksGlobalConfig config;
        QCameraSettingsUI dialog(module, config, "cam");
        AuditChanges audit;
        connect(&dialog, &QCameraSettingsUI::settingsApplied, [&](const AuditChanges& changes) { audit += changes; });
        dialog.show();
        const DialogDriver hand(dialog);
        hand.get<QTabWidget>("pages")->setCurrentIndex(1);
        auto* model = hand.get<QTreeView>("tree")->model();
        QTRY_COMPARE(model->rowCount(), 3);
        const auto value = [model](int group, int row = 0) {
            return model->index(row, CameraFeatureModel::Value, model->index(group, 0));
        };
        QCOMPARE(value(0).data().toString(), "10 Hz");
        QVERIFY2(!model->setData(value(2), "X2"), "it is locked");
        QVERIFY(!model->setData(value(1), "6.5") && !model->setData(value(0), "51"));
        QVERIFY(module.written.isEmpty() && value(0).data(Qt::ToolTipRole).toString().contains("51不在0.5到50之间"));
        QCOMPARE(value(0).data().toString(), "10 Hz");

        auto* tree = hand.get<QTreeView>("tree");
        tree->setFocus();
        tree->setCurrentIndex(value(0));
        tree->edit(value(0));
        auto* field = tree->viewport()->findChild<QLineEdit*>();
        field->setText("２０");
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(module.written.size(), 1);
        QVERIFY2(dialog.isVisible(), "the key was meant for the field");
        QVERIFY2(!model->setData(value(0), "30"), "one is on its way");
        QVERIFY(model->setData(value(1), "4000000000"));
        QVERIFY(model->setData(value(2, 1), true));
        QCOMPARE(module.written.join(' '), "Rate=20 Width=4000000000 Reset=");
        module.features[1].value = qlonglong(4000000000);
        module.writes[0]("busy");
        module.writes[1]({});
        module.writes[2]({});
        QTRY_COMPARE(value(1).data().toString(), "4000000000");
        QCOMPARE(value(0).data().toString(), "10 Hz");
        QCOMPARE(value(0).data(Qt::ToolTipRole).toString(), "Rate：busy");
        QTRY_COMPARE(listed(audit), "camera/cam/Width:640>4000000000 camera/cam/Reset:>executed");

        hand.type("filterEdit", "PER SEC");
        QCOMPARE(model->rowCount(), 1);
        QTest::keyClick(hand.get<QLineEdit>("filterEdit"), Qt::Key_Return);
        QVERIFY(dialog.isVisible());
        module.readError = "相机不在";
        tree->setCurrentIndex({});
        hand.press("readButton");
        hand.type("filterEdit", "");
        QTRY_VERIFY(hand.message("note").contains("相机不在"));
        QVERIFY2(model->rowCount() == 3, "what was read stays");
    }

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
        QVERIFY(cell.delivered.images(CameraCell::left()).isEmpty());
        cell.core->trigger({CameraCell::left()});
        QTRY_COMPARE(cell.delivered.images(CameraCell::left()).size(), 1);
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

    void settingsAreAppliedAndReported()
    {
        CameraCell cell;
        Bench bench(cell);
        const QByteArray before = cell.file();
        bench.hand.type("exposure_ms", "１２．５");
        bench.hand.type("folder", "无/此处");
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
        bench.hand.type("exposure_ms", "99");
        bench.hand.press("cancelButton");
        QCOMPARE(cell.settings()->settings(CameraCell::left())["exposure_ms"].toDouble(), 12.5);
        bench.dialog.show();
        QCOMPARE(bench.hand.text("exposure_ms"), "12.5");
    }

    void fileThatCannotBeWrittenChangesNothing()
    {
        CameraCell cell;
        Bench bench(cell);
        cell.home.write("/user/camera.json", R"({"cameras": []})"); // somebody took the camera out by hand
        bench.hand.type("exposure_ms", "9");
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
        bench.hand.type("exposure_ms", "9");
        QVERIFY(cell.remove(CameraCell::left()));
        bench.hand.press("okButton");
        QVERIFY(bench.dialog.isVisible());
        QCOMPARE(bench.hand.message(), "相机“左”已不存在");
        QTRY_VERIFY(!bench.isLive() && !bench.hand.canPress("okButton"));
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
        second.hand.type("transfer_ms", "33");
        first.hand.type("exposure_ms", "22");
        first.hand.press("okButton");
        second.hand.press("okButton");
        const QVariantMap now = cell.settings()->settings(CameraCell::left());
        QCOMPARE(now["exposure_ms"].toDouble(), 22.0);
        QCOMPARE(now["transfer_ms"].toDouble(), 33.0);
        QTRY_COMPARE(watching.hand.text("exposure_ms"), "22");
    }

    void tabWalksThroughTheFieldsAsTheyStand()
    {
        CameraCell cell;
        Bench bench(cell);
        QStringList walk;
        QWidget* at = bench.hand.get<QWidget>("exposure_ms");
        for (int i = 0; i < 100 && at->objectName() != "applyButton"; ++i, at = at->nextInFocusChain()) {
            if (at->isVisible() && at->focusPolicy() & Qt::TabFocus && !at->objectName().isEmpty())
                walk << at->objectName();
        }
        QCOMPARE(walk.join(' '),
                 "exposure_ms transfer_ms folder folderButton viewer liveButton singleButton forgetButton "
                 "okButton cancelButton");
    }
};

QTEST_MAIN(CameraSettingsTest)
#include "tst_camerasettings.moc"
