#pragma once

#include <QPair>
#include <QString>
#include <QVector>

using mosquitto_property = struct mqtt5__property;

/// Owns a list of properties for a call of the library, which copies it.
class MqttProperties
{
public:
    using Pairs = QVector<QPair<QString, QString>>;

    MqttProperties() = default;
    ~MqttProperties();

    MqttProperties(const MqttProperties&) = delete;
    MqttProperties& operator=(const MqttProperties&) = delete;

    /// User properties.
    void add(const Pairs& pairs);
    static Pairs pairsOf(const mosquitto_property* properties);

    mosquitto_property** list() { return &m_list; }
    /// For a call that takes them over.
    mosquitto_property* release();

private:
    mosquitto_property* m_list = nullptr;
};
