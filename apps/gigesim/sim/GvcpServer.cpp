#include "GvcpServer.h"

#include <QtEndian>

namespace {

enum Command : quint16 {
    Discovery = 0x0002,
    PacketResend = 0x0040,
    ReadRegisters = 0x0080,
    WriteRegisters = 0x0082,
    ReadMemory = 0x0084,
    WriteMemory = 0x0086,
};
enum Status : quint16 {
    Good = 0,
    NotImplemented = 0x8001,
    InvalidAddress = 0x8003,
    AccessDenied = 0x8006,
};
constexpr int headerSize = 8;

quint32 word(const QByteArray& bytes, int at)
{
    return bytes.size() < at + 4 ? 0 : qFromBigEndian<quint32>(bytes.constData() + at);
}
quint16 half(const QByteArray& bytes, int at)
{
    return bytes.size() < at + 2 ? 0 : qFromBigEndian<quint16>(bytes.constData() + at);
}
void append(QByteArray* bytes, quint32 value)
{
    char raw[4];
    qToBigEndian(value, raw);
    bytes->append(raw, 4);
}

QByteArray acknowledge(quint16 status, quint16 command, quint16 id, const QByteArray& payload)
{
    QByteArray packet;
    append(&packet, quint32(status) << 16 | quint32(command + 1));
    append(&packet, quint32(payload.size()) << 16 | id);
    return packet + payload;
}

} // namespace

GvcpServer::GvcpServer(GigeRegisters& registers)
    : m_registers(registers)
{
}

void GvcpServer::release()
{
    m_registers.setNumber(GigeRegisters::Control, 0);
    m_registers.setNumber(GigeRegisters::Acquisition, 0);
    m_controller = {};
}

bool GvcpServer::mayWrite(const Sender& sender, Clock::time_point now)
{
    const std::chrono::milliseconds timeout(m_registers.number(GigeRegisters::HeartbeatTimeout));
    if (m_controller.port != 0 && now - m_heard > timeout)
        release();
    return m_controller.port == 0 || m_controller == sender;
}

QByteArray GvcpServer::answer(const QByteArray& packet, const Sender& sender, Clock::time_point now, Effect* effect)
{
    if (packet.size() < headerSize || quint8(packet.at(0)) != 0x42)
        return {};
    const bool writable = mayWrite(sender, now); // first, since it ends a control that timed out
    if (m_controller == sender)
        m_heard = now;
    const quint16 command = half(packet, 2), id = half(packet, 6);
    const QByteArray payload = packet.mid(headerSize, half(packet, 4));
    quint16 status = Good;
    QByteArray reply;
    switch (command) {
    case Discovery:
        reply = m_registers.identity();
        break;
    case PacketResend:
        effect->resendBlock = half(payload, 2);
        effect->resendFirst = word(payload, 4) & 0xFFFFFF;
        effect->resendLast = word(payload, 8) & 0xFFFFFF;
        return {};
    case ReadRegisters:
        reply = readRegisters(payload);
        break;
    case ReadMemory:
        reply = readMemory(payload, &status);
        break;
    case WriteRegisters:
        status = writable ? Good : AccessDenied;
        reply = writeRegisters(payload, sender, now, effect, &status);
        break;
    case WriteMemory:
        status = writable ? Good : AccessDenied;
        reply = writeMemory(payload, sender, now, effect, &status);
        break;
    default:
        status = NotImplemented;
    }
    return acknowledge(status, command, id, reply);
}

QByteArray GvcpServer::readRegisters(const QByteArray& payload) const
{
    QByteArray reply;
    for (int at = 0; at + 4 <= payload.size(); at += 4)
        reply += m_registers.read(word(payload, at), 4).leftJustified(4, '\0');
    return reply;
}

bool GvcpServer::writeNumber(quint32 address, quint32 value, const Sender& sender, Clock::time_point now,
                             Effect* effect)
{
    if (m_controller.port == 0 && address != GigeRegisters::Control)
        return false;
    if (address == GigeRegisters::PacketSize && value & GigeRegisters::firePacket) {
        effect->testPacket = true;
        value &= ~GigeRegisters::firePacket;
    }
    if (address == GigeRegisters::TimestampControl && value & 2) {
        const auto ns = std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now().time_since_epoch()).count();
        m_registers.setNumber(GigeRegisters::TimestampHigh, quint32(quint64(ns) >> 32));
        m_registers.setNumber(GigeRegisters::TimestampLow, quint32(ns));
    }
    if (address == GigeRegisters::TriggerSoftware) {
        effect->triggered = value != 0;
        return true;
    }
    if (address == GigeRegisters::Acquisition) {
        effect->started = value != 0;
        effect->stopped = value == 0;
    }
    if (address == GigeRegisters::Control) {
        m_controller = value == 0 ? Sender() : sender;
        m_heard = now;
        if (value == 0)
            release();
    }
    QByteArray data;
    append(&data, value);
    return m_registers.write(address, data);
}

QByteArray GvcpServer::writeRegisters(const QByteArray& payload, const Sender& sender, Clock::time_point now,
                                      Effect* effect, quint16* status)
{
    quint32 written = 0;
    for (int at = 0; *status == Good && at + 8 <= payload.size(); at += 8) {
        if (writeNumber(word(payload, at), word(payload, at + 4), sender, now, effect))
            ++written;
        else
            *status = AccessDenied;
    }
    QByteArray reply;
    append(&reply, written);
    return reply;
}

QByteArray GvcpServer::readMemory(const QByteArray& payload, quint16* status) const
{
    const QByteArray data = m_registers.read(word(payload, 0), half(payload, 6));
    if (data.isEmpty())
        *status = InvalidAddress;
    return payload.left(4) + data;
}

/// Whole words are registers, which some programs write this way.
QByteArray GvcpServer::writeMemory(const QByteArray& payload, const Sender& sender, Clock::time_point now,
                                   Effect* effect, quint16* status)
{
    const quint32 start = word(payload, 0);
    const QByteArray data = payload.mid(4);
    bool good = true;
    for (int at = 0; *status == Good && good && at < data.size(); at += 4) {
        const quint32 address = start + quint32(at);
        good = data.size() - at >= 4 ? writeNumber(address, word(data, at), sender, now, effect)
                                     : m_controller == sender && m_registers.write(address, data.mid(at));
    }
    if (!good)
        *status = AccessDenied;
    QByteArray reply;
    append(&reply, quint32(data.size()));
    return reply;
}
