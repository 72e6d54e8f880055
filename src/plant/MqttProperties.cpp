#include "plant/MqttProperties.h"

#include <cstdlib>
#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <utility>

MqttProperties::~MqttProperties()
{
    mosquitto_property_free_all(&m_list);
}

void MqttProperties::add(const Pairs& pairs)
{
    for (const auto& pair : pairs)
        mosquitto_property_add_string_pair(&m_list, MQTT_PROP_USER_PROPERTY, pair.first.toUtf8().constData(),
                                           pair.second.toUtf8().constData());
}

MqttProperties::Pairs MqttProperties::pairsOf(const mosquitto_property* properties)
{
    Pairs pairs;
    bool next = false;
    char* name = nullptr;
    char* value = nullptr;
    while (
        (properties = mosquitto_property_read_string_pair(properties, MQTT_PROP_USER_PROPERTY, &name, &value, next))) {
        pairs.append({QString::fromUtf8(name), QString::fromUtf8(value)});
        std::free(name);
        std::free(value);
        next = true;
    }
    return pairs;
}

mosquitto_property* MqttProperties::release()
{
    return std::exchange(m_list, nullptr);
}
