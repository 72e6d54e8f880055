#include "CameraClock.h"

namespace {

// Registers that every such camera has.
constexpr guint64 frequencyHigh = 0x093C, frequencyLow = 0x0940;
constexpr guint64 control = 0x0944, valueHigh = 0x0948, valueLow = 0x094C;
constexpr guint32 latch = 2;
constexpr std::chrono::microseconds drift(150); ///< of good quartzes in a few seconds
constexpr std::chrono::milliseconds slowest(1); ///< an answer that took longer says too little

guint64 read(ArvDevice* device, guint64 high, guint64 low, GError** error)
{
    guint32 upper = 0, lower = 0;
    if (arv_device_read_register(device, high, &upper, error))
        arv_device_read_register(device, low, &lower, error);
    return guint64(upper) << 32 | lower;
}

} // namespace

void CameraClock::compare(ArvDevice* device)
{
    if (!ARV_IS_GV_DEVICE(device))
        return;
    GErrorHolder error;
    const auto asked = Clock::now();
    if (!arv_device_write_register(device, control, latch, &error))
        return;
    const auto answered = Clock::now();
    const guint64 ticks = read(device, valueHigh, valueLow, &error);
    if (error)
        return;
    const guint64 perSecond = read(device, frequencyHigh, frequencyLow, &error);
    if (error || perSecond == 0 || answered - asked > slowest)
        return;
    const std::chrono::nanoseconds camera(gint64(double(ticks) / double(perSecond) * 1e9));
    m_ahead = answered.time_since_epoch() + drift - camera;
}

std::optional<CameraClock::Clock::time_point> CameraClock::latest(std::chrono::nanoseconds cameraTime) const
{
    if (!m_ahead)
        return std::nullopt;
    return Clock::time_point(std::chrono::duration_cast<Clock::duration>(cameraTime + *m_ahead));
}
