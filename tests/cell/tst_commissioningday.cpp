// A day of an engineer in the real window, from a fresh demo home: no file is touched. Then the real program is started
// anew, and produces with what was set up.

#include "RunningCell.h"
#include "common/forms/ChoiceBox.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/calibration/CalibrationBench.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "dialogs/cameras/QCameraEditUI.h"
#include "dialogs/cameras/QCameraManagerUI.h"
#include "dialogs/models/QModelEditUI.h"
#include "dialogs/models/QModelMangerUI.h"
#include "dialogs/settings/QSystemSettingUI.h"
#include "host/CMainWin.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QTableView>
#include <QToolBar>

#include <cmath>

namespace {

constexpr int newIndex = 77;
constexpr double newScale = 0.2; // 100 mm between two points that are 500 pixels apart

/// The first wheel of the demo's second camera.
QJsonObject wheelOf(const QString& home)
{
    QFile file(home + QStringLiteral("/images/2/truth.json"));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return QJsonDocument::fromJson(text).object().value("images").toArray().at(0).toObject();
}

/// An engineer at the window.
class Engineer
{
public:
    Engineer()
    {
        m_window.resize(1600, 900);
        m_window.show();
    }

    /// Presses a button of the tool bar; the dialog that it shows.
    template <typename Dialog>
    Dialog& open(const char* action)
    {
        auto* bar = m_window.findChild<QToolBar*>();
        QTest::mouseClick(bar->widgetForAction(m_window.findChild<QAction*>(QLatin1String(action))), Qt::LeftButton);
        for (QWidget* top : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<Dialog*>(top);
            if (dialog && dialog->isVisible())
                return *dialog;
        }
        qFatal("%s shows no dialog", action);
    }

    void goHome()
    {
        QTimer answer;
        QObject::connect(&answer, &QTimer::timeout, [] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                box->button(QMessageBox::Ok)->click();
        });
        answer.start(10);
        QVERIFY(m_window.close());
    }

private:
    CMainWin m_window;
};

} // namespace

class CommissioningDayTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_home = m_dir.path() + QStringLiteral("/家");

    /// As a copy of a model that was taught: a new one has no parameters before somebody teaches it.
    void addModel(Engineer& engineer)
    {
        auto& manager = engineer.open<QModelMangerUI>("actionManage");
        const DialogDriver hand(manager);
        auto* table = hand.get<QTableView>("table");
        const QString taught = wheelOf(m_home).value("model").toString();
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            if (table->model()->index(row, 0).data().toString() == taught)
                table->selectRow(row);
        }
        hand.press("copyButton");
        const DialogDriver fields(*manager.findChild<QModelEditUI*>());
        fields.act({"nameEdit=新轮毂", "indexEdit=" + QString::number(newIndex), "okButton"});
        QVERIFY2(hand.message().contains("已保存"), qPrintable(fields.message()));
        manager.close();
    }

    void calibrate(Engineer& engineer)
    {
        auto& dialog = engineer.open<ksImageCaliUI>("actionStandard");
        const DialogDriver hand(dialog);
        hand.press("m_pbLoadImg");
        auto* chooser = dialog.findChild<QFileDialog*>();
        QVERIFY(chooser);
        emit chooser->fileSelected(m_home + QStringLiteral("/images/2/0001.bmp"));
        chooser->close();
        QTRY_VERIFY(hand.canPress("m_pbLoadImg"));
        hand.press("m_pbLock");
        Markers markers(dialog, 1);
        markers.drag(QStringLiteral("P1"), {100, 100});
        markers.drag(QStringLiteral("P2"), {400, 500});
        hand.act({"m_lineEdit_Length=100", "m_lineEdit_Xoffset=10", "m_lineEdit_Yoffset=20", "m_pbApply"});
        QVERIFY(hand.question().contains(QStringLiteral("比例将由")));
        hand.press("firstAnswer");
        QCOMPARE(hand.text("m_lineEdit_Scale"), QString::number(newScale));
        QCOMPARE(hand.text<QLabel>("label_status"), QStringLiteral("参数已生效"));
        dialog.close();
    }

    static void addCamera(Engineer& engineer)
    {
        auto& manager = engineer.open<QCameraManagerUI>("actionCamera");
        const DialogDriver hand(manager);
        hand.press("addButton");
        const DialogDriver fields(*manager.findChild<QCameraEditUI*>());
        fields.act({"keyEdit=新相机", "folder=images/2", "okButton"});
        hand.press("okButton");
        QVERIFY2(!manager.isVisible(), qPrintable(hand.message()));
    }

    void chooseCameraAndPort(Engineer& engineer) const
    {
        auto& settings = engineer.open<QSystemSettingUI>("actionSystem");
        const DialogDriver hand(settings);
        auto* box = hand.get<ChoiceBox>("cameraBox1");
        QVERIFY(box->findData(QStringLiteral("新相机")) >= 0);
        box->setCurrentIndex(box->findData(QStringLiteral("新相机")));
        hand.act({"portEdit=" + m_home + QStringLiteral("/plc2"), "okButton"});
        QVERIFY2(!settings.isVisible(), qPrintable(hand.message()));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(QDir().mkpath(m_home));
        QCOMPARE(QProcess::execute(QStringLiteral(VALVECELL_BIN_DIR "/wheelgen"), {"--demo", m_home}), 0);
        qputenv("VALVECELL_HOME", m_home.toUtf8());
        QDir::setCurrent(m_home); // the system log lies there
    }

    void engineerSetsUpAModelAndProductionUsesItAfterTheRestart()
    {
        const QJsonObject wheel = wheelOf(m_home);
        {
            PlcEnd firstPort(m_home + QStringLiteral("/plc"));
            QVERIFY(firstPort.plug());
            Engineer engineer;
            addModel(engineer);
            calibrate(engineer);
            addCamera(engineer);
            chooseCameraAndPort(engineer);
            engineer.goHome();
        }
        PlcEnd plc(m_home + QStringLiteral("/plc2"));
        QVERIFY(plc.plug());
        QProcess program;
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QStringLiteral(VALVECELL_BIN_DIR "/valvecell"), {"--home", m_home});
        QVERIFY(QTest::qWaitFor([&] { return plc.heartbeats > 0; }, RunningCell::deadlineMs));
        plc.send('C', {newIndex, 0});
        plc.send('P', {5});
        QVERIFY(QTest::qWaitFor([&] { return plc.replies() == "F"; }, RunningCell::deadlineMs));
        const SComFrame reply = plc.reply(0);
        const double angle = wheel.value("angle").toDouble();
        QVERIFY(std::abs(std::remainder(joined(reply, 2) - angle, 360.0)) < 0.1);
        QVERIFY(std::abs(joined(reply, 4) - (wheel.value("x").toDouble() * newScale + 10)) < newScale);
        QVERIFY(std::abs(joined(reply, 6) - (wheel.value("y").toDouble() * newScale + 20)) < newScale);
        program.terminate();
        QVERIFY(program.waitForFinished(RunningCell::deadlineMs));
        QCOMPARE(program.exitCode(), 0);
    }
};

QTEST_MAIN(CommissioningDayTest)
#include "tst_commissioningday.moc"
