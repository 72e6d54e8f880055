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
    for (const QString name : {"broker", "client"}) {
        made &=
            openssl(folder, QString("req -newkey rsa:2048 -nodes -keyout %1.key -out %1.csr -subj /CN=%1").arg(name));
        for (const QString days : {"9", "-1"}) {
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
    using Hold = std::function<void(const MqttMessage&)>;
    explicit End(const MqttOptions& options, const QStringList& filters = {}, const Hold& hold = {})
        : m_session({[options] { return options; },
                     [this, filters](bool isKept) {
                         m_session.subscribe(filters);
                         kept = isKept;
                         ++connections;
                     },
                     [this](const MqttTrouble& why) {
                         const std::lock_guard lock(m_mutex);
                         m_trouble = why;
                     },
                     [this, hold](const MqttMessage& message) {
                         if (hold)
                             hold(message);
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
    bool has(const QByteArray& payload) const
    {
        const QVector<MqttMessage> all = received();
        return std::any_of(all.begin(), all.end(), [&](const MqttMessage& one) { return one.payload == payload; });
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
        std::atomic<int> nobody{0};
        std::atomic<int> taken{0};
        const auto count = [&](MqttDelivery how) {
            taken += how == MqttDelivery::Taken;
            nobody += how == MqttDelivery::NobodyThere;
        };
        TestBroker broker;
        MqttOptions sending = options(broker.port(), "cell");
        sending.will = {"death", "x", 1, false, {{"cellId", "7"}}};
        End cell(sending);
        QVERIFY(!cell->publish({"rows", "0", 1, false, {}})); // no broker yet
        QVERIFY(broker.start());
        cell->retryNow();
        QTRY_VERIFY(cell->isConnected());
        QVERIFY(cell->publish({"rows", "0", 1, false, {}}, count));
        QTRY_COMPARE(nobody.load(), 1);
        MqttOptions keeping = options(broker.port(), "plant");
        keeping.sessionSeconds = 3600;
        End plant(keeping, {"$share/all/rows", "death"});

        const QByteArray large(100000, 'x');
        QTRY_VERIFY(cell->publish({"rows", large, 1, false, {{"row", "1"}}}, count) && taken > 0);
        QTRY_VERIFY(!plant.received().isEmpty());
        QCOMPARE(plant.received().first().properties.value(0).first, QString("row"));
        for (const bool killed : {false, true}) {
            const int before = cell.connections;
            const int plantBefore = plant.connections;
            killed ? broker.kill() : broker.stop();
            QTRY_VERIFY(!cell->isConnected() && !plant->isConnected());
            QVERIFY(!cell->publish({"rows", large, 1, false, {}}, count));
            QVERIFY(broker.start());
            cell->retryNow();
            plant->retryNow();
            QTRY_VERIFY(cell.connections > before && plant.connections > plantBefore);
            QVERIFY(plant.kept);
            const QByteArray last = killed ? "last" : "next";
            // A broker may have forgotten who shared a subscription, and then says that nobody is there.
            QTRY_VERIFY(cell->publish({"rows", last, 1, false, {}}, count) && plant.has(last));
            QVERIFY(plant.received().size() >= taken); // those whose answer was lost may have come besides
        }
        cell->stop(true);
        QTRY_VERIFY(plant.has("x"));
    }

    /// The broker died while the handler was at it, and has not heard that the message arrived: it comes again.
    void whatWasNotStoredComesAgain()
    {
        TestBroker broker;
        QVERIFY(broker.start());
        std::atomic<int> came{0};
        const auto hold = [&](const MqttMessage&) {
            if (++came == 1)
                QProcess::execute("kill", {"-9", QString::number(broker.processId())});
        };
        MqttOptions keeping = options(broker.port(), "plant");
        keeping.sessionSeconds = 3600;
        End plant(keeping, {"rows"}, hold);
        QTRY_VERIFY(plant->isConnected());
        End cell(options(broker.port(), "cell"));
        QTRY_VERIFY(cell->isConnected());
        QTRY_VERIFY(cell->publish({"rows", "1", 1, false, {}}) && came > 0);
        broker.kill();
        QVERIFY(broker.start());
        plant->retryNow();
        QTRY_VERIFY(came > 1);
    }

    void certificatesAndLoginsAreJudged_data()
    {
        using Kind = MqttTrouble::Kind;
        const QString none;
        Table::of<QString, QString, QString, QString, int, QString>({
            {"good", "broker", "ca", "client", "cell:secret", -1, none},
            {"broker's expired", "old-broker", "ca", "client", "cell:secret", int(Kind::Tls), "expired"},
            {"own expired", "broker", "ca", "old-client", "cell:secret", int(Kind::Tls), "old-client.crt"},
            {"foreign authority", "broker", "stranger", "client", "cell:secret", int(Kind::Tls), "self-signed"},
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
