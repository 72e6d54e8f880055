#pragma once

#include "GigeRegisters.h"

#include <chrono>

/// Answers the commands of GigE Vision's control protocol. One program controls the camera at a time, until it lets go
/// or is silent for longer than the heartbeat timeout; others may read. One thread.
class GvcpServer
{
public:
    using Clock = std::chrono::steady_clock;
    struct Sender
    {
        QHostAddress address;
        quint16 port = 0;
        bool operator==(const Sender& other) const { return address == other.address && port == other.port; }
    };
    /// What a command made the camera do beyond its answer.
    struct Effect
    {
        bool started = false; ///< the acquisition
        bool stopped = false;
        bool triggered = false;
        bool testPacket = false;
        int resendBlock = -1; ///< of the frame with this number, the packets from first to last
        quint32 resendFirst = 0;
        quint32 resendLast = 0;
    };

    explicit GvcpServer(GigeRegisters& registers);

    /// The answer to send; empty when there is none.
    QByteArray answer(const QByteArray& packet, const Sender& sender, Clock::time_point now, Effect* effect);
    /// Nobody controls the camera any more.
    void release();

private:
    bool mayWrite(const Sender& sender, Clock::time_point now);
    bool writeNumber(quint32 address, quint32 value, const Sender& sender, Clock::time_point now, Effect* effect);
    QByteArray readRegisters(const QByteArray& payload) const;
    QByteArray writeRegisters(const QByteArray& payload, const Sender& sender, Clock::time_point now, Effect* effect,
                              quint16* status);
    QByteArray readMemory(const QByteArray& payload, quint16* status) const;
    QByteArray writeMemory(const QByteArray& payload, const Sender& sender, Clock::time_point now, Effect* effect,
                           quint16* status);

    GigeRegisters& m_registers;
    Sender m_controller;
    Clock::time_point m_heard;
};
