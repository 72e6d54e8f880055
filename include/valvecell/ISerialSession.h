#pragma once

#include "SComFrame.h"

/// Optional interface of a serial-port module: tells the connections of its line apart, so that the answer to a part
/// never goes out on a line that came after the part's trigger. A module without it counts as one that is connected
/// once.
class ISerialSession
{
public:
    static constexpr const char* id = "valvecell.ISerialSession/1";

    /// Another number each time that the line is opened; 0 while it is closed. Within the receive callback it is the
    /// session that the frame came in. Any thread; returns at once.
    virtual quint64 session() const = 0;

    /// As ISerialPort::send(), for a frame that belongs to `session`: it is given up when the line is in another
    /// session, or closed, at the moment at which it would be written. GUI thread; returns at once.
    virtual void send(const SComFrame& frame, quint64 session) = 0;

protected:
    ~ISerialSession() = default;
};
