// The serial ports as the system's drivers have entered them, for a Qt without its module for serial ports.

#include "PortList.h"

#include <QCollator>

#include <algorithm>
#include <windows.h>

namespace {

/// The entry of that number, "\Device\Serial0" with its "COM1"; false when there is none.
bool entryAt(HKEY drivers, DWORD number, FoundPort& port)
{
    wchar_t driver[256] = {};
    wchar_t name[256] = {};
    DWORD driverSize = 255;
    DWORD nameBytes = 255 * sizeof(wchar_t);
    if (RegEnumValueW(drivers, number, driver, &driverSize, nullptr, nullptr, reinterpret_cast<BYTE*>(name),
                      &nameBytes) != ERROR_SUCCESS)
        return false;
    port.name = port.device = QString::fromWCharArray(name);
    port.description = QString::fromWCharArray(driver).section(QLatin1Char('\\'), -1);
    return true;
}

} // namespace

/// Not by Qt's settings, which take the strokes in the drivers' names for folders.
QVector<FoundPort> findPorts(const QString&)
{
    QVector<FoundPort> ports;
    HKEY drivers = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_READ, &drivers) != ERROR_SUCCESS)
        return ports;
    for (FoundPort port; entryAt(drivers, static_cast<DWORD>(ports.size()), port);)
        ports.append(port);
    RegCloseKey(drivers);
    QCollator numbers;
    numbers.setNumericMode(true);
    std::sort(ports.begin(), ports.end(), [&](const FoundPort& left, const FoundPort& right) {
        return numbers.compare(left.name, right.name) < 0;
    });
    return ports;
}
