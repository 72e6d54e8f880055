#include "DeviceDriver.h"

const CameraDriver* aravisDriver()
{
    return nullptr;
}
