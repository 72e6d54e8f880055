#pragma once

#include "workflow/PlcFrames.h"

#include <QObject>

#include <optional>

class ISerialPort;
class ISerialSession;

/// The program's end of the PLC line: takes received frames apart by their command, and sends results and heartbeats.
/// GUI thread. Without a serial module nothing is sent.
class PlcLink : public QObject
{
    Q_OBJECT

public:
    /// `port` may be null, and outlives its use.
    explicit PlcLink(ISerialPort* port = nullptr, QObject* parent = nullptr);

    void setPort(ISerialPort* port);

    /// Emits what a received frame asks for as one of the signals; unknown commands and stations are ignored.
    void receive(const SComFrame& frame);

    /// While the cell starts: received frames ask for nothing, so that no trigger is answered by half of a cell.
    void hold() { m_held = true; }
    /// Ends that. Of what came meanwhile, the last model indices and a shutdown are taken up; triggers are too old.
    void release();
    bool isHeld() const { return m_held; }

    void sendHeartbeat();

    /// What the PLC got of a result; of each number what plc::cutText() shows.
    struct Sent
    {
        double angle = 0; ///< 361 when a frame cannot carry the result
        double x = 0;
        double y = 0;
        bool carried = true;   ///< the frame could carry it
        bool delivered = true; ///< false: the line is another than the one that the answer belongs to; nothing was sent
    };

    /// The session of the line, see ISerialSession; 0 while it is closed, 1 for a module that does not count them.
    quint64 session() const;
    /// In which session the frame came that receive() gets next, and when; by default in the present one, and now: 0.
    void setIncoming(quint64 session, qint64 ns);
    quint64 incomingSession() const { return m_incoming.value_or(session()); }
    qint64 incomingNs() const { return m_incomingNs; }

    /// Sends the result of a station (1 or 2; any other is sent as station 2's command), and the not-found notice
    /// after it when the angle is 360 or more. `angle` in degrees, `x` and `y` in machine units.
    /// A number that a frame cannot carry is never sent wrapped: the part is answered as not found, with a warning.
    Sent sendResult(int station, double angle, double x, double y);
    /// The same for the answer to a trigger of `session`, on that line or not at all.
    Sent sendResult(int station, double angle, double x, double y, quint64 session);
    /// The station was answered as not found by another way: those who watch the line see it here.
    Sent sentElsewhere(int station);
    /// What sendResult() would send; nothing is.
    static Sent asSent(double angle, double x, double y);

signals:
    /// A model-index frame, with the indices of both stations.
    void modelIndexReceived(int index1, int index2);
    /// A trigger frame of station 1 or 2.
    void triggerReceived(int station);
    void shutdownReceived();
    /// Every frame that was received or sent, for those who watch the line.
    void frameSeen(const SComFrame& frame, bool received);

private:
    void send(const SComFrame& frame);
    void sendIn(quint64 session, const SComFrame& frame);
    void act(const SComFrame& frame);

    ISerialPort* m_port;
    ISerialSession* m_sessions = nullptr; ///< the same port's; null when it counts none
    std::optional<quint64> m_incoming;
    qint64 m_incomingNs = 0;
    bool m_held = false;
    std::optional<SComFrame> m_heldIndices;
    std::optional<SComFrame> m_heldShutdown;
};
