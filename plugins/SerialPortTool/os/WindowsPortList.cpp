// The serial ports as the system's drivers have entered them, for a Qt without its module for serial ports.

#include "PortList.h"

#include <QCollator>
#include <QSettings>

#include <algorithm>

QVector<FoundPort> findPorts(const QString&)
{
    const QSettings map(QStringLiteral("HKEY_LOCAL_MACHINE\\HARDWARE\\DEVICEMAP\\SERIALCOMM"), QSettings::NativeFormat);
    QVector<FoundPort> ports;
    const QStringList drivers = map.allKeys();
    for (const QString& driver : drivers) {
        const QString name = map.value(driver).toString();
        ports.append({name, name, driver.section(QLatin1Char('/'), -1).section(QLatin1Char('\\'), -1)});
    }
    QCollator numbers;
    numbers.setNumericMode(true);
    std::sort(ports.begin(), ports.end(), [&](const FoundPort& left, const FoundPort& right) {
        return numbers.compare(left.name, right.name) < 0;
    });
    return ports;
}
