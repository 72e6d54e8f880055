#pragma once

#include <QString>

/// What keeps a line from working: in English for the log, and in the screen's language, with what helps. Any thread.
struct LineFault
{
    enum Kind {
        None,
        BadName,      ///< `subject` is the name
        BadBaudRate,  ///< `subject` is what stands for it
        NoDevice,     ///< the name leads nowhere
        NoPermission, ///< the user may not open the device
        Busy,         ///< another program has it
        NotOpened,    ///< for another reason, which the system gave
        Lost,         ///< it was open
        UnknownHost,
        Refused,     ///< the host is there, and nothing listens at the port
        Unreachable, ///< no way through the network
        NoAnswer,    ///< in time
    };

    Kind kind = None;
    QString subject; ///< device, or host and port
    QString reason;  ///< the system's own words, where they help

    /// "/dev/ttyUSB0: no such device"
    QString logText() const;
    /// What is wrong and what helps; empty without a fault.
    QString sentence() const;
};
