#include "dialogs/DialogDriver.h"
#include "dialogs/registration/QCryptokeyUI.h"
#include "licence/Vendor.h"
#include "support/Table.h"
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
        QVERIFY(desk.driver.message("state").startsWith("未注册"));
        QVERIFY(!desk.driver.canPress("registerButton"));
        desk.driver.shoot("registration-unregistered");
        desk.dialog.openFile(desk.home.path("/不存在.lic"));
        QVERIFY2(desk.driver.message().contains("不存在.lic"), qPrintable(desk.driver.message()));
        desk.driver.press("copyButton");
        QCOMPARE(QGuiApplication::clipboard()->text(), Vendor::machine());
        const QByteArray licence = m_vendor.issue();
        desk.paste("\r\n" + QByteArray(licence).replace("\n", "\r\n") + "\r\n\r\n");
        QCOMPARE(desk.driver.message(), "授权有效：某某轮毂厂 (二号线)，2个工位，有效期至2027-11-21");
        desk.driver.shoot("registration-pasted");
        QVERIFY(desk.home.read(licenceFile).isEmpty());
        desk.driver.press("registerButton");
        QCOMPARE(desk.home.read(licenceFile), licence);
        QCOMPARE(desk.finished.value(0).value(0), QVariant(true));
        QVERIFY(desk.driver.message("state").startsWith("已注册：某某轮毂厂"));
        QCOMPARE(desk.driver.message(), "注册成功");
        desk.driver.shoot("registration-registered");
    }

    void refusedFileIsToldAndLeavesTheGoodLicenceAlone_data()
    {
        const auto with = [this](const std::function<void(Licence&)>& change) {
            Licence licence = Vendor::licence();
            change(licence);
            return m_vendor.issue(licence);
        };
        const QByteArray good = m_vendor.issue();
        const QDate today = Vendor::today();
        const QString other = MachineCode::of("B");
        Table::of<QByteArray, QString>(
            {{"text altered", QByteArray(good).replace("2027", "2099"), "被改动过"},
             {"line feed altered", QByteArray(good).replace("\nstations", "\rstations"), "被改动过"},
             {"cut off", good.chopped(20), "被改动过"},
             {"byte that is no text", QByteArray(good).replace("2027", "20\xFF\x37"), "被改动过"},
             {"expired", with([&](Licence& l) { l.issued = l.expires = today.addDays(-1); }), "已于2026-11-20到期"},
             {"other machine", with([&](Licence& l) { l.machine = other; }), other},
             {"one station", with([](Licence& l) { l.stations = 1; }), "只包含1个工位"},
             {"clock set back", with([&](Licence& l) { l.issued = today.addDays(30); }), "时钟"},
             {"picture", QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11), "不是授权文件"},
             {"endless", good + QByteArray(100000, 'x'), "不是授权文件"}});
    }
    void refusedFileIsToldAndLeavesTheGoodLicenceAlone()
    {
        const auto [content, told] = Table::row<QByteArray, QString>();
        Desk desk(m_vendor);
        desk.open(m_vendor.issue());
        desk.driver.press("registerButton");
        const QByteArray good = desk.home.read(licenceFile);
        QVERIFY(!good.isEmpty());
        desk.open(content);
        QVERIFY2(desk.driver.message().contains(told), qPrintable(desk.driver.message()));
        QVERIFY(!desk.driver.canPress("registerButton"));
        QTest::keyClick(&desk.dialog, Qt::Key_Return);
        QCOMPARE(desk.home.read(licenceFile), good);
        QCOMPARE(desk.finished.size(), 1);
        QVERIFY(desk.driver.message("state").startsWith("已注册"));
        desk.driver.shoot("registration-refused");
    }

    void everyTextIsThereInEnglish()
    {
        Desk desk(m_vendor);
        const English english;
        QCoreApplication::sendPostedEvents();
        desk.paste(m_vendor.issue());
        desk.driver.readsInEnglish("Registration", "registration-english", {desk.driver.text<QLabel>("message")});
    }
};

QTEST_MAIN(RegistrationTest)
#include "tst_registration.moc"
