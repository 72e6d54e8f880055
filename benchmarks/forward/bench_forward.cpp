#include "../Bench.h"
#include "db/StationDB.h"
#include "forward/ForwardState.h"
#include "forward/Forwarder.h"
#include "plant/MqttSession.h"
#include "plant/PlantTopics.h"
#include "plant/RowBatch.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QThread>

#include <atomic>

namespace {

/// An hour of a cell of ten parts a second.
constexpr int hourOfRows = 36000;

/// A broker with its configuration in a folder of its own.
class Broker
{
public:
    Broker()
    {
        QTcpServer free;
        free.listen(QHostAddress::LocalHost);
        m_port = free.serverPort();
    }
    ~Broker()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    quint16 port() const { return m_port; }
    void start()
    {
        QFile file(m_folder.filePath("broker.conf"));
        file.open(QIODevice::WriteOnly);
        file.write("allow_anonymous true\nmax_queued_messages 0\nlog_type none\nlistener " +
                   QByteArray::number(m_port) + " 127.0.0.1\n");
        file.close();
        m_process.start("/usr/sbin/mosquitto", {"-c", file.fileName()});
        for (QTcpSocket socket; !socket.waitForConnected(100);)
            socket.connectToHost("127.0.0.1", m_port);
    }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    quint16 m_port = 0;
};

/// The plant's end: counts bytes and notes the first state.
struct Plant
{
    explicit Plant(quint16 port)
        : session({[port] {
                       MqttOptions options;
                       options.host = "127.0.0.1";
                       options.port = port;
                       options.clientId = "plant";
                       return options;
                   },
                   [this](bool) {
                       session.subscribe({"valvecell/1/hall/+/rows/+", "spBv1.0/hall/NBIRTH/+"});
                   },
                   [](const MqttTrouble&) {},
                   [this](const MqttMessage& message) {
                       const bool rows = PlantTopics::parse(message.topic)->kind == PlantTopics::Kind::Rows;
                       bytes += rows ? message.payload.size() : 0;
                       births += rows ? 0 : 1;
                       rowsBeforeBirth = rowsBeforeBirth || (rows && births == 0);
                   },
                   {}})
    {
        session.start();
    }
    std::atomic<qint64> bytes{0};
    std::atomic<int> births{0};
    std::atomic<bool> rowsBeforeBirth{false};
    MqttSession session; // goes first
};

StationResult part(int i)
{
    StationResult result;
    result.part = {1 + i % 2, "W-17", 17, PartOutcome::Found, 12.345678,  -100.25, 33.125, 98.5,
                   41,        55,     62, "operator",         "1a2b3c4d", ""};
    result.angle = 12.345678;
    result.stationName = "Station_1";
    result.value2 = "1_W-17";
    return result;
}

void insert(const QString& home, int count)
{
    StationDB database(home + "/DBFiles/Pellix.db");
    database.open();
    for (int i = 0; i < count; ++i)
        database.insertResult(part(i), QDateTime::currentDateTime());
}

ForwardConfig configFor(quint16 port)
{
    ForwardConfig config;
    config.on = true;
    config.host = "127.0.0.1";
    config.port = port;
    config.group = "hall";
    config.cell = "7";
    return config;
}

template <typename Condition>
double secondsUntil(Condition condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < 600000)
        QThread::usleep(500);
    return double(timer.nsecsElapsed()) / 1e9;
}

/// The broker was away for an hour's worth of rows, and is back.
void forwardDrain(benchmark::State& state)
{
    for (auto _ : state) {
        const QTemporaryDir home;
        QDir().mkpath(home.filePath("user"));
        insert(home.path(), 1);
        Broker broker;
        const Forwarder forwarder(home.path(), configFor(broker.port()));
        secondsUntil([&] { return QFile::exists(ForwardState::pathIn(home.path())); });
        insert(home.path(), hourOfRows);
        secondsUntil([&] { return forwarder.status().waiting == hourOfRows; });
        broker.start();
        QElapsedTimer back;
        back.start();
        Plant plant(broker.port());
        secondsUntil([&] { return plant.births > 0; });
        state.counters["state_seen_s"] = double(back.elapsed()) / 1000;
        const double drained = secondsUntil([&] { return forwarder.status().waiting == 0; });
        state.SetIterationTime(drained);
        state.counters["rows_per_s"] = hourOfRows / drained;
        state.counters["MB_per_s"] = double(plant.bytes) / drained / 1e6;
        state.counters["rows_before_state"] = plant.rowsBeforeBirth ? 1 : 0;
    }
}

/// The cell's row alone, and while the forwarder drains beside it as fast as its limit lets it.
void insertBesideForwarding(benchmark::State& state)
{
    const QTemporaryDir home;
    QDir().mkpath(home.filePath("user"));
    insert(home.path(), 1);
    Broker broker;
    broker.start();
    Plant plant(broker.port());
    std::unique_ptr<Forwarder> forwarder;
    if (state.range(0) > 0) {
        ForwardConfig config = configFor(broker.port());
        forwarder = std::make_unique<Forwarder>(home.path(), config);
        secondsUntil([&] { return plant.births > 0; });
    }
    StationDB database(home.path() + "/DBFiles/Pellix.db");
    database.open();
    Laps laps(state);
    int i = 0;
    for (auto _ : state) {
        laps.time([&] { database.insertResult(part(++i), QDateTime::currentDateTime()); });
        QThread::usleep(2000);
    }
}

} // namespace

BENCHMARK(forwardDrain)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);
BENCHMARK(insertBesideForwarding)->Arg(0)->Arg(1)->Iterations(3000)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    return runBenchmarks<QCoreApplication>(argc, argv);
}
