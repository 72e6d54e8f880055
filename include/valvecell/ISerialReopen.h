#pragma once

class QString;

/// Optional interface of a serial-port module: takes another line in place of the present one, without waiting for
/// either, so that a setting can change while production runs. GUI thread; returns at once.
class ISerialReopen
{
public:
    static constexpr const char* id = "valvecell.ISerialReopen/1";

    /// As ISerialPort::close() and open() together, with the callback that was set; frames that were handed over and
    /// not yet written are given up. A line that does not open is tried again, as after open(). Returns false, and the
    /// present line stays, for a name or a baud rate that no line can have.
    virtual bool reopen(const QString& portName, const QString& baudRate) = 0;

protected:
    ~ISerialReopen() = default;
};
