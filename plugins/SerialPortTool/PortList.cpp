#include "PortList.h"

#include <QDir>
#include <QSerialPortInfo>

#include <algorithm>

namespace {

/// Linux opens a port by its path, Windows by its plain name.
QString nameOf(const QSerialPortInfo& info)
{
    return info.systemLocation().startsWith(QLatin1Char('/')) ? info.systemLocation() : info.portName();
}

QString descriptionOf(const QSerialPortInfo& info)
{
    QStringList parts{info.description(), info.manufacturer(), info.serialNumber()};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QVector<FoundPort> portsById(const QString& folder)
{
    QVector<FoundPort> ports;
    const QFileInfoList links = QDir(folder).entryInfoList(QDir::System | QDir::Files, QDir::Name);
    for (const QFileInfo& link : links)
        if (link.isSymLink() && link.exists())
            ports.append({link.filePath(), link.canonicalFilePath(), {}});
    return ports;
}

} // namespace

QVector<FoundPort> findPorts(const QString& byIdFolder)
{
    QVector<FoundPort> ports = portsById(byIdFolder);
    const QList<QSerialPortInfo> infos = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& info : infos) {
        const auto named = std::find_if(ports.begin(), ports.end(),
                                        [&](const FoundPort& port) { return port.device == info.systemLocation(); });
        if (named == ports.end())
            ports.append({nameOf(info), nameOf(info), descriptionOf(info)});
        else
            named->description = descriptionOf(info);
    }
    return ports;
}
