#include "plant/MqttTroubles.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstring>
#include <mosquitto.h>
#include <mqtt_protocol.h>

namespace MqttTroubles {
namespace {

QString sayMqtt(const char* text)
{
    return QCoreApplication::translate("Plant", text);
}

QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

MqttTrouble ofBroker(int reason)
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

MqttTrouble ofLibrary(int code, const QString& where)
{
    const QString why = utf8(code == MOSQ_ERR_ERRNO ? std::strerror(errno) : mosquitto_strerror(code));
    return {MqttTrouble::Kind::Away,
            sayMqtt(QT_TRANSLATE_NOOP("Plant", "无法与代理服务器 %1 通信（%2），将自动重连")).arg(where, why)};
}

MqttTrouble ofCertificate(const QString& where, const QString& why)
{
    return {MqttTrouble::Kind::Tls,
            sayMqtt(QT_TRANSLATE_NOOP("Plant", "不接受 %1 的证书：%2；请检查证书和本机时钟")).arg(where, why)};
}

MqttTrouble ofHandshake(const QString& where)
{
    return {MqttTrouble::Kind::Tls,
            sayMqtt(QT_TRANSLATE_NOOP("Plant", "与 %1 的 TLS 握手失败；请检查端口和客户端证书")).arg(where)};
}

MqttTrouble ofClientId()
{
    return {MqttTrouble::Kind::Settings, sayMqtt(QT_TRANSLATE_NOOP("Plant", "客户端标识无效"))};
}

} // namespace MqttTroubles
