#include "../results/PartsHome.h"
#include "db/log/ksLogDB.h"
#include "forward/ForwardState.h"
#include "forward/Forwarder.h"
#include "plant/MqttSession.h"
#include "plant/PlantTopics.h"
#include "plant/RowBatch.h"
#include "support/Table.h"
#include "support/TestBroker.h"

#include <mutex>

namespace {

using Sparkplug::Type;

/// The plant's end: keeps what arrives, as a collector would.
class Plant
{
public:
    explicit Plant(quint16 port)
        : m_session(
              {[port] {
                   MqttOptions options;
                   options.host = "127.0.0.1";
                   options.port = port;
                   options.clientId = "plant";
                   options.sessionSeconds = 3600;
                   return options;
               },
               [this](bool) {
                   m_session.subscribe({"valvecell/1/hall/+/rows/+", "valvecell/1/hall/+/picture"});
                   m_session.subscribe({"spBv1.0/hall/NBIRTH/+", "spBv1.0/hall/NDATA/+", "spBv1.0/hall/NDEATH/+"});
               },
               [](const MqttTrouble&) {},
               [this](const MqttMessage& message) { take(message); },
               {}})
    {
        m_session.start();
    }

    MqttSession& session() { return m_session; }
    void retry() { m_session.retryNow(); }
    /// How many rows of a stream there are after the repeated ones are dropped.
    int rows(const QString& stream) const
    {
        const std::lock_guard lock(m_mutex);
        return m_rows.value(stream).size();
    }
    /// What never must be, empty when it was not: a batch that cannot be read, a row of two contents.
    QString fault() const
    {
        const std::lock_guard lock(m_mutex);
        return m_fault;
    }
    int pictures() const
    {
        const std::lock_guard lock(m_mutex);
        return m_pictures;
    }
    /// As the last birth or data has it.
    QVariant metric(const QString& cell, const QString& name) const
    {
        const std::lock_guard lock(m_mutex);
        return m_metrics.value(cell + name);
    }
    int deaths() const
    {
        const std::lock_guard lock(m_mutex);
        return m_deaths;
    }
    void forget()
    {
        const std::lock_guard lock(m_mutex);
        m_rows.clear();
    }

private:
    void take(const MqttMessage& message)
    {
        using PlantTopics::Kind;
        const std::lock_guard lock(m_mutex);
        const auto topic = PlantTopics::parse(message.topic);
        QString error;
        if (topic->kind == Kind::Picture) {
            ++m_pictures;
        } else if (topic->kind == Kind::Rows) {
            const auto batch = RowBatch::decode(message.payload, &error);
            if (!batch || batch->stream != topic->leaf)
                m_fault = message.topic + error;
            else
                store(*batch);
        } else if (topic->kind == Kind::Death) {
            ++m_deaths;
        } else if (const auto state = Sparkplug::decode(message.payload, &error)) {
            for (const Sparkplug::Metric& metric : state->metrics)
                m_metrics[topic->cell + metric.name] = metric.value;
        } else {
            m_fault = error;
        }
    }
    void store(const RowBatch& batch)
    {
        const auto add = [&](qint64 row, qint64 content) {
            const QString key = batch.cellId + batch.epoch + QString::number(row);
            auto& known = m_rows[batch.stream];
            if (known.value(key, content) != content)
                m_fault = "a row that differs from itself: " + key;
            known[key] = content;
        };
        for (const PlantPart& part : batch.parts)
            add(part.row, part.wall);
        for (const PlantLine& line : batch.lines)
            add(line.row, line.wall);
    }

    mutable std::mutex m_mutex; // protects the following
    QHash<QString, QHash<QString, qint64>> m_rows;
    QHash<QString, QVariant> m_metrics;
    QString m_fault;
    int m_pictures = 0;
    int m_deaths = 0;
    MqttSession m_session; // goes first
};

const QDateTime start(QDate(2026, 3, 30), QTime(8, 0));

} // namespace

/// What a cell records reaches its plant, each row once, whatever dies on the way.
class ForwarderTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home.reset();
        m_home = std::make_unique<PartsHome>();
        m_home->addParts(3, start); // from before it was switched on
        m_added = 3;
    }

    void eachRowComesOnce_data()
    {
        Table::of<QString>({{"nothing happens", ""},
                            {"broker killed", "kill broker"},
                            {"broker restarted", "restart broker"},
                            {"cell restarted", "cell"},
                            {"cell restarted while the broker is away", "kill cell broker"},
                            {"broker killed again and again", "kill kill kill broker"}});
    }
    void eachRowComesOnce()
    {
        const auto [events] = Table::row<QString>();
        SystemLog::ksLogDB log(m_home->path("/dbLog.db"));
        TestBroker broker;
        QVERIFY(broker.start());
        Plant plant(broker.port());
        auto cell = forwarder(broker.port());
        QTRY_COMPARE(plant.metric("7", "Rows/parts/Last").toInt(), 3);
        log.startAgain();
        int sent = 0;
        for (const QString& event : (events + " end").split(' ', Qt::SkipEmptyParts)) {
            add(700);
            sent += 700;
            if (event == "kill")
                broker.kill();
            if (event == "restart") {
                broker.stop();
            } else if (event == "cell") {
                cell.reset();
                add(30); // meanwhile, as if recorded while forwarding was away
                sent += 30;
                cell = forwarder(broker.port());
            }
            if (event == "kill" || event == "broker" || event == "restart") {
                broker.stop();
                QVERIFY(broker.start());
                plant.retry();
            }
            log.append(1, "2026-03-30 08:00:00 a line", 26);
        }
        QTRY_COMPARE(cell->status().waiting, 0);
        askForAll(plant); // a broker that died may have acknowledged more than it kept
        QTRY_COMPARE(plant.rows("parts"), sent);
        QTRY_COMPARE(plant.rows("log"), (events + " end").split(' ', Qt::SkipEmptyParts).size());
        QCOMPARE(plant.fault(), QString());
        log.stop();
    }

    void aDatabaseThatTookTheOldOnesPlaceGoesOn_data()
    {
        Table::of<bool>({{"restored from a backup", true}, {"begun afresh", false}});
    }
    void aDatabaseThatTookTheOldOnesPlaceGoesOn()
    {
        const auto [restored] = Table::row<bool>();
        TestBroker broker;
        QVERIFY(broker.start());
        Plant plant(broker.port());
        auto cell = forwarder(broker.port());
        QTRY_VERIFY(plant.metric("7", "Rows/parts/Epoch").isValid());
        const QString database = m_home->path("/DBFiles/Pellix.db");
        add(20);
        QTRY_COMPARE(plant.rows("parts"), 20);
        cell.reset();
        add(0); // who writes and leaves last, takes the log over into the file
        QVERIFY(QFile::copy(database, database + ".backup"));
        cell = forwarder(broker.port());
        add(30);
        QTRY_COMPARE(plant.rows("parts"), 50);
        QTRY_COMPARE(cell->status().waiting, 0);
        cell.reset();
        add(0);
        const QString epoch = plant.metric("7", "Rows/parts/Epoch").toString();
        QVERIFY(QFile::remove(database));
        if (restored)
            QVERIFY(QFile::rename(database + ".backup", database));
        add(9);
        cell = forwarder(broker.port());
        QTRY_COMPARE(plant.rows("parts"), 59);
        QTRY_VERIFY(plant.metric("7", "Rows/parts/Epoch").toString() != epoch);
        QCOMPARE(plant.fault(), QString());
    }

    void thePlantAsksAndRubbishIsDropped()
    {
        TestBroker broker;
        QVERIFY(broker.start());
        Plant plant(broker.port());
        const auto cell = forwarder(broker.port());
        cell->setFigures({{"Health/Mode", Type::String, "run"}});
        QTRY_COMPARE(plant.metric("7", "Health/Mode").toString(), QString("run"));
        add(1200);
        QTRY_COMPARE(plant.rows("parts"), 1200);
        QTRY_COMPARE(cell->status().waiting, 0);
        plant.forget();
        for (const QByteArray& rubbish : {QByteArray("rubbish"), QByteArray(), QByteArray(100000, '\xff')})
            QVERIFY(plant.session().publish({"spBv1.0/hall/NCMD/7", rubbish, 1, false, {}}));
        command(plant, "Node Control/Resend", Type::String, "{\"v\":1,\"stream\":\"parts\"}");
        ResendRequest request{"parts", ForwardState().cellId, 0, 0};
        request.epoch = plant.metric("7", "Rows/parts/Epoch").toString();
        request.after = 103;
        request.upTo = 803;
        command(plant, "Node Control/Resend", Type::String, QString::fromUtf8(request.encode()));
        QTRY_COMPARE(plant.rows("parts"), 700);
        cell->setFigures({{"Health/Mode", Type::String, "offline"}});
        QTRY_COMPARE(plant.metric("7", "Health/Mode").toString(), QString("offline"));
        QVERIFY(cell->status().trouble.isEmpty());
    }

    void rowsWaitUntilSomebodyTakesThem()
    {
        TestBroker broker;
        QVERIFY(broker.start());
        auto cell = forwarder(broker.port());
        QTRY_VERIFY(cell->status().connected);
        add(10);
        QTRY_VERIFY(cell->status().waiting == 10 && !cell->status().trouble.isEmpty());
        QVERIFY(!cell->status().wantsEngineer);
        Plant plant(broker.port());
        QTRY_COMPARE(plant.rows("parts"), 10);
        QTRY_VERIFY(cell->status().trouble.isEmpty());
        cell.reset();
        QTRY_COMPARE(plant.deaths(), 1);
    }

    void aSecondCellOfTheNameIsSeenByBoth()
    {
        TestBroker broker;
        QVERIFY(broker.start());
        Plant plant(broker.port());
        const auto cell = forwarder(broker.port());
        QTRY_VERIFY(cell->status().connected);
        PartsHome other;
        other.addParts(1, start);
        const Forwarder twin(other.path(), config(broker.port()));
        QTRY_VERIFY(cell->status().wantsEngineer && twin.status().wantsEngineer);
        QVERIFY(cell->status().trouble.contains("hall/7"));
        add(5);
        QTRY_COMPARE(cell->status().waiting, 5);
        QCOMPARE(plant.rows("parts"), 0);
    }

    void picturesAreScaledWithinTheirBudget()
    {
        QImage picture(1600, 1200, QImage::Format_RGB32);
        picture.fill(Qt::gray);
        TestBroker broker;
        QVERIFY(broker.start());
        Plant plant(broker.port());
        ForwardConfig config = this->config(broker.port());
        config.pictures = true;
        config.pictureWidth = 320;
        config.pictureKilobytes = 1; // one, and then none for a minute
        const Forwarder cell(m_home->path(), config);
        QTRY_VERIFY(plant.metric("7", "Rows/parts/Last").isValid());
        StationDB database(m_home->path("/DBFiles/Pellix.db"));
        QVERIFY(database.open());
        QDir().mkpath(m_home->path("/DBFiles/SrcImages"));
        QVERIFY(picture.save(m_home->path("/DBFiles/SrcImages/1.jpg")));
        for (int i = 0; i < 8; ++i) {
            StationResult part = PartsHome::part(i);
            part.part.sourceImage = "/DBFiles/SrcImages/1.jpg";
            QVERIFY(database.insertResult(part, start.addSecs(1000 + i)));
        }
        QTRY_COMPARE(plant.rows("parts"), 8);
        QTRY_VERIFY(plant.pictures() > 0);
        QVERIFY(plant.pictures() < 4);
    }

private:
    ForwardConfig config(quint16 port) const
    {
        ForwardConfig config;
        config.on = true;
        config.host = "127.0.0.1";
        config.port = port;
        config.group = "hall";
        config.cell = "7";
        return config;
    }
    std::unique_ptr<Forwarder> forwarder(quint16 port) const
    {
        return std::make_unique<Forwarder>(m_home->path(), config(port));
    }
    void add(int count)
    {
        m_home->addParts(count, start.addSecs(m_added));
        m_added += count;
    }
    void askForAll(Plant& plant)
    {
        for (const QString stream : {"parts", "log"}) {
            ResendRequest request{stream, plant.metric("7", "Rows/" + stream + "/Epoch").toString(), 0, 100000};
            request.after = stream == "parts" ? 3 : 0;
            QTRY_VERIFY(plant.session().isConnected());
            command(plant, "Node Control/Resend", Type::String, QString::fromUtf8(request.encode()));
        }
    }
    static void command(Plant& plant, const QString& name, Type type, const QVariant& value)
    {
        const Sparkplug::Payload payload{0, -1, {{name, type, value}}};
        QVERIFY(plant.session().publish({"spBv1.0/hall/NCMD/7", Sparkplug::encode(payload), 1, false, {}}));
    }

    std::unique_ptr<PartsHome> m_home;
    int m_added = 0;
};

QTEST_GUILESS_MAIN(ForwarderTest)
#include "tst_forwarder.moc"
