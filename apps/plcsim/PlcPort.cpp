#include "PlcPort.h"

#include <QSerialPort>

std::unique_ptr<QIODevice> PlcPort::open(const QString& name, qint32 baudRate, QObject* owner,
                                         const std::function<void()>& onLoss, QString* error)
{
    auto port = std::make_unique<QSerialPort>(name);
    if (!port->open(QIODevice::ReadWrite) || !port->setBaudRate(baudRate)) {
        *error = QStringLiteral("%1: %2").arg(name, port->errorString());
        return nullptr;
    }
    QObject::connect(port.get(), &QSerialPort::errorOccurred, owner, onLoss, Qt::QueuedConnection);
    return port;
}

void PlcPort::flush(QIODevice* device)
{
    if (auto* port = qobject_cast<QSerialPort*>(device))
        port->flush();
}
