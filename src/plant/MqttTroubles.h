#pragma once

#include "plant/MqttOptions.h"

/// Why a connection failed or ended, with the remedy.
namespace MqttTroubles {

/// By the reason code of MQTT 5 that the broker gave.
MqttTrouble ofBroker(int reason);
/// By the library's code. `where`: host and port.
MqttTrouble ofLibrary(int code, const QString& where);
MqttTrouble ofCertificate(const QString& where, const QString& why);
MqttTrouble ofHandshake(const QString& where);
MqttTrouble ofClientId();

} // namespace MqttTroubles
