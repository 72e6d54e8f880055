#include "dialogs/DialogDriver.h"
#include "dialogs/registration/QCryptokeyUI.h"
#include "licence/Vendor.h"
#include "support/TempHome.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPlainTextEdit>

namespace {

const QByteArray licenceFile = "/user/licence.lic";

/// A registration dialog on a machine of two stations.
struct Desk
{
    TempHome home;
    Registration registration;
    QCryptokeyUI dialog{registration};
    DialogDriver driver{dialog};
    QSignalSpy finished{&dialog, &QCryptokeyUI::sgRegisterFinish};

    explicit Desk(const Vendor& vendor)
        : registration(
              {home.path(licenceFile), vendor.publicKey(), Vendor::machine(), [] { return 2; }, &Vendor::today})
    {
        dialog.show();
    }

    void paste(const QByteArray& text)
    {
        auto* edit = driver.get<QPlainTextEdit>("licenceEdit");
        QGuiApplication::clipboard()->setText(QString::fromUtf8(text));
        edit->setFocus();
        edit->selectAll();
        QTest::keySequence(edit, QKeySequence::Paste);
    }

    void open(const QByteArray& content)
    {
        home.write("/收到.lic", content);
        dialog.openFile(home.path("/收到.lic"));
    }
};

} // namespace

class RegistrationTest : public QObject
{
    Q_OBJECT

    const Vendor m_vendor;

private slots:
    void pastedLicenceRegisters()
    {
        Desk desk(m_vendor);
        QVERIFY(desk.driver.message("state").startsWith("未注册") && !desk.driver.canPress("registerButton"));
        desk.dialog.openFile(desk.home.path("/不存在.lic"));
        QVERIFY2(desk.driver.message().contains("不存在.lic"), qPrintable(desk.driver.message()));
        desk.driver.press("copyButton");
        QCOMPARE(QGuiApplication::clipboard()->text(), Vendor::machine());
        const QByteArray licence = m_vendor.issue();
        desk.paste("\r\n" + QByteArray(licence).replace("\n", "\r\n") + "\r\n\r\n");
        QCOMPARE(desk.driver.message(), "授权有效：某某轮毂厂 (二号线)，2个工位，有效期至2027-11-21");
        QVERIFY(desk.home.read(licenceFile).isEmpty());
        desk.driver.press("registerButton");
        QCOMPARE(desk.home.read(licenceFile), licence);
        QCOMPARE(desk.finished.value(0).value(0), QVariant(true));
        QVERIFY(desk.driver.message("state").startsWith("已注册：某某轮毂厂"));
        QCOMPARE(desk.driver.message(), "注册成功");
    }
    void machineIsAskedWhileTheDialogIsOpen()
    {
        Registration registration({"none.lic", m_vendor.publicKey(), {}, [] { return 2; }, &Vendor::today});
        QCryptokeyUI dialog(registration);
        const DialogDriver driver(dialog);
        QVERIFY(driver.message("state").startsWith("正在读取") && !driver.canPress("copyButton"));
        const auto candidate = QString::fromUtf8(m_vendor.issue());
        driver.get<QPlainTextEdit>("licenceEdit")->setPlainText(candidate);
        for (const auto& [code, said, good] :
             {std::tuple(QString(), "没有可用的识别码", false), std::tuple(Vendor::machine(), "未注册", true)}) {
            registration.setMachine(code);
            dialog.showMachine();
            QVERIFY(driver.message("state").contains(said) && driver.text("codeEdit") == code);
            QVERIFY(driver.canPress("copyButton") == good && driver.canPress("registerButton") == good);
        }
    }
    void refusedFileIsToldAndLeavesTheGoodLicenceAlone()
    {
        Desk desk(m_vendor);
        desk.open(m_vendor.issue());
        desk.driver.press("registerButton");
        const QByteArray good = desk.home.read(licenceFile);
        QVERIFY(!good.isEmpty());
        Licence oneStation = Vendor::licence();
        oneStation.stations = 1;
        const QPair<QByteArray, QString> refused[] = {{QByteArray(good).replace("2027", "20\xFF\x37"), "被改动过"},
                                                      {m_vendor.issue(oneStation), "只包含1个工位"},
                                                      {good + QByteArray(100000, 'x'), "不是授权文件"}};
        for (const auto& [content, said] : refused) {
            desk.open(content);
            QVERIFY2(desk.driver.message().contains(said), qPrintable(desk.driver.message()));
            QVERIFY(!desk.driver.canPress("registerButton"));
            QTest::keyClick(&desk.dialog, Qt::Key_Return);
            QCOMPARE(desk.home.read(licenceFile), good);
        }
        QCOMPARE(desk.finished.size(), 1);
        QVERIFY(desk.driver.message("state").startsWith("已注册"));
    }
};

QTEST_MAIN(RegistrationTest)
#include "tst_registration.moc"
