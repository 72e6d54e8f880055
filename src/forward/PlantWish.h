#pragma once

#include "plant/MqttOptions.h"
#include "plant/RowBatch.h"

#include <optional>

/// What somebody else sent to this cell's topics.
struct PlantWish
{
    bool rebirth = false;
    std::optional<ResendRequest> resend;
    QString instance; ///< of a birth: of which run of a program, and of which cell
    QString cellId;
    QString strange; ///< why it is none of these; empty when it is

    static PlantWish of(const MqttMessage& message);
};
