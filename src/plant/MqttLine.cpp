#include "plant/MqttLine.h"

#include "plant/MqttProperties.h"
#include "plant/MqttTlsContext.h"
#include "plant/MqttTroubles.h"

#include <chrono>
#include <csignal>
#include <mosquitto.h>
#include <mqtt_protocol.h>

namespace {

using namespace std::chrono_literals;

constexpr int shortestPause = 500;        // ms
constexpr int longestPause = 1500;        // a plant wants to see the newest state within two seconds
constexpr int longestPauseOfOurs = 30000; // while somebody has to mend something
constexpr auto answerTime = 15s;          // for a broker to accept a connection

void openLibrary()
{
    static const int opened = [] {
#ifdef SIGPIPE
        std::signal(SIGPIPE, SIG_IGN); // OpenSSL writes to connections that are gone
#endif
        return mosquitto_lib_init();
    }();
    Q_UNUSED(opened)
}

} // namespace

MqttSession::Line::Line(Handlers handlers)
    : m_handlers(std::move(handlers))
{
    openLibrary();
}

MqttSession::Line::~Line() = default;

void MqttSession::Line::start(const std::shared_ptr<Line>& self)
{
    m_running = true;
    m_thread = std::thread([self] { self->run(); });
}

void MqttSession::Line::stop(bool withWill)
{
    if (!m_thread.joinable())
        return;
    bool ended = false;
    {
        std::unique_lock lock(m_mutex);
        m_stopping = true;
        m_willWanted = withWill;
        if (m_client)
            mosquitto_disconnect_v5(m_client, withWill ? MQTT_RC_DISCONNECT_WITH_WILL_MSG : 0, nullptr);
        m_changed.notify_all();
        ended = m_changed.wait_for(lock, 3s, [this] { return !m_running; });
    }
    if (ended)
        return m_thread.join();
    m_thread.detach();
    const std::lock_guard lock(m_handing);
    m_deaf = true;
}

void MqttSession::Line::retryNow()
{
    const std::lock_guard lock(m_mutex);
    m_hurried = true;
    m_changed.notify_all();
}

void MqttSession::Line::reconnect()
{
    const std::lock_guard lock(m_mutex);
    m_dropped = m_hurried = true;
    if (m_client)
        mosquitto_disconnect_v5(m_client, MQTT_RC_DISCONNECT_WITH_WILL_MSG, nullptr);
    m_changed.notify_all();
}

bool MqttSession::Line::isConnected() const
{
    const std::lock_guard lock(m_mutex);
    return m_connected;
}

bool MqttSession::Line::publish(const MqttMessage& message, Done done)
{
    MqttProperties properties;
    properties.add(message.properties);
    const std::lock_guard lock(m_mutex); // the answer may come before the number is known
    if (!m_connected || m_stopping)
        return false;
    int id = 0;
    const int reason =
        mosquitto_publish_v5(m_client, &id, message.topic.toUtf8().constData(), message.payload.size(),
                             message.payload.constData(), message.qos, message.retain, *properties.list());
    if (reason != MOSQ_ERR_SUCCESS)
        return false;
    if (done)
        m_waiting[id] = std::move(done);
    return true;
}

bool MqttSession::Line::subscribe(const QStringList& filters, bool others)
{
    const std::lock_guard lock(m_mutex);
    if (!m_connected || m_stopping)
        return false;
    for (const QString& filter : filters) {
        int id = 0;
        const int options = others ? MQTT_SUB_OPT_NO_LOCAL : 0;
        if (mosquitto_subscribe_v5(m_client, &id, filter.toUtf8().constData(), 1, options, nullptr) != MOSQ_ERR_SUCCESS)
            return false;
        m_wanted[id] = QStringList{filter};
    }
    return true;
}

void MqttSession::Line::run()
{
    int pauseMs = shortestPause;
    while (true) {
        connectOnce();
        pauseMs = m_greeted ? shortestPause : pauseMs;
        pause(pauseMs);
        pauseMs = qMin(2 * pauseMs, m_trouble.wantsEngineer() ? longestPauseOfOurs : longestPause);
        const std::lock_guard lock(m_mutex);
        if (m_stopping)
            break;
    }
    const std::lock_guard lock(m_mutex);
    m_running = false;
    m_changed.notify_all();
}

void MqttSession::Line::pause(int ms)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_stopping || m_hurried; });
    m_hurried = m_dropped = false;
}

template <typename Call>
void MqttSession::Line::hand(const Call& call)
{
    const std::lock_guard lock(m_handing);
    if (!m_deaf)
        call();
}

void MqttSession::Line::connectOnce()
{
    MqttOptions options;
    hand([&] { options = m_handlers.options(); });
    m_trouble = {};
    m_greeted = false;
    const bool kept = options.sessionSeconds > 0;
    mosquitto* const client = mosquitto_new(options.clientId.toUtf8().constData(), !kept, this);
    if (!client) {
        m_trouble = MqttTroubles::ofClientId();
    } else if (prepare(client, options)) {
        MqttProperties properties;
        if (kept)
            mosquitto_property_add_int32(properties.list(), MQTT_PROP_SESSION_EXPIRY_INTERVAL, options.sessionSeconds);
        const QByteArray host = options.host.toUtf8();
        int reason = kept ? mosquitto_connect_bind_v5(client, host.constData(), options.port, options.keepAlive,
                                                      nullptr, *properties.list())
                          : mosquitto_connect_async(client, host.constData(), options.port, options.keepAlive);
        if (reason == MOSQ_ERR_SUCCESS)
            reason = serve(client);
        judge(reason, options);
    }
    end(client);
    hand([this] { m_handlers.disconnected(m_trouble); });
}

bool MqttSession::Line::prepare(mosquitto* client, const MqttOptions& options)
{
    mosquitto_int_option(client, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    mosquitto_int_option(client, MOSQ_OPT_TCP_NODELAY, 1);
    mosquitto_threaded_set(client, true); // what is sent, is sent on this thread alone, after the handler's return
    listen(client);
    if (!options.user.isEmpty())
        mosquitto_username_pw_set(client, options.user.toUtf8().constData(), options.password.toUtf8().constData());
    const MqttMessage& will = options.will;
    if (!will.topic.isEmpty()) {
        MqttProperties properties;
        properties.add(will.properties);
        mosquitto_will_set_v5(client, will.topic.toUtf8().constData(), will.payload.size(), will.payload.constData(),
                              will.qos, will.retain, properties.release());
    }
    return !options.tls.on || prepareTls(client, options);
}

bool MqttSession::Line::prepareTls(mosquitto* client, const MqttOptions& options)
{
    m_trouble.kind = MqttTrouble::Kind::Tls;
    m_tls = MqttTlsContext::make(options.tls, options.host, &m_trouble.text);
    if (!m_tls)
        return false;
    mosquitto_int_option(client, MOSQ_OPT_SSL_CTX_WITH_DEFAULTS, 0);
    mosquitto_void_option(client, MOSQ_OPT_SSL_CTX, m_tls->context());
    m_trouble = {};
    return true;
}

int MqttSession::Line::serve(mosquitto* client)
{
    {
        const std::lock_guard lock(m_mutex);
        m_client = client;
    }
    const auto start = std::chrono::steady_clock::now();
    while (true) {
        const int reason = mosquitto_loop(client, 200, 1);
        if (reason != MOSQ_ERR_SUCCESS)
            return reason;
        const bool late = !m_greeted && std::chrono::steady_clock::now() - start > answerTime;
        const std::lock_guard lock(m_mutex);
        if (late || (m_stopping && !m_connected))
            return MOSQ_ERR_TIMEOUT;
    }
}

/// What the broker said itself comes first.
void MqttSession::Line::judge(int reason, const MqttOptions& options)
{
    const QString where = QStringLiteral("%1:%2").arg(options.host).arg(options.port);
    if (!m_trouble.text.isEmpty())
        return;
    if (m_tls && !m_tls->refusal().isEmpty())
        m_trouble = MqttTroubles::ofCertificate(where, m_tls->refusal());
    else if (m_tls && !m_greeted && (reason == MOSQ_ERR_TLS || reason == MOSQ_ERR_CONN_LOST))
        m_trouble = MqttTroubles::ofHandshake(where);
    else
        m_trouble = MqttTroubles::ofLibrary(reason, where);
}

void MqttSession::Line::end(mosquitto* client)
{
    std::map<int, Done> lost;
    {
        const std::lock_guard lock(m_mutex);
        m_client = nullptr;
        m_connected = false;
        lost.swap(m_waiting);
        m_wanted.clear();
    }
    mosquitto_destroy(client);
    m_tls.reset();
    for (const auto& [id, done] : lost)
        hand([&done = done] { done(MqttDelivery::Lost); });
}

void MqttSession::Line::listen(mosquitto* client)
{
    const auto self = [](void* line) { return static_cast<Line*>(line); };
    static const auto lineOf = self;
    mosquitto_connect_v5_callback_set(client,
                                      [](mosquitto*, void* line, int reason, int flags, const mosquitto_property*) {
                                          lineOf(line)->onConnect(reason, flags & 1);
                                      });
    mosquitto_disconnect_v5_callback_set(client, [](mosquitto*, void* line, int reason, const mosquitto_property*) {
        lineOf(line)->onDisconnect(reason);
    });
    mosquitto_publish_v5_callback_set(client, [](mosquitto*, void* line, int id, int reason,
                                                 const mosquitto_property*) { lineOf(line)->onPublish(id, reason); });
    mosquitto_message_v5_callback_set(
        client, [](mosquitto*, void* line, const mosquitto_message* message, const mosquitto_property* properties) {
            lineOf(line)->onMessage(*message, properties);
        });
    mosquitto_subscribe_v5_callback_set(
        client, [](mosquitto*, void* line, int id, int count, const int* reasons, const mosquitto_property*) {
            lineOf(line)->onSubscribe(id, count > 0 ? reasons[0] : MQTT_RC_UNSPECIFIED);
        });
}

void MqttSession::Line::onConnect(int reason, bool kept)
{
    if (reason >= MQTT_RC_UNSPECIFIED) {
        m_trouble = MqttTroubles::ofBroker(reason);
        return;
    }
    m_greeted = true;
    {
        const std::lock_guard lock(m_mutex);
        m_connected = true;
    }
    hand([&] { m_handlers.connected(kept); });
}

void MqttSession::Line::onDisconnect(int reason)
{
    if (reason >= MQTT_RC_UNSPECIFIED && m_trouble.text.isEmpty())
        m_trouble = MqttTroubles::ofBroker(reason);
}

void MqttSession::Line::onPublish(int id, int reason)
{
    Done done;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_waiting.find(id);
        if (found == m_waiting.end())
            return;
        done = std::move(found->second);
        m_waiting.erase(found);
    }
    const MqttDelivery delivery = reason >= MQTT_RC_UNSPECIFIED               ? MqttDelivery::Refused
                                  : reason == MQTT_RC_NO_MATCHING_SUBSCRIBERS ? MqttDelivery::NobodyThere
                                                                              : MqttDelivery::Taken;
    hand([&] { done(delivery); });
}

void MqttSession::Line::onMessage(const mosquitto_message& message, const mosquitto_property* properties)
{
    MqttMessage received;
    received.topic = QString::fromUtf8(message.topic);
    received.payload = QByteArray(static_cast<const char*>(message.payload), message.payloadlen);
    received.qos = message.qos;
    received.retain = message.retain;
    received.properties = MqttProperties::pairsOf(properties);
    hand([&] { m_handlers.received(received); });
}

void MqttSession::Line::onSubscribe(int id, int reason)
{
    QStringList filters;
    {
        const std::lock_guard lock(m_mutex);
        filters = m_wanted[id];
        m_wanted.erase(id);
    }
    if (reason < MQTT_RC_UNSPECIFIED || !m_handlers.notSubscribed)
        return;
    for (const QString& filter : qAsConst(filters))
        hand([&] { m_handlers.notSubscribed(filter); });
}
