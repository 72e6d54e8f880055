#include "licence/MachineCode.h"
#include "licence/RsaKey.h"
#include "support/Table.h"
#include "support/TempHome.h"

namespace {

struct Answer
{
    int code = -1;
    QString out;
    QString error;
};

Answer run(const QStringList& arguments)
{
    QProcess tool;
    tool.start(QStringLiteral(VALVECELL_BIN_DIR "/licencetool"), arguments);
    if (!tool.waitForFinished(60000))
        qFatal("%s", qPrintable(tool.errorString()));
    return {tool.exitCode(), QString::fromUtf8(tool.readAllStandardOutput()).remove('\r'),
            QString::fromUtf8(tool.readAllStandardError())};
}

} // namespace

class LicenceToolTest : public QObject
{
    Q_OBJECT

    TempHome m_home;
    const QString m_secret = m_home.path("/keys/private.pem");
    const QString m_open = m_home.path("/keys/public.pem");
    const QString m_licence = m_home.path("/某厂.lic");
    const QString m_machine = MachineCode::of("customer's machine");

private slots:
    void initTestCase()
    {
        const Answer made = run({"keygen", "--out", m_home.path("/keys")});
        QVERIFY2(made.code == 0, qPrintable(made.error));
    }

    void secondRunKeepsTheKey()
    {
        const QByteArray before = m_home.read("/keys/private.pem");
        QVERIFY(Rsa::PrivateKey(before).isValid());
        QCOMPARE(run({"keygen", "--out", m_home.path("/keys")}).code, 0);
        QCOMPARE(m_home.read("/keys/private.pem"), before);
#ifdef Q_OS_UNIX // elsewhere the folder's rights decide
        QVERIFY2(!(QFile::permissions(m_secret) & (QFile::ReadGroup | QFile::ReadOther)), "the secret is to be one");
#endif
    }

    void issuedLicenceCountsWhereItIsMeantTo()
    {
        const Answer issued =
            run({"issue", "--key", m_secret, "--machine", m_machine.toLower(), "--customer", "某厂", "--stations", "1",
                 "--issued", "2026-01-01", "--expires", "2026-12-31", "--out", m_licence});
        QVERIFY2(issued.code == 0, qPrintable(issued.error));
        const QStringList verify{"verify", "--key", m_open, m_licence};
        const Answer good = run(verify + QStringList{"--machine", m_machine, "--date", "2026-12-31"});
        QCOMPARE(good.code, 0);
        QVERIFY2(good.out.contains("customer: 某厂\n") && good.out.endsWith("counts\n"), qPrintable(good.out));
        const Answer late = run(verify + QStringList{"--machine", m_machine, "--date", "2027-01-01"});
        QVERIFY2(late.code == 3 && late.out.endsWith("expired\n"), qPrintable(late.out));
        const Answer more =
            run(verify + QStringList{"--machine", m_machine, "--date", "2026-06-01", "--stations", "2"});
        QVERIFY2(more.code == 3 && more.out.endsWith("for fewer stations\n"), qPrintable(more.out));
        const Answer json = run(verify + QStringList{"--json", "--machine", m_machine, "--date", "2027-01-01"});
        const QJsonObject told = QJsonDocument::fromJson(json.out.toUtf8()).object();
        QVERIFY2(json.code == 3 && told["counts"] == false && told["refusal"] == "expired" &&
                     told["customer"] == "某厂" && told["expires"] == "2026-12-31",
                 qPrintable(json.out));
        const Answer elsewhere = run(verify + QStringList{"--date", "2026-06-01"});
        QVERIFY2(elsewhere.code == 3 && elsewhere.out.endsWith("for another machine\n"), qPrintable(elsewhere.out));
    }

    void wrongArgumentsAreReported_data()
    {
        const QStringList issue{"issue", "--key", m_secret, "--machine", m_machine, "--customer", "C"};
        const auto issuing = [&](const QString& option, const QString& value) {
            return issue + QStringList{option, value};
        };
        Table::of<QStringList, int, QString>(
            {{"no command", {}, 2, "which command"},
             {"unknown command", {"revoke"}, 2, "\"revoke\""},
             {"unknown option", {"keygen", "--bits", "512"}, 2, "bits"},
             {"mistyped machine", issuing("--machine", m_machine.chopped(1) + "U"), 2, "no machine code"},
             {"customer of two lines", issuing("--customer", "C\nstations: 9"), 2, "printable"},
             {"stations in letters", issuing("--stations", "two"), 2, "stations"},
             {"day that is none", issuing("--expires", "2027-02-30"), 2, "2027-02-30"},
             {"over before it begins", issuing("--expires", "2001-01-01"), 2, "expires"},
             {"public key to sign with", issuing("--key", m_open), 1, "no private key"},
             {"missing key", issuing("--key", "/nowhere"), 1, "/nowhere"},
             {"no licence file", {"verify", "--key", m_open, "/nowhere.lic"}, 1, "nowhere.lic"}});
    }
    void wrongArgumentsAreReported()
    {
        const auto [arguments, code, error] = Table::row<QStringList, int, QString>();
        const Answer answer = run(arguments);
        QCOMPARE(answer.code, code);
        QVERIFY2(answer.error.contains(error) && answer.out.isEmpty(), qPrintable(answer.error));
    }
};

QTEST_GUILESS_MAIN(LicenceToolTest)
#include "tst_licencetool.moc"
