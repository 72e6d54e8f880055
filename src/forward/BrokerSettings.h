#pragma once

#include "plant/MqttOptions.h"

class ForwardConfig;

/// How the broker is reached, by the settings; relative files lie below the home. What in them keeps the cell from
/// connecting goes to `error`, as a sentence for the user.
namespace BrokerSettings {

MqttOptions read(const ForwardConfig& config, const QString& home, QString* error);

} // namespace BrokerSettings
