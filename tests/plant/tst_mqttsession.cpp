#include "plant/BrokerLogin.h"
#include "plant/MqttSession.h"
#include "support/Table.h"
#include "support/TestBroker.h"

#include <QElapsedTimer>

#include <atomic>
#include <mutex>

namespace {

bool openssl(const QString& folder, const QString& arguments)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start("openssl", arguments.split(' '));
    return process.waitForFinished() && process.exitCode() == 0;
}

/// An authority, and certificates by it for the broker, a client, and both of yesterday.
bool makeCertificates(const QString& folder)
{
    bool made = openssl(folder, "req -x509 -newkey rsa:2048 -nodes -keyout ca.key -out ca.crt -days 9 -subj /CN=ca");
    made &= openssl(folder, "req -x509 -newkey rsa:2048 -nodes -keyout s.key -out stranger.crt -days 9 -subj /CN=s");
    QFile names(folder + "/names");
    names.open(QIODevice::WriteOnly);
    names.write("subjectAltName=IP:127.0.0.1,DNS:localhost\n");
    names.close();
    for (const QString& name : {"broker", "client"}) {
        made &=
            openssl(folder, QString("req -newkey rsa:2048 -nodes -keyout %1.key -out %1.csr -subj /CN=%1").arg(name));
        for (const QString& days : {"9", "-1"}) {
            const QString file = days == "9" ? name : "old-" + name;
            made &=
                openssl(folder, QString("x509 -req -in %1.csr -CA ca.crt -CAkey ca.key -CAcreateserial -extfile names "
                                        "-days %2 -out %3.crt")
                                    .arg(name, days, file));
        }
    }
    return made;
}

/// One end, with what it heard.
class End
{
public:
    explicit End(const MqttOptions& options)
        : m_session({[options] { return options; },
                     [this](bool isKept) {
                         kept = isKept;
                         ++connections;
                     },
                     [this](const MqttTrouble& why) {
                         const std::lock_guard lock(m_mutex);
                         m_trouble = why;
                     },
                     [this](const MqttMessage& message) {
                         const std::lock_guard lock(m_mutex);
                         m_received.append(message);
                     },
                     {}})
    {
        m_session.start();
    }

    MqttSession* operator->() { return &m_session; }
    QVector<MqttMessage> received() const
    {
        const std::lock_guard lock(m_mutex);
        return m_received;
    }
    MqttTrouble trouble() const
    {
        const std::lock_guard lock(m_mutex);
        return m_trouble;
    }
    std::atomic<int> connections{0};
    std::atomic<bool> kept{false};

private:
    mutable std::mutex m_mutex; // protects the following
    QVector<MqttMessage> m_received;
    MqttTrouble m_trouble;
    MqttSession m_session; // goes first
};

} // namespace

/// The connection to a broker, against a real one.
class MqttSessionTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(makeCertificates(m_folder.path())); }

    void eachMessageArrivesOverABrokersDeath()
    {
        TestBroker broker;
        MqttOptions keeping = options(broker.port(), "plant");
        keeping.sessionSeconds = 3600;
        MqttOptions sending = options(broker.port(), "cell");
        sending.will = {"death", "x", 1, false, {{"cellId", "7"}}};
        End plant(keeping);
        End cell(sending);
        QVERIFY(!cell->publish({"rows", "0"})); // no broker yet
        QVERIFY(broker.start());
        cell->retryNow();
        QTRY_VERIFY(cell->isConnected());
        std::atomic<int> nobody{0};
        QVERIFY(cell->publish({"rows", "0"}, [&](MqttDelivery how) { nobody = how == MqttDelivery::NobodyThere; }));
        QTRY_VERIFY(nobody == 1);
        plant->retryNow();
        QTRY_VERIFY(plant->isConnected());
        QVERIFY(plant->subscribe({"$share/all/rows", "death"}));

        std::atomic<int> taken{0};
        std::atomic<int> lost{0};
        const auto count = [&](MqttDelivery how) { ++(how == MqttDelivery::Taken ? taken : lost); };
        const QByteArray large(100000, 'x');
        QTRY_VERIFY(cell->publish({"rows", large, 1, false, {{"row", "1"}}}, count) && taken > 0);
        const int before = cell.connections;
        broker.stop();
        QTRY_VERIFY(!cell->isConnected() && !plant->isConnected());
        QVERIFY(!cell->publish({"rows", large}, count));
        QVERIFY(broker.start());
        cell->retryNow();
        plant->retryNow();
        QTRY_VERIFY(cell.connections == before + 1 && plant->isConnected());
        QVERIFY(plant.kept);
        QVERIFY(cell->publish({"rows", "last"}, count));
        QTRY_VERIFY(!plant.received().isEmpty() && plant.received().last().payload == "last");
        QVERIFY(plant.received().size() >= taken); // those whose answer was lost may have come besides
        QCOMPARE(plant.received().first().properties.value(0).first, QString("row"));
        cell->stop(true);
        QTRY_COMPARE(plant.received().last().topic, QString("death"));
    }

    /// The handler returned before the broker heard of it: what it had not stored yet comes again.
    void whatWasNotStoredComesAgain()
    {
        TestBroker broker;
        QVERIFY(broker.start());
        MqttOptions keeping = options(broker.port(), "plant");
        keeping.sessionSeconds = 3600;
        std::atomic<int> came{0};
        std::atomic<bool> hold{true};
        const auto make = [&] {
            return std::make_unique<MqttSession>(MqttSession::Handlers{[&] { return keeping; },
                                                                       [](bool) {},
                                                                       [](const MqttTrouble&) {},
                                                                       [&](const MqttMessage&) {
                                                                           ++came;
                                                                           if (hold)
                                                                               broker.kill();
                                                                           hold = false;
                                                                       },
                                                                       {}});
        };
        auto plant = make();
        plant->start();
        QTRY_VERIFY(plant->isConnected());
        QVERIFY(plant->subscribe({"rows"}));
        End cell(options(broker.port(), "cell"));
        QTRY_VERIFY(cell->isConnected());
        QVERIFY(cell->publish({"rows", "1"}));
        QTRY_COMPARE(came.load(), 1);
    }

    void certificatesAndLoginsAreJudged_data()
    {
        using Kind = MqttTrouble::Kind;
        const QString none;
        Table::of<QString, QString, QString, QString, int, QString>({
            {"good", "broker", "ca", "client", "cell:secret", -1, none},
            {"broker's expired", "old-broker", "ca", "client", "cell:secret", int(Kind::Tls), "expired"},
            {"own expired", "broker", "ca", "old-client", "cell:secret", int(Kind::Tls), "old-client.crt"},
            {"foreign authority", "broker", "stranger", "client", "cell:secret", int(Kind::Tls), "issuer"},
            {"no certificate", "broker", "ca", none, "cell:secret", int(Kind::Tls), "TLS"},
            {"missing file", "broker", "nothing", "client", "cell:secret", int(Kind::Tls), "nothing.crt"},
            {"wrong password", "broker", "ca", "client", "cell:wrong", int(Kind::Login), none},
        });
    }
    void certificatesAndLoginsAreJudged()
    {
        const auto [server, authority, client, login, kind, words] =
            Table::row<QString, QString, QString, QString, int, QString>();
        const QString path = m_folder.path();
        QProcess::execute("mosquitto_passwd", {"-b", "-c", path + "/logins", "cell", "secret"});
        TestBroker broker(QString("allow_anonymous false\npassword_file %1/logins\ncafile %1/ca.crt\n"
                                  "certfile %1/%2.crt\nkeyfile %1/broker.key\nrequire_certificate true\n")
                              .arg(path, server)
                              .toUtf8());
        QVERIFY(broker.start());
        MqttOptions options = this->options(broker.port(), "cell");
        options.user = login.section(':', 0, 0);
        options.password = login.section(':', 1);
        options.tls = {true, QString("%1/%2.crt").arg(path, authority), {}, {}};
        if (!client.isEmpty()) {
            options.tls.certificate = QString("%1/%2.crt").arg(path, client);
            options.tls.key = path + "/client.key";
        }
        End cell(options);
        if (kind < 0) {
            QTRY_VERIFY(cell->isConnected());
            return;
        }
        QTRY_VERIFY2(int(cell.trouble().kind) == kind, qPrintable(cell.trouble().text));
        QVERIFY2(cell.trouble().text.contains(words), qPrintable(cell.trouble().text));
        QCOMPARE(cell.connections.load(), 0);
    }

    void aSecondClientOfTheSameNumberIsSeen()
    {
        TestBroker broker;
        QVERIFY(broker.start());
        End first(options(broker.port(), "cell"));
        QTRY_VERIFY(first->isConnected());
        End second(options(broker.port(), "cell"));
        QTRY_VERIFY(first.trouble().kind == MqttTrouble::Kind::TakenOver);
    }

    void aLoginFileIsItsOwnersAlone()
    {
        const QString file = m_folder.filePath("login");
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write("cell\r\nsecret 1\n");
        out.close();
        QString error;
        out.setPermissions(QFile::ReadOwner | QFile::ReadOther);
        QVERIFY(!BrokerLogin::read(file, &error) && error.contains("600"));
        out.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        const auto login = BrokerLogin::read(file, &error);
        QVERIFY(login && login->user == "cell" && login->password == "secret 1");
    }

private:
    MqttOptions options(quint16 port, const QString& id) const
    {
        MqttOptions options;
        options.host = "127.0.0.1";
        options.port = port;
        options.clientId = id;
        return options;
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(MqttSessionTest)
#include "tst_mqttsession.moc"
