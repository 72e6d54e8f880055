#pragma once

#include <QIODevice>

#include <functional>
#include <memory>

/// A real serial port as the PLC's end of the line.
namespace PlcPort {

/// Opens it; nothing, with a reason, when that fails. `onLoss` is called in the owner's thread, some time after it was
/// lost and unless it was disconnected from the owner before.
std::unique_ptr<QIODevice> open(const QString& name, qint32 baudRate, QObject* owner,
                                const std::function<void()>& onLoss, QString* error);

/// Sends what was written at once, if the device is such a port.
void flush(QIODevice* device);

} // namespace PlcPort
