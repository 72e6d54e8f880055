#include "collect/Collector.h"

#include "Health.h"
#include "plant/MqttSession.h"
#include "plant/PlantTopics.h"
#include "plant/RowBatch.h"
#include "plant/Sparkplug.h"

#include <QDateTime>

#include <algorithm>
#include <pqxx/pqxx>

namespace {

constexpr int houseMs = 2000;
constexpr qint64 birthPauseMs = 5000;
constexpr qint64 retentionMs = 3600 * 1000;
constexpr qint64 idleMs = 2000;
constexpr qint64 freshMs = 15000; // a row younger than that came straight through

QString kindOf(const MqttTrouble& trouble)
{
    switch (trouble.kind) {
    case MqttTrouble::Kind::Tls:
        return QStringLiteral("tls");
    case MqttTrouble::Kind::Login:
        return QStringLiteral("login");
    case MqttTrouble::Kind::TakenOver:
        return QStringLiteral("takenOver");
    case MqttTrouble::Kind::Settings:
        return QStringLiteral("settings");
    case MqttTrouble::Kind::Away:
        break;
    }
    return QStringLiteral("away");
}

} // namespace

/// One session, and where what it receives is stored: on the session's thread.
struct Collector::Intake
{
    Intake(const Options& options, Health& health, std::function<void(const Storekeeper::Unheard&)> unheard)
        : keeper(options.database, health, std::move(unheard))
    {
    }

    Storekeeper keeper;
    std::atomic<bool> storing{false};
    std::atomic<qint64> last{0};      // ms of m_clock: when a message was stored
    std::atomic<qint64> lastFresh{0}; // and when one that had not waited
    std::unique_ptr<MqttSession> session;
};

Collector::Collector(Options options, Health& health)
    : m_options(std::move(options))
    , m_health(health)
{
    m_clock.start();
    using PlantTopics::Kind;
    const auto filters = [this](std::initializer_list<Kind> kinds, const QString& share) {
        QStringList list;
        for (const Kind kind : kinds)
            list << PlantTopics::filter(kind, m_options.group, share);
        return list;
    };
    addIntake(QStringLiteral("state"), filters({Kind::Birth, Kind::Data, Kind::Death}, {}), true);
    for (int i = 1; i <= m_options.intakes; ++i)
        addIntake(QString::number(i), filters({Kind::Rows, Kind::Picture}, QStringLiteral("plant")), false);
}

Collector::~Collector()
{
    stop();
}

void Collector::addIntake(const QString& name, const QStringList& filters, bool rouses)
{
    auto intake = std::make_unique<Intake>(
        m_options, m_health, [this](const Storekeeper::Unheard& cell) { askBirth(cell.group, cell.cell); });
    Intake* const here = intake.get();
    MqttSession::Handlers handlers;
    handlers.options = [this, name] {
        MqttOptions options = m_options.broker;
        options.clientId += QLatin1Char('-') + name;
        return options;
    };
    handlers.connected = [this, here, filters, rouses](bool) {
        m_health.set(QStringLiteral("broker"), {});
        here->session->subscribe(filters);
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_rouseAll = m_rouseAll || rouses;
    };
    handlers.disconnected = [this](const MqttTrouble& trouble) {
        m_health.set(QStringLiteral("broker"), {kindOf(trouble), trouble.text});
        qWarning("broker: %s", qUtf8Printable(trouble.text));
    };
    handlers.received = [this, here](const MqttMessage& message) {
        here->storing = true;
        if (!here->keeper.store(message))
            return;
        here->last = m_clock.elapsed();
        if (here->keeper.lastAge() >= 0 && here->keeper.lastAge() < freshMs)
            here->lastFresh = m_clock.elapsed();
        here->storing = false;
    };
    handlers.notSubscribed = [this](const QString& filter) {
        m_health.set(QStringLiteral("broker"), {QStringLiteral("login"), filter});
    };
    intake->session = std::make_unique<MqttSession>(std::move(handlers));
    m_intakes.push_back(std::move(intake));
}

void Collector::start()
{
    for (const auto& intake : m_intakes)
        intake->session->start();
    m_house = std::thread(&Collector::keepHouse, this);
}

bool Collector::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    if (m_house.joinable())
        m_house.join();
    bool stored = true;
    for (const auto& intake : m_intakes) {
        intake->session->stop();
        stored = stored && !intake->storing;
        intake->keeper.giveUp();
    }
    return stored;
}

bool Collector::isCurrent() const
{
    const qint64 now = m_clock.elapsed();
    return std::all_of(std::next(m_intakes.begin()), m_intakes.end(), [now](const auto& intake) {
        return now - intake->lastFresh < 2 * idleMs || (!intake->storing && now - intake->last > idleMs);
    });
}

void Collector::command(const QString& group, const QString& cell, const char* metric, const QVariant& value)
{
    Sparkplug::Payload payload;
    payload.timestamp = QDateTime::currentMSecsSinceEpoch();
    payload.seq = -1;
    const bool flag = value.type() == QVariant::Bool;
    payload.metrics = {{QLatin1String(metric), flag ? Sparkplug::Type::Boolean : Sparkplug::Type::String, value}};
    MqttMessage message;
    message.topic = PlantTopics::text({PlantTopics::Kind::Command, group, cell, {}});
    message.payload = Sparkplug::encode(payload);
    m_intakes.front()->session->publish(message);
}

void Collector::askBirth(const QString& group, const QString& cell)
{
    const QString key = group + QLatin1Char('/') + cell;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_birthsAsked.size() > 20000)
            m_birthsAsked.clear();
        const auto asked = m_birthsAsked.constFind(key);
        if (asked != m_birthsAsked.constEnd() && m_clock.elapsed() - *asked < birthPauseMs)
            return;
        m_birthsAsked.insert(key, m_clock.elapsed());
    }
    command(group, cell, "Node Control/Rebirth", true);
}

void Collector::keepHouse()
{
    Database database(m_options.database);
    QElapsedTimer sinceRetention;
    bool failed = false;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_changed.wait_for(lock, std::chrono::milliseconds(houseMs), [this] { return m_ending; })) {
        lock.unlock();
        const bool retention = !sinceRetention.isValid() || sinceRetention.elapsed() > retentionMs;
        try {
            keepHouseOnce(database, retention);
            if (retention)
                sinceRetention.start();
            if (failed)
                m_health.set(QStringLiteral("database"), {});
            failed = false;
        } catch (const std::exception&) {
            const DatabaseError error = databaseError();
            qWarning("database: %s", qUtf8Printable(error.text));
            m_health.set(QStringLiteral("database"), error.trouble());
            database.drop();
            failed = true;
        }
        lock.lock();
    }
}

void Collector::keepHouseOnce(Database& database, bool retention)
{
    bool all = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        std::swap(all, m_rouseAll);
    }
    pqxx::nontransaction work(database.connection());
    if (retention)
        for (const auto& row : work.exec("SELECT apply_retention()"))
            qInfo("retention: %s is dropped", row[0].c_str());
    if (!m_intakes.front()->session->isConnected())
        return;
    for (const auto& row : work.exec_params("SELECT * FROM cells_to_rouse($1)", all))
        askBirth(QString::fromUtf8(row[0].c_str()), QString::fromUtf8(row[1].c_str()));
    if (!isCurrent())
        return;
    for (const auto& row : work.exec("SELECT * FROM gaps_to_ask()")) {
        const ResendRequest request{QString::fromUtf8(row[2].c_str()), QString::fromUtf8(row[3].c_str()),
                                    row[4].as<qint64>(), row[5].as<qint64>()};
        command(QString::fromUtf8(row[0].c_str()), QString::fromUtf8(row[1].c_str()), "Node Control/Resend",
                QString::fromUtf8(request.encode()));
    }
}
