#include "DeviceDriver.h"

const CameraDriver* v4l2Driver()
{
    return nullptr;
}
