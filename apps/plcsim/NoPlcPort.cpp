// Where Qt came without its module for serial ports.

#include "PlcPort.h"

std::unique_ptr<QIODevice> PlcPort::open(const QString& name, qint32, QObject*, const std::function<void()>&,
                                         QString* error)
{
    *error = QStringLiteral("%1: built without serial ports; --listen ADDRESS:PORT needs none").arg(name);
    return nullptr;
}

void PlcPort::flush(QIODevice*) {}
