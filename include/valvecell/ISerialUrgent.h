#pragma once

#include "SComFrame.h"

/// Optional interface of a serial-port module: sends from any thread, so that a part is answered in time even while
/// another module holds up the GUI thread.
class ISerialUrgent
{
public:
    static constexpr const char* id = "valvecell.ISerialUrgent/1";

    /// As ISerialSession::send(). Any thread, also while another operation of the module runs; returns at once.
    virtual void sendUrgent(const SComFrame& frame, quint64 session) = 0;

protected:
    ~ISerialUrgent() = default;
};
