#pragma once

#include "workflow/PlcFrames.h"

#include <QObject>

#include <optional>

class ISerialPort;

/// The program's end of the PLC line: takes received frames apart by their command, and sends results and heartbeats.
/// GUI thread. Without a serial module nothing is sent.
class PlcLink : public QObject
{
    Q_OBJECT

public:
    /// `port` may be null, and outlives its use: call setPort(nullptr) before it goes.
    explicit PlcLink(ISerialPort* port = nullptr, QObject* parent = nullptr);

    void setPort(ISerialPort* port) { m_port = port; }

    /// Tells what a received frame asks for by one of the signals; unknown commands and stations are ignored.
    void receive(const SComFrame& frame);

    /// While the cell starts: received frames ask for nothing, so that no trigger is answered by half of a cell.
    void hold() { m_held = true; }
    /// Ends that. Of what came meanwhile, the last model indices and a shutdown are taken up; triggers are too old.
    void release();
    bool isHeld() const { return m_held; }

    void sendHeartbeat();

    /// Sends the result of a station (1 or 2; any other is sent as station 2's command), and the not-found notice
    /// after it when the angle is 360 or more. `angle` in degrees, `x` and `y` in machine units.
    /// A number that a frame cannot carry is never sent cut: the part is answered as not found, with a warning.
    void sendResult(int station, double angle, double x, double y);

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
    void act(const SComFrame& frame);

    ISerialPort* m_port;
    bool m_held = false;
    std::optional<SComFrame> m_heldIndices;
    std::optional<SComFrame> m_heldShutdown;
};
