#include "plant/MqttLine.h"

#include "plant/MqttTlsContext.h"

#include <QCoreApplication>

#include <chrono>
#include <csignal>
#include <cstring>
#include <mosquitto.h>
#include <mqtt_protocol.h>

namespace {

using namespace std::chrono_literals;

constexpr int shortestPause = 500; // ms
constexpr int longestPause = 30000;
constexpr auto answerTime = 15s; // for a broker to accept a connection

QString sayMqtt(const char* text)
{
    return QCoreApplication::translate("Plant", text);
}

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

QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

MqttTrouble troubleOf(int reason)
{
    using Kind = MqttTrouble::Kind;
    switch (reason) {
    case MQTT_RC_BAD_USERNAME_OR_PASSWORD:
    case MQTT_RC_NOT_AUTHORIZED:
    case MQTT_RC_BANNED:
        return {Kind::Login, sayMqtt(QT_TRANSLATE_NOOP("Plant", "代理服务器拒绝登录，请检查用户名、密码文件和证书"))};
    case MQTT_RC_SESSION_TAKEN_OVER:
        return {Kind::TakenOver, sayMqtt(QT_TRANSLATE_NOOP(
                                     "Plant", "另一台设备以相同的身份连接了代理服务器：请检查是否复制了工作目录"))};
    case MQTT_RC_SERVER_UNAVAILABLE:
    case MQTT_RC_SERVER_BUSY:
    case MQTT_RC_SERVER_SHUTTING_DOWN:
    case MQTT_RC_KEEP_ALIVE_TIMEOUT:
    case MQTT_RC_ADMINISTRATIVE_ACTION:
    case MQTT_RC_CONNECTION_RATE_EXCEEDED:
        return {Kind::Away, sayMqtt(QT_TRANSLATE_NOOP("Plant", "代理服务器断开了连接（%1），将自动重连"))
                                .arg(utf8(mosquitto_reason_string(reason)))};
    default:
        return {
            Kind::Settings,
            sayMqtt(QT_TRANSLATE_NOOP("Plant", "代理服务器拒绝连接：%1")).arg(utf8(mosquitto_reason_string(reason)))};
    }
}

/// Owns a list of properties for a call of the library, which copies it.
class Properties
{
public:
    ~Properties() { mosquitto_property_free_all(&m_list); }

    void add(const QVector<QPair<QString, QString>>& pairs)
    {
        for (const auto& pair : pairs)
            mosquitto_property_add_string_pair(&m_list, MQTT_PROP_USER_PROPERTY, pair.first.toUtf8().constData(),
                                               pair.second.toUtf8().constData());
    }
    mosquitto_property** list() { return &m_list; }
    /// The library takes them over.
    mosquitto_property* release() { return std::exchange(m_list, nullptr); }

private:
    mosquitto_property* m_list = nullptr;
};

QVector<QPair<QString, QString>> pairsOf(const mosquitto_property* properties)
{
    QVector<QPair<QString, QString>> pairs;
    bool next = false;
    char* name = nullptr;
    char* value = nullptr;
    while (
        (properties = mosquitto_property_read_string_pair(properties, MQTT_PROP_USER_PROPERTY, &name, &value, next))) {
        pairs.append({utf8(name), utf8(value)});
        free(name);
        free(value);
        next = true;
    }
    return pairs;
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
    Properties properties;
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
        pauseMs = qMin(2 * pauseMs, longestPause);
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
        m_trouble = {MqttTrouble::Kind::Settings, sayMqtt(QT_TRANSLATE_NOOP("Plant", "客户端标识无效"))};
    } else if (prepare(client, options)) {
        Properties properties;
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
        Properties properties;
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
    if (!m_trouble.text.isEmpty())
        return;
    const QString where = QStringLiteral("%1:%2").arg(options.host).arg(options.port);
    if (m_tls && !m_tls->refusal().isEmpty()) {
        m_trouble = {MqttTrouble::Kind::Tls,
                     sayMqtt(QT_TRANSLATE_NOOP("Plant", "不接受 %1 的证书：%2；请检查证书和本机时钟"))
                         .arg(where, m_tls->refusal())};
    } else if (m_tls && !m_greeted && (reason == MOSQ_ERR_TLS || reason == MOSQ_ERR_CONN_LOST)) {
        m_trouble = {MqttTrouble::Kind::Tls,
                     sayMqtt(QT_TRANSLATE_NOOP("Plant", "与 %1 的 TLS 握手失败；请检查端口和客户端证书")).arg(where)};
    } else {
        m_trouble = {
            MqttTrouble::Kind::Away,
            sayMqtt(QT_TRANSLATE_NOOP("Plant", "无法与代理服务器 %1 通信（%2），将自动重连"))
                .arg(where, reason == MOSQ_ERR_ERRNO ? utf8(std::strerror(errno)) : utf8(mosquitto_strerror(reason)))};
    }
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
        m_trouble = troubleOf(reason);
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
        m_trouble = troubleOf(reason);
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
    received.topic = utf8(message.topic);
    received.payload = QByteArray(static_cast<const char*>(message.payload), message.payloadlen);
    received.qos = message.qos;
    received.retain = message.retain;
    received.properties = pairsOf(properties);
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
