#include "licence/MachineCode.h"
#include "licence/Registration.h"
#include "licence/Vendor.h"
#include "platform/MachineIdentity.h"
#include "support/Table.h"
#include "support/TempHome.h"

Q_DECLARE_METATYPE(LicenceRefusal)

namespace {

const QByteArray licenceFile = "/user/licence.lic";

} // namespace

class LicenceTest : public QObject
{
    Q_OBJECT

    const Vendor m_vendor;
    const Rsa::PublicKey m_key{m_vendor.publicKey()};

    Registration registration(const TempHome& home, int stations = 2) const
    {
        return Registration({home.path(licenceFile), m_vendor.publicKey(), Vendor::machine(),
                             [stations] { return stations; }, &Vendor::today});
    }

    LicenceRefusal refusal(const QByteArray& text) const
    {
        return checkLicence(text, m_key, {Vendor::machine(), Vendor::today(), 2}).refusal;
    }

private slots:
    void codeThatSomebodyTypesIsUnderstoodOrRefused()
    {
        const QString code = MachineCode::of(platform::machineIdentity());
        QCOMPARE(code, MachineCode::of(platform::machineIdentity()));
        QVERIFY(QRegularExpression("^([0-9A-Z]{5}-){4}[0-9A-Z]{5}$").match(code).hasMatch());
        QVERIFY(MachineCode::of("machine 1") != MachineCode::of("machine 2"));
        QVERIFY2(MachineCode::of("").isEmpty(), "a machine without an identity has no code that all such share");
        QString typed = code.toLower().replace('0', 'o').replace('1', 'l').replace('-', ' ');
        QCOMPARE(MachineCode::parse("  " + typed + "\n"), code);
        for (QChar& c : typed)
            c = c > ' ' ? QChar(c.unicode() + 0xFEE0) : c; // full width, as Chinese input methods give
        QCOMPARE(MachineCode::parse(typed), code);
        int accepted = 0;
        for (int i = 0; i < code.size(); ++i)
            accepted += !MachineCode::parse(QString(code).replace(i, 1, code[i] == '7' ? "8" : "7")).isEmpty();
        QVERIFY2(accepted <= 5, qPrintable(QString::number(accepted)));
        for (const QString& none : {QString(), code.left(28), code + "7", QString("机器"), code.left(28) + "U"})
            QVERIFY2(MachineCode::parse(none).isEmpty(), qPrintable(none));
    }

    void licenceAlteredInAnyByteIsRefused()
    {
        const QByteArray good = m_vendor.issue();
        QCOMPARE(refusal(good), LicenceRefusal::None);
        for (int i = 0; i < good.size(); ++i) {
            for (const int bits : {0x01, 0x07, 0x20, 0xFF}) {
                QByteArray altered = good;
                altered[i] = char(altered[i] ^ bits);
                QVERIFY2(refusal(altered) != LicenceRefusal::None, altered);
                QVERIFY2(refusal(LicenceText::tidied(altered)) != LicenceRefusal::None, altered);
            }
            QVERIFY2(refusal(good.left(i)) != LicenceRefusal::None, "cut off");
            QVERIFY2(refusal(QByteArray(good).remove(i, 1)) != LicenceRefusal::None, "a byte is lost");
            QVERIFY2(refusal(QByteArray(good).insert(i, ' ')) != LicenceRefusal::None, "a byte came in");
        }
        QCOMPARE(refusal(good + "="), LicenceRefusal::Altered);
        QCOMPARE(refusal(QByteArray(good).replace("stations: 2", "stations: 9")), LicenceRefusal::Altered);
    }

    void licenceThatDoesNotFitIsRefused_data()
    {
        using Refusal = LicenceRefusal;
        const auto with = [this](const std::function<void(Licence&)>& change) {
            Licence licence = Vendor::licence();
            change(licence);
            return m_vendor.issue(licence);
        };
        const QDate today = Vendor::today();
        Table::of<QByteArray, Refusal>(
            {{"nothing", "", Refusal::Missing},
             {"an invoice", "%PDF-1.7\n", Refusal::NotALicence},
             {"a whole disk image", m_vendor.issue() + QByteArray(20000, '\0'), Refusal::NotALicence},
             {"another vendor's", Vendor().issue(), Refusal::Altered},
             {"another machine's", with([](Licence& l) { l.machine = MachineCode::of("x"); }), Refusal::OtherMachine},
             {"clock set back", with([&](Licence& l) { l.issued = today.addDays(2); }), Refusal::NotYet},
             {"issued east of here", with([&](Licence& l) { l.issued = today.addDays(1); }), Refusal::None},
             {"last day", with([&](Licence& l) { l.expires = today; }), Refusal::None},
             {"day after", with([&](Licence& l) { l.issued = l.expires = today.addDays(-1); }), Refusal::Expired},
             {"without end", with([](Licence& l) { l.expires = QDate(); }), Refusal::None},
             {"one station", with([](Licence& l) { l.stations = 1; }), Refusal::TooFewStations}});
    }
    void licenceThatDoesNotFitIsRefused()
    {
        const auto [text, expected] = Table::row<QByteArray, LicenceRefusal>();
        QCOMPARE(refusal(text), expected);
    }

    void nothingCountsWithoutKeyOrMachine()
    {
        const LicenceConditions here{Vendor::machine(), Vendor::today(), 1};
        QCOMPARE(checkLicence(m_vendor.issue(), Rsa::PublicKey(), here).refusal, LicenceRefusal::Altered);
        QVERIFY(!Rsa::PublicKey("-----BEGIN PUBLIC KEY-----\nMA==\n-----END PUBLIC KEY-----\n").isValid());
        QCOMPARE(checkLicence(m_vendor.issue(), m_key, {QString(), Vendor::today(), 1}).refusal,
                 LicenceRefusal::OtherMachine);
    }

    void badLicenceNeverTakesTheGoodOnesPlace()
    {
        const TempHome home;
        Registration registration = this->registration(home);
        QString error;
        QCOMPARE(registration.present().refusal, LicenceRefusal::Missing);
        const QByteArray good = m_vendor.issue();
        const QByteArray mailed = "\xEF\xBB\xBF\r\n " + QByteArray(good).replace("\n", "\r\n") + "\r\n\r\n";
        QVERIFY(registration.submit(mailed, &error).isGood());
        QCOMPARE(home.read(licenceFile), good);
        QVERIFY(registration.present().isGood());
        QCOMPARE(registration.present().licence.customer, Vendor::licence().customer);

        home.write(licenceFile, good + "\r\n"); // an editor's
        QVERIFY(registration.present().isGood() && registration.submit(good, &error).isGood());

        Licence expired = Vendor::licence();
        expired.issued = expired.expires = Vendor::today().addDays(-1);
        for (const QByteArray& bad : {m_vendor.issue(expired), good.chopped(1), QByteArray(), QByteArray("某")})
            QVERIFY(!registration.submit(bad, &error).isGood());
        QCOMPARE(home.read(licenceFile), good);

        Licence next = Vendor::licence();
        next.expires = QDate();
        QVERIFY(registration.submit(m_vendor.issue(next), &error).isGood());
        QVERIFY(!registration.present().licence.expires.isValid());
        QFile previous(registration.previousFile());
        QVERIFY(previous.open(QIODevice::ReadOnly));
        QCOMPARE(previous.readAll(), good);
    }

    void clockPutBackIsNoticedOnce()
    {
        const TempHome home;
        const QDateTime now(QDate(2026, 3, 31), QTime(12, 0));
        QVERIFY(!registration(home).noteTime(now).isValid());
        QVERIFY(!registration(home).noteTime(now.addSecs(-600)).isValid());
        QVERIFY(!registration(home).noteTime(now.addDays(1)).isValid());
        QCOMPARE(registration(home).noteTime(now), now.addDays(1));
        QVERIFY(!registration(home).noteTime(now).isValid());
    }

    void unwritableHomeIsReported()
    {
        const TempHome home;
        home.write("/blocked", "a file where a folder is needed");
        Registration registration({home.path("/blocked/licence.lic"), m_vendor.publicKey(), Vendor::machine(),
                                   [] { return 1; }, &Vendor::today});
        QString error;
        QVERIFY(registration.submit(m_vendor.issue(), &error).isGood());
        QVERIFY2(error.contains("licence.lic"), qPrintable(error));
        QCOMPARE(registration.present().refusal, LicenceRefusal::Missing);
    }
};

QTEST_GUILESS_MAIN(LicenceTest)
#include "tst_licence.moc"
