#include "CameraCell.h"
#include "dialogs/cameras/CameraDraft.h"
#include "dialogs/cameras/CameraNames.h"
#include "dialogs/cameras/QCameraEditUI.h"
#include "dialogs/cameras/QCameraManagerUI.h"
#include "support/FakeCameras.h"
#include "support/Table.h"

#include <QTableWidget>

namespace {

/// The manager on a cell's cameras, and a hand for it and for the fields that it opens.
struct Bench
{
    CameraCell cell;
    QCameraManagerUI dialog{*cell.core, cell.config};
    DialogDriver hand{dialog};
    DialogDriver fields{*dialog.findChild<QCameraEditUI*>()};

    Bench()
    {
        QObject::connect(&dialog, &QCameraManagerUI::camerasApplied,
                         [this](const AuditChanges& changes) { cell.audit += changes; });
        dialog.show();
    }

    QString at(int row, int column) const
    {
        return hand.get<QTableView>("table")->model()->index(row, column).data().toString();
    }
    int rows() const { return hand.get<QTableView>("table")->model()->rowCount(); }
    void choose(int row) const { hand.get<QTableView>("table")->selectRow(row); }

    void add(const QString& key, const QString& folder) const
    {
        hand.press("addButton");
        fields.type("keyEdit", key);
        fields.type("folder", folder);
        fields.press("okButton");
    }
};

} // namespace

class CameraManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void codesHaveTheNamesThatPlantsKnow()
    {
        QStringList names;
        for (int code = 0; code < 1000; code += 10)
            names << CameraNames::of(CameraType(code));
        names.removeDuplicates();
        for (int code = 0; code <= 5; ++code)
            names << CameraNames::of(CameraState(code));
        for (int code : {0, 1, 2, 3, 4, 5, 11, 12})
            names << CameraNames::of(PixelFormat(code));
        QCOMPARE(names.join('|'), "Unknown(0)|Virtual Camera(100)|BitFlow(110)|Gige(120)|USB Camera(130)|HIK(140)|"
                                  "Vimba(150)|Baumer(160)|AdLink(170)|DaHua(180)|Basler(190)|PtGray(200)|Euresys(220)|"
                                  "Dalsa(230)|Uninitialized|Initialized|Opened|Running|Paused|Closed|"
                                  "None|GRAY8|RGB24|RGB32|GRAY16|RGB48|BGR24|BGR32");
    }

    void listShowsHowTheCamerasDoAndWhoUsesThem()
    {
        Bench bench;
        QCOMPARE(bench.rows(), 2);
        QCOMPARE(bench.at(0, CameraDraft::Key), CameraCell::left());
        QCOMPARE(bench.at(0, CameraDraft::Type), "Virtual Camera(100)");
        QTRY_COMPARE(bench.at(0, CameraDraft::State), "Running");
        QCOMPARE(bench.at(0, CameraDraft::Stations), "工位1");
        QCOMPARE(bench.at(1, CameraDraft::Stations), "");
        bench.cell.core->trigger({CameraCell::left()});
        QTRY_COMPARE(bench.at(0, CameraDraft::Format), "GRAY8");
        QDir(bench.cell.home.path("/images/2")).removeRecursively();
        bench.cell.core->trigger({CameraCell::right()});
        bench.cell.core->trigger({CameraCell::right()});
        QTRY_VERIFY(bench.at(1, CameraDraft::Note).contains("images/2"));
    }

    void engineerAddsACameraAndItWorksAtOnce()
    {
        Bench bench;
        const QByteArray before = bench.cell.file();
        bench.add("第三台", "images/3");
        QCOMPARE(bench.at(2, CameraDraft::Note), "新增，尚未应用");
        bench.choose(0);
        bench.hand.press("removeButton");
        QVERIFY(bench.hand.message().contains("工位1"));
        bench.hand.press("cancelButton");
        QCOMPARE(bench.cell.file(), before);
        bench.dialog.show();
        QVERIFY(bench.rows() == 2 && bench.at(0, CameraDraft::Note).isEmpty());
        bench.add("第三台", "images/3");
        bench.hand.press("applyButton");
        QCOMPARE(bench.hand.message(), "已保存");
        QVERIFY(bench.cell.file().contains("夜班"));
        QTRY_COMPARE(bench.at(2, CameraDraft::State), "Running");
        QCOMPARE(listed(bench.cell.audit), "camera/第三台:>Virtual Camera(100) camera/第三台/exposure_ms:>5 "
                                           "camera/第三台/folder:>images/3 camera/第三台/transfer_ms:>10");
        bench.choose(2);
        bench.hand.press("modifyButton");
        QVERIFY(bench.fields.get<QLineEdit>("keyEdit")->isReadOnly());
        bench.fields.type("exposure_ms", "２.５");
        bench.fields.press("okButton");
        bench.hand.press("okButton");
        QVERIFY(!bench.dialog.isVisible());
        QCOMPARE(bench.cell.settings()->settings("第三台")["exposure_ms"].toDouble(), 2.5);
        QVERIFY(listed(bench.cell.audit).endsWith("camera/第三台/exposure_ms:5>2.5"));
    }

    void wrongFieldIsNamedWhileItIsTyped_data()
    {
        Table::of<QByteArray, QString, QString>({{"no name", "keyEdit", " ", "不能为空"},
                                                 {"taken", "keyEdit", CameraCell::right(), "已有"},
                                                 {"taken by a new one", "keyEdit", "刚加的A", "已有"},
                                                 {"looks like one", "keyEdit", "刚加的ａ", "看起来相同"},
                                                 {"letters", "exposure_ms", "1O", "曝光时间：“1O”不是数字"},
                                                 {"negative", "exposure_ms", "-1", "应在0到10000之间"},
                                                 {"no folder", "folder", "", "图像文件夹：不能为空"},
                                                 {"full-width digits", "exposure_ms", "１５．５", ""}});
    }
    void wrongFieldIsNamedWhileItIsTyped()
    {
        const auto [field, typed, problem] = Table::row<QByteArray, QString, QString>();
        Bench bench;
        bench.add("刚加的A", "images/3");
        bench.hand.press("addButton");
        bench.fields.type("keyEdit", "cam 3-左.1");
        bench.fields.type("folder", "images/3");
        QVERIFY2(bench.fields.canPress("okButton"), qPrintable(bench.fields.message()));
        bench.fields.type(field, typed);
        QVERIFY2(bench.fields.message().contains(problem), qPrintable(bench.fields.message()));
        QCOMPARE(bench.fields.canPress("okButton"), problem.isEmpty());
    }

    void removingAStationsCameraAsksFirst()
    {
        Bench bench;
        bench.choose(0);
        bench.hand.press("removeButton");
        bench.hand.press("okButton");
        QVERIFY(bench.hand.question().contains("工位1不能拍照"));
        bench.hand.press("noAnswer");
        QVERIFY(bench.dialog.isVisible() && bench.cell.audit.isEmpty());
        bench.hand.press("applyButton");
        bench.hand.press("firstAnswer");
        QCOMPARE(bench.cell.core->cameraKeys(), QStringList(CameraCell::right()));
        QCOMPARE(listed(bench.cell.audit), "camera/左:Virtual Camera(100)>");
        QVERIFY(bench.hand.message().contains("重新启动"));
        bench.choose(0);
        bench.hand.press("removeButton");
        QVERIFY2(!bench.hand.canPress("okButton"), "without a camera the program does not start");
        bench.hand.press("removeButton");
        QVERIFY(bench.hand.canPress("okButton"));
    }

    void twoWindowsDoNotUndoEachOther()
    {
        Bench bench;
        bench.add("新", "images/3");
        bench.choose(1);
        bench.hand.press("modifyButton");
        QVERIFY(bench.cell.remove(CameraCell::right()) && bench.cell.add("新")); // as another window does
        bench.fields.type("exposure_ms", "7");
        bench.fields.press("okButton");
        bench.hand.press("okButton");
        QVERIFY(bench.dialog.isVisible());
        QCOMPARE(bench.hand.message(), "已有名为“新”的相机");
        QTRY_COMPARE(bench.rows(), 2); // the camera that is gone has gone from the list
        bench.choose(1);
        bench.hand.press("removeButton"); // the own draft of it
        bench.hand.press("okButton");
        QVERIFY(!bench.dialog.isVisible());
        QCOMPARE(bench.cell.core->cameraKeys(), QStringList({CameraCell::left(), QStringLiteral("新")}));
    }

    void changeElsewhereOfTheSameCameraStays()
    {
        Bench bench;
        bench.choose(0);
        bench.hand.press("modifyButton");
        bench.fields.type("exposure_ms", "7");
        bench.fields.press("okButton");
        QVERIFY(bench.cell.settings()->applySettings(CameraCell::left(), {{"transfer_ms", 44}}, nullptr));
        bench.hand.press("okButton");
        const QVariantMap now = bench.cell.settings()->settings(CameraCell::left());
        QCOMPARE(now["exposure_ms"].toDouble(), 7.0);
        QCOMPARE(now["transfer_ms"].toDouble(), 44.0);
    }

    void foundCameraFillsInTheFields()
    {
        FakeCameras module({ICameraSettings::id, ICameraParameters::id, ICameraList::id, ICameraDiscovery::id});
        module.described = {{"address", "地址", CameraParameter::Kind::Text, "", 0, 0, {}, {}, {}},
                            CameraParameter::exposure()};
        const ksGlobalConfig config;
        QCameraManagerUI dialog(module, config);
        dialog.show();
        const DialogDriver hand(dialog);
        const DialogDriver fields(*dialog.findChild<QCameraEditUI*>());
        hand.press("addButton");
        QVERIFY(module.discovering && fields.text<QLabel>("searchState").contains("正在搜索"));
        fields.type("exposure_ms", "7");
        const auto found = [](const char* serial, const char* user, const char* problem) {
            return FoundCamera{CameraType::Gige,     "V", "M", serial, user, "10.0.0.9", "cam1", problem,
                               {{"address", serial}}};
        };
        module.lastFound = {found("S1", "cam1", "不在同一网段"), found("S2", "", "")};
        module.discovering = false;
        auto* table = fields.get<QTableWidget>("foundTable");
        QTRY_COMPARE(table->rowCount(), 2);
        QVERIFY2(fields.text("keyEdit").isEmpty(), "nobody chose one");
        table->selectRow(0);
        QCOMPARE(fields.text<QLabel>("searchState"), "已配置为“cam1”；不在同一网段");
        QCOMPARE(fields.text("keyEdit"), "M"); // "cam1" is taken
        table->selectRow(1);
        QCOMPARE(fields.text("address"), "S2");
        QCOMPARE(fields.text("exposure_ms"), "7");
        QCOMPARE(fields.get<QComboBox>("typeBox")->currentData().toInt(), int(CameraType::Gige));
        fields.type("keyEdit", "自己取的");
        module.lastFound.clear();
        fields.press("searchButton");
        module.discovering = false;
        QTRY_VERIFY(fields.text<QLabel>("searchState").startsWith("没有找到相机"));
        QCOMPARE(fields.text("keyEdit"), "自己取的");
        fields.press("okButton");
        hand.press("okButton");
        QVERIFY(module.keys.contains("自己取的") && module.stored["address"] == "S2");
    }

    void fileChangedByHandMeanwhileIsKept()
    {
        Bench bench;
        bench.add("新", "images/3");
        const QByteArray hand = R"({"note": "早班", "cameras": [{"key": "手", "type": 100}, {"key": "新"}]})";
        bench.cell.home.write("/user/camera.json", hand);
        bench.hand.press("okButton");
        QVERIFY2(bench.hand.message().startsWith("未能保存，相机没有改变"), qPrintable(bench.hand.message()));
        QCOMPARE(bench.cell.file(), hand);
        bench.cell.home.write("/user/camera.json", QByteArray(hand).replace("新", "旧"));
        bench.hand.press("okButton");
        QVERIFY(!bench.dialog.isVisible());
        QVERIFY(bench.cell.file().contains("早班") && bench.cell.file().contains("手"));
    }
};

QTEST_MAIN(CameraManagerTest)
#include "tst_cameramanager.moc"
