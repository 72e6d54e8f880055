#pragma once

#include "GObjectPtr.h"

#include <arv.h>
#include <chrono>
#include <optional>

/// What the clock of a GigE Vision camera shows at which time of this machine. One thread.
class CameraClock
{
public:
    using Clock = std::chrono::steady_clock;

    /// Compares both clocks, which takes the camera's answer to four questions; later comparisons replace earlier ones,
    /// since clocks drift.
    void compare(ArvDevice* device);
    /// The latest time of this machine at which the camera's clock can have shown that, which is less than a
    /// millisecond off for some seconds after a comparison; nothing when it cannot be compared.
    std::optional<Clock::time_point> latest(std::chrono::nanoseconds cameraTime) const;
    /// Forgets the camera.
    void clear() { m_ahead.reset(); }

private:
    std::optional<std::chrono::nanoseconds> m_ahead; ///< this machine's clock, of the camera's
};
