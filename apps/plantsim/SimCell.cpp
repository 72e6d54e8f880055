#include "SimCell.h"

#include "SimParts.h"
#include "plant/MqttSession.h"
#include "plant/PlantTopics.h"
#include "plant/Sparkplug.h"

#include <QDateTime>

namespace {

using Sparkplug::Type;
constexpr int mostRowsABatch = 200;
constexpr qint64 stateMs = 5000;
const char* const streams[] = {"parts", "log"};

qulonglong unsignedOf(qint64 value)
{
    return static_cast<qulonglong>(value);
}

} // namespace

SimCell::SimCell(int number, const Options& options, SimStore& store)
    : m_number(number)
    , m_options(options)
    , m_name(QStringLiteral("C%1").arg(number, 3, 10, QLatin1Char('0')))
    , m_store(store)
    , m_cell(store.begin(number))
{
}

SimCell::~SimCell() = default;

void SimCell::begin()
{
    MqttSession::Handlers handlers;
    const auto later = [this](auto work) { QMetaObject::invokeMethod(this, work, Qt::QueuedConnection); };
    handlers.options = [this] { return connection(); };
    handlers.connected = [this, later](bool) { later([this] { onConnected(); }); };
    handlers.disconnected = [this, later](const MqttTrouble&) {
        later([this] {
            m_connected = false;
            ++m_generation;
        });
    };
    handlers.received = [this, later](const MqttMessage& message) {
        later([this, payload = message.payload] { onCommand(payload); });
    };
    m_session = std::make_unique<MqttSession>(std::move(handlers));
    m_session->start();
}

void SimCell::stop()
{
    m_session->stop(true);
}

MqttOptions SimCell::connection() const
{
    MqttOptions options = m_options.broker;
    options.clientId = QStringLiteral("valvecell-") + m_cell.cellId;
    Sparkplug::Payload will;
    will.timestamp = QDateTime::currentMSecsSinceEpoch();
    will.seq = -1;
    will.metrics = {{QStringLiteral("bdSeq"), Type::UInt64, unsignedOf(m_cell.bdSeq)}};
    options.will.topic = PlantTopics::text({PlantTopics::Kind::Death, m_options.group, m_name, {}});
    options.will.payload = Sparkplug::encode(will);
    return options;
}

void SimCell::onConnected()
{
    m_connected = true;
    ++m_generation;
    m_inFlight[0] = m_inFlight[1] = -1;
    m_resending = false;
    m_session->subscribe({PlantTopics::text({PlantTopics::Kind::Command, m_options.group, m_name, {}})});
    publishState(true);
}

void SimCell::onCommand(const QByteArray& payload)
{
    QString error;
    const std::optional<Sparkplug::Payload> command = Sparkplug::decode(payload, &error);
    if (!command)
        return;
    if (command->value(QStringLiteral("Node Control/Rebirth"), Type::Boolean).value_or(false).toBool())
        publishState(true);
    const QString resend = command->text(QStringLiteral("Node Control/Resend"));
    const std::optional<ResendRequest> request = ResendRequest::decode(resend.toUtf8(), &error);
    if (!resend.isEmpty() && request && m_resends.size() < 16)
        m_resends.enqueue(*request);
}

void SimCell::step(qint64 now, bool recording)
{
    if (recording)
        record(now);
    if (!m_connected)
        return;
    if (now >= m_nextState)
        publishState(false);
    for (const int stream : {0, 1})
        publishRows(stream);
    publishResends();
}

void SimCell::record(qint64 now)
{
    const double pause = 1000 / m_options.rate;
    if (m_nextPart == 0)
        m_nextPart = now + static_cast<qint64>(pause * (m_number % 10) / 10);
    if (m_nextLine == 0)
        m_nextLine = now + 1000 * (m_number % 60);
    for (; m_nextPart <= now; m_nextPart += static_cast<qint64>(pause)) {
        const SimStore::Row row{++m_cell.last[0], now};
        m_store.add(m_number, 0, row);
        count(SimParts::part(m_number, row, m_options.zoneSeconds));
    }
    for (; m_nextLine <= now; m_nextLine += 60000)
        m_store.add(m_number, 1, {++m_cell.last[1], now});
}

void SimCell::count(const PlantPart& part)
{
    const qint64 day = part.wall / 86400000;
    if (day != m_day)
        std::fill(&m_counts[0][0], &m_counts[0][0] + 6, 0);
    m_day = day;
    const int outcome = part.outcome == QLatin1String("found") ? 0 : part.outcome == QLatin1String("notFound") ? 1 : 2;
    ++m_counts[part.station - 1][outcome];
}

void SimCell::publishState(bool birth)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    m_nextState = now + stateMs;
    Sparkplug::Payload payload;
    payload.timestamp = now;
    m_seq = birth ? 0 : (m_seq + 1) % 256;
    payload.seq = m_seq;
    const auto add = [&payload](const QString& name, Type type, const QVariant& value) {
        payload.metrics.append({name, type, value});
    };
    if (birth) {
        add("bdSeq", Type::UInt64, unsignedOf(m_cell.bdSeq));
        add("Properties/CellId", Type::String, m_cell.cellId);
        add("Properties/Schema", Type::String, QStringLiteral("1"));
        add("Properties/Software", Type::String, QStringLiteral(VALVECELL_VERSION));
        add("Node Control/Rebirth", Type::Boolean, false);
        for (const int station : {1, 2})
            add(QStringLiteral("Calibration/%1").arg(station), Type::String,
                QStringLiteral("{\"version\":\"K%1-%2\",\"scale\":0.0512}").arg(m_number).arg(station));
        for (const char* name : {"Plc", "Camera/1", "Recording"})
            add(QStringLiteral("Health/") + QLatin1String(name), Type::String, QStringLiteral("ok"));
        add("Health/Mode", Type::String, QStringLiteral("run"));
    }
    const QByteArray alarms = SimParts::alarms(m_number, now);
    add("Health/Camera/2", Type::String, alarms.contains("camera2") ? QStringLiteral("fault") : QStringLiteral("ok"));
    add("Health/Clock", Type::DateTime, unsignedOf(now));
    add("Health/DiskFree", Type::UInt64, unsignedOf(80000000000LL - m_number * 500000000LL));
    add("Alarms", Type::String, QString::fromUtf8(alarms));
    for (int station = 0; station < 2; ++station)
        for (int outcome = 0; outcome < 3; ++outcome)
            add(QStringLiteral("Day/%1/%2")
                    .arg(station + 1)
                    .arg(QLatin1String(outcome == 0   ? "Found"
                                       : outcome == 1 ? "NotFound"
                                                      : "Refused")),
                Type::UInt32, qulonglong(m_counts[station][outcome]));
    for (const int stream : {0, 1}) {
        const QString rows = QStringLiteral("Rows/%1/").arg(QLatin1String(streams[stream]));
        add(rows + "Epoch", Type::String, m_cell.epoch);
        add(rows + "First", Type::UInt64, qulonglong(1));
        add(rows + "Last", Type::UInt64, unsignedOf(m_cell.last[stream]));
        add(rows + "Sent", Type::UInt64, unsignedOf(m_cell.sent[stream]));
    }
    add("Forward/Waiting", Type::UInt64, unsignedOf(m_cell.last[0] + m_cell.last[1] - m_cell.sent[0] - m_cell.sent[1]));
    MqttMessage message;
    const auto kind = birth ? PlantTopics::Kind::Birth : PlantTopics::Kind::Data;
    message.topic = PlantTopics::text({kind, m_options.group, m_name, {}});
    message.payload = Sparkplug::encode(payload);
    message.qos = 0;
    m_session->publish(message);
}

QByteArray SimCell::batch(int stream, qint64 after, qint64 upTo, const QVector<SimStore::Row>& rows) const
{
    RowBatch batch;
    batch.cellId = m_cell.cellId;
    batch.stream = QLatin1String(streams[stream]);
    batch.epoch = m_cell.epoch;
    batch.after = after;
    batch.upTo = upTo;
    for (const SimStore::Row& row : rows)
        if (stream == 0)
            batch.parts.append(SimParts::part(m_number, row, m_options.zoneSeconds));
        else
            batch.lines.append(SimParts::line(m_number, row, m_options.zoneSeconds));
    return batch.encode();
}

bool SimCell::send(const QString& topic, const QByteArray& payload, std::function<void(bool)> taken)
{
    MqttMessage message;
    message.topic = topic;
    message.payload = payload;
    return m_session->publish(message, [this, generation = m_generation, taken](MqttDelivery delivery) {
        QMetaObject::invokeMethod(
            this,
            [this, generation, taken, delivery] {
                if (generation == m_generation)
                    taken(delivery == MqttDelivery::Taken);
            },
            Qt::QueuedConnection);
    });
}

void SimCell::publishRows(int stream)
{
    if (m_inFlight[stream] >= 0 || m_cell.sent[stream] >= m_cell.last[stream])
        return;
    m_store.commit();
    const qint64 after = m_cell.sent[stream];
    const QVector<SimStore::Row> rows = m_store.rows(m_number, stream, after, m_cell.last[stream], mostRowsABatch);
    const qint64 upTo = rows.last().row;
    const QString topic =
        PlantTopics::text({PlantTopics::Kind::Rows, m_options.group, m_name, QLatin1String(streams[stream])});
    const bool sent = send(topic, batch(stream, after, upTo, rows), [this, stream, upTo, rows](bool taken) {
        m_inFlight[stream] = -1;
        if (!taken)
            return;
        m_cell.sent[stream] = upTo;
        m_store.setSent(m_number, stream, upTo);
        if (stream == 0 && m_options.pictures)
            sendPictures(rows);
    });
    m_inFlight[stream] = sent ? upTo : -1;
}

void SimCell::sendPictures(const QVector<SimStore::Row>& rows)
{
    for (const SimStore::Row& row : rows) {
        const PlantPart part = SimParts::part(m_number, row, m_options.zoneSeconds);
        if (!part.picture)
            continue;
        MqttMessage message;
        message.topic = PlantTopics::text({PlantTopics::Kind::Picture, m_options.group, m_name, {}});
        message.payload = SimParts::picture(part);
        message.properties = {{"cellId", m_cell.cellId},
                              {"epoch", m_cell.epoch},
                              {"row", QString::number(part.row)},
                              {"width", "320"},
                              {"height", "240"}};
        m_session->publish(message);
    }
}

void SimCell::publishResends()
{
    if (m_resending || m_resends.isEmpty())
        return;
    ResendRequest& request = m_resends.head();
    const int stream = request.stream == QLatin1String(streams[1]) ? 1 : 0;
    const qint64 upTo = qMin(request.upTo, m_cell.sent[stream]);
    if (request.epoch != m_cell.epoch || request.after >= upTo) {
        m_resends.dequeue();
        return;
    }
    const QVector<SimStore::Row> rows = m_store.rows(m_number, stream, request.after, upTo, mostRowsABatch);
    const qint64 last = rows.size() == mostRowsABatch ? rows.last().row : upTo;
    const QString topic =
        PlantTopics::text({PlantTopics::Kind::Rows, m_options.group, m_name, QLatin1String(streams[stream])});
    m_resending = send(topic, batch(stream, request.after, last, rows), [this, last](bool taken) {
        m_resending = false;
        if (taken && !m_resends.isEmpty())
            m_resends.head().after = last;
    });
}
