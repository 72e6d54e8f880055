#include "workflow/PlcLink.h"

#include <valvecell/Extension.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialSession.h>

PlcLink::PlcLink(ISerialPort* port, QObject* parent)
    : QObject(parent)
{
    setPort(port);
}

void PlcLink::setPort(ISerialPort* port)
{
    m_port = port;
    m_sessions = extensionOf<ISerialSession>(port);
}

void PlcLink::setIncoming(quint64 session, qint64 ns)
{
    m_incoming = session;
    m_incomingNs = ns;
}

quint64 PlcLink::session() const
{
    return m_sessions ? m_sessions->session() : 1;
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

PlcLink::Sent PlcLink::asSent(double angle, double x, double y)
{
    const double turned = plc::normalised(angle);
    if (plc::fitsWord(turned) && plc::fitsWord(x) && plc::fitsWord(y))
        return {turned, x, y};
    return {plc::nothingFoundAngle, 0, 0, false};
}

PlcLink::Sent PlcLink::sendResult(int station, double angle, double x, double y)
{
    return sendResult(station, angle, x, y, session());
}

PlcLink::Sent PlcLink::sendResult(int station, double angle, double x, double y, quint64 session)
{
    Sent sent = asSent(angle, x, y);
    if (!sent.carried)
        qWarning("station %d: result %g, %g, %g is beyond what a frame carries, answered as not found", station, angle,
                 x, y);
    sent.delivered = session == this->session();
    if (!sent.delivered)
        return sent;
    sendIn(session, plc::result(station, sent.angle, sent.x, sent.y));
    if (sent.angle >= plc::noticeAngle)
        sendIn(session, plc::notFound(station));
    return sent;
}

PlcLink::Sent PlcLink::sentElsewhere(int station)
{
    emit frameSeen(plc::result(station, plc::nothingFoundAngle, 0, 0), false);
    emit frameSeen(plc::notFound(station), false);
    return asSent(plc::nothingFoundAngle, 0, 0);
}

void PlcLink::send(const SComFrame& frame)
{
    if (!m_port)
        return;
    m_port->send(&frame);
    emit frameSeen(frame, false);
}

void PlcLink::sendIn(quint64 session, const SComFrame& frame)
{
    if (!m_sessions)
        return send(frame);
    m_sessions->send(frame, session);
    emit frameSeen(frame, false);
}
