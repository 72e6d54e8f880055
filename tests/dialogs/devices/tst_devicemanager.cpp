#include "config/ksSysConfig.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/devices/QDeviceManagerUI.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialStatus.h>

#include <QClipboard>
#include <QTableWidget>

namespace {

/// A serial module that a test gives its state.
class FakeLine : public ISerialPort, public ISerialStatus
{
public:
    SerialStatus now;
    mutable int asked = 0;
    bool tells = true;

    void setReceiveCallback(QObject*, ReceiveCallback) override {}
    bool open(const QString&, const QString&) override { return true; }
    void close() override {}
    void send(const SComFrame*) override {}
    void* extension(const char*) override { return tells ? static_cast<ISerialStatus*>(this) : nullptr; }
    SerialStatus status() const override
    {
        ++asked;
        return now;
    }
};

struct Bench
{
    TempHome home;
    ksSysConfig config;
    FakeLine line;
    ISerialPort* port = &line;
    QVector<ModuleInfo> modules{
        {"ksCoreCtrl", true, "/opt/valvecell/bin/ksCoreCtrl.so", "0.1.0", {}},
        {"ksbengine", true, "/opt/valvecell/bin/ksbengine.so", {}, {}},
        {"SerialPortTool", true, "/opt/valvecell/bin/SerialPortTool.so", "0.1.0", {}},
        {"QUserInfo", false, "QUserInfo", {}, "Cannot load library QUserInfo: cannot open shared object file"}};
    QDeviceManagerUI dialog{{[this] { return modules; }, [this] { return port; }}, config};
    DialogDriver hand{dialog};

    Bench()
    {
        line.now = {true, "/dev/ttyUSB0", 1200, 4711, 3, 7, 2, 1, {}};
        config.comPort = QStringLiteral("/dev/serial/by-id/plc");
        dialog.show();
    }

    QString cell(int row, int column) const { return hand.get<QTableWidget>("modules")->item(row, column)->text(); }
    QString fact(const char* name) const { return hand.text<QLabel>(name); }
};

} // namespace

class DeviceManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void missingModuleIsShownWithItsReason()
    {
        Bench bench;
        QCOMPARE(told(bench.cell(0, 0), bench.cell(0, 2), bench.cell(1, 2), bench.cell(2, 1), bench.cell(3, 1)),
                 "核心控制 (ksCoreCtrl)|0.1.0|–|正常|不可用");
        QVERIFY(bench.hand.message("problems").contains("用户管理 (QUserInfo)：Cannot load library"));
        bench.hand.press("copyButton");
        const QString copied = QGuiApplication::clipboard()->text();
        for (const char* told : {"/opt/valvecell/bin/ksbengine.so", "Cannot load library QUserInfo", "4711",
                                 "/dev/serial/by-id/plc, 115200"})
            QVERIFY2(copied.contains(told), qPrintable(copied));
    }

    void cableUnpluggedAndBackIsSeenWithoutATouch()
    {
        Bench bench;
        QCOMPARE(bench.fact("stateLabel"), "已打开");
        bench.line.now.open = false;
        bench.line.now.lastError = QStringLiteral("/dev/ttyUSB0: No such device");
        QTRY_COMPARE(bench.fact("stateLabel"), "未打开");
        QVERIFY(bench.hand.message("lineMessage").contains("No such device"));
        bench.line.now.open = true;
        bench.line.now.framesIn = 1300;
        bench.dialog.hide();
        const int asked = bench.line.asked;
        Bench other;
        QTRY_VERIFY(other.line.asked > 1);
        QCOMPARE(bench.line.asked, asked); // hidden, it costs nothing
        bench.dialog.show();
        QCOMPARE(bench.fact("inLabel"), "1300");
    }

    void lineThatTellsNothing()
    {
        Bench bench;
        bench.line.tells = false;
        for (ISerialPort* const port : {static_cast<ISerialPort*>(&bench.line), static_cast<ISerialPort*>(nullptr)}) {
            bench.port = port;
            bench.dialog.hide();
            bench.dialog.show(); // looks anew
            const QString said = bench.hand.message("lineMessage");
            QVERIFY2(said.contains(port ? "不提供状态" : "没有串口模块"), qPrintable(said));
            QCOMPARE(bench.fact("inLabel"), "–");
        }
    }
};

QTEST_MAIN(DeviceManagerTest)
#include "tst_devicemanager.moc"
