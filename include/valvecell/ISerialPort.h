#pragma once

#include "SComFrame.h"

#include <functional>

class QObject;
class QString;

/// The PLC's serial line. Module file "SerialPortTool", factory symbol "SerialPortCreate".
///
/// Threads: every operation is called from the GUI thread. send() returns without waiting for the line; open() and
/// close() may wait for the device, open() for a second at most. The receive callback may be called from any one thread
/// of the module, never before open() and never after close() returned.
/// Ownership: the caller owns the object and deletes it; deleting closes the port.
/// Errors: none is thrown. A line that fails after open() is the module's to mend; frames sent meanwhile are lost.
class ISerialPort
{
public:
    using ReceiveCallback = std::function<void(SComFrame frame)>;

    virtual ~ISerialPort() = default;

    /// Stores who receives the frames; call it before open(). `owner` is the object on whose behalf the callback runs
    /// and outlives the port; the module may use it as a parent for messages and must not delete it.
    virtual void setReceiveCallback(QObject* owner, ReceiveCallback callback) = 0;

    /// Opens the port. `portName` is what the operator set: a device path, a Windows port name, or whatever else the
    /// module takes for a line, such as the address of a device server; `baudRate` is a decimal number as text.
    /// Returns whether the port is open now; a port that is not may be opened by the module later on its own.
    virtual bool open(const QString& portName, const QString& baudRate) = 0;

    /// Closes the port. When it returns, no callback runs and none will.
    virtual void close() = 0;

    /// Queues a copy of one frame for sending; the header bytes are filled by the module.
    virtual void send(const SComFrame* frame) = 0;

    /// An optional interface of this module by its id, or null; see Extension.h.
    virtual void* extension(const char* id)
    {
        Q_UNUSED(id)
        return nullptr;
    }
};

/// The signature of "SerialPortCreate".
using SerialPortCreateFunction = ISerialPort* (*)();
