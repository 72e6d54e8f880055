#pragma once

#include "plant/PlantTopics.h"

#include <QByteArray>

#include <optional>

/// The metrics of a Sparkplug payload as one JSON object by name. Any thread.
namespace StateMetrics {

/// Nothing when the payload is none, or a birth without what every birth has: `error` says what is wrong.
std::optional<QByteArray> json(const PlantTopics::Topic& topic, const QByteArray& payload, QString* error);

} // namespace StateMetrics
