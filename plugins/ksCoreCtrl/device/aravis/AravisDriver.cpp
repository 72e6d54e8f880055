#include "../DeviceDriver.h"
#include "AravisDevice.h"

const CameraDriver* aravisDriver()
{
    static const CameraDriver driver = deviceDriver<AravisDevice>();
    return &driver;
}
