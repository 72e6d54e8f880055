#pragma once

#include <QString>

/// How a serial line does, at the moment of asking. The counters count from the module's start.
struct SerialStatus
{
    bool open = false;
    QString device;            ///< what was last opened or tried: the device or address behind the configured name
    quint64 framesIn = 0;      ///< handed to the receive callback
    quint64 framesOut = 0;     ///< written to the line
    quint64 framesDropped = 0; ///< to be sent, and given up because the line was closed or jammed
    quint64 badBytes = 0;      ///< received bytes that belonged to no frame
    quint64 crcErrors = 0;     ///< received frames with a wrong checksum
    quint64 openAttempts = 0;  ///< how often the device was tried, successes included
    QString lastError;         ///< the last thing that went wrong, a sentence with the remedy in the operator's
                               ///< language; empty when nothing did
};

/// Optional interface of a serial-port module: the state of its line. Any thread; returns at once.
class ISerialStatus
{
public:
    static constexpr const char* id = "valvecell.ISerialStatus/1";

    virtual SerialStatus status() const = 0;

protected:
    ~ISerialStatus() = default;
};
