#pragma once

#include "GvcpServer.h"
#include "GvspFrame.h"

#include <QThread>

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

class QUdpSocket;

/// A GigE Vision camera in software, at an address of its own: found, opened and triggered like a real one by any
/// program that speaks the protocol. It also has the faults that real ones show.
///
/// A thread of its own answers. Everything public is called from any thread.
class GigeSim : private QThread
{
public:
    struct Identity
    {
        QHostAddress address{QHostAddress::LocalHost};
        QByteArray serial = "SIM-1";
        QByteArray userName;
        QSize sensor{2448, 2048};
        int megabits = 0; ///< a second that its network carries; 0: as fast as it goes
    };
    struct Faults
    {
        bool silent = false;   ///< no answers and no images: the cable is out
        bool stalled = false;  ///< takes triggers, but sends no images
        int dropEvery = 0;     ///< every so manieth frame lacks a packet that never comes; 0: none
        int largestPacket = 0; ///< bytes that the network carries; larger ones vanish; 0: all
        int unasked = 0;       ///< frames a second that nobody triggered
    };
    struct Counts
    {
        quint64 triggers = 0;
        quint64 frames = 0;
        bool controlled = false; ///< a program has it
    };
    /// The picture of one exposure, which began at that time of the steady clock.
    using Source = std::function<QImage(quint64 exposedAtNs)>;

    GigeSim(Identity identity, Source source);
    ~GigeSim() override;

    /// False and why when the address cannot be had.
    bool start(QString* error);

    void setFaults(const Faults& faults);
    /// As after a power cut: everything written is forgotten, and nobody controls it.
    void powerCycle();
    /// A signal at the hardware input.
    void fireLine();
    Counts counts() const;

private:
    using Clock = std::chrono::steady_clock;
    struct Exposure
    {
        Clock::time_point begun;
        Clock::time_point due;
    };

    void run() override;
    void receive(QUdpSocket& socket);
    void act(const GvcpServer::Effect& effect);
    void expose();
    void sendDue();
    void sendFrame(const Exposure& exposure);
    void send(const QByteArray& packet);
    /// Waits while more was sent than the network carries, and answers meanwhile.
    void keepPace(Clock::time_point begun, qint64 bytes);
    void takeOrders();
    int msToNext() const;
    void wake() const;
    Faults faults() const;

    const Identity m_identity;
    const Source m_source;
    std::atomic<bool> m_ending{false};

    // The thread's own.
    std::unique_ptr<GigeRegisters> m_registers;
    std::unique_ptr<GvcpServer> m_server;
    QUdpSocket* m_control = nullptr;
    QUdpSocket* m_stream = nullptr;
    std::deque<Exposure> m_exposures;
    Clock::time_point m_nextUnasked;
    std::deque<std::pair<GvspFrame, bool>> m_sent; ///< the last frames, for who missed a packet; whether it may have it
    quint16 m_block = 0;

    mutable std::mutex m_mutex; // protects everything below
    Faults m_faults;
    Counts m_counts;
    bool m_cycleDue = false;
    int m_linesDue = 0;
};
