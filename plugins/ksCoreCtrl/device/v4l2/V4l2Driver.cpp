#include "../DeviceDriver.h"
#include "V4l2Device.h"

const CameraDriver* v4l2Driver()
{
    static constexpr CameraDriver driver = deviceDriver<V4l2Device>();
    return &driver;
}
