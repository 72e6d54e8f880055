#include "workflow/PlcLink.h"

#include <valvecell/ISerialPort.h>

PlcLink::PlcLink(ISerialPort* port, QObject* parent)
    : QObject(parent)
    , m_port(port)
{
}

void PlcLink::receive(const SComFrame& frame)
{
    emit frameSeen(frame, true);
    if (!m_held)
        act(frame);
    else if (frame.command == plc::ModelIndex)
        m_heldIndices = frame;
    else if (frame.command == plc::Shutdown)
        m_heldShutdown = frame;
}

void PlcLink::release()
{
    m_held = false;
    for (std::optional<SComFrame>* frame : {&m_heldIndices, &m_heldShutdown}) {
        if (*frame)
            act(**frame);
        frame->reset();
    }
}

void PlcLink::act(const SComFrame& frame)
{
    switch (frame.command) {
    case plc::ModelIndex:
        emit modelIndexReceived(frame.data[0], frame.data[1]);
        break;
    case plc::Trigger:
        if (const int station = plc::triggeredStation(frame); station > 0)
            emit triggerReceived(station);
        break;
    case plc::Shutdown:
        emit shutdownReceived();
        break;
    default:
        break;
    }
}

void PlcLink::sendHeartbeat()
{
    send(plc::heartbeat());
}

void PlcLink::sendResult(int station, double angle, double x, double y)
{
    double sent = plc::normalised(angle);
    if (!plc::fitsWord(sent) || !plc::fitsWord(x) || !plc::fitsWord(y)) {
        qWarning("station %d: result %g, %g, %g is beyond what a frame carries, answered as not found", station, angle,
                 x, y);
        sent = plc::nothingFoundAngle;
        x = y = 0;
    }
    send(plc::result(station, sent, x, y));
    if (sent >= 360.0)
        send(plc::notFound(station));
}

void PlcLink::send(const SComFrame& frame)
{
    if (!m_port)
        return;
    m_port->send(&frame);
    emit frameSeen(frame, false);
}
