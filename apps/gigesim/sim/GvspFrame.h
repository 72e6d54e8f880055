#pragma once

#include <QImage>

class GigeRegisters;

/// One frame as the packets of GigE Vision's stream protocol.
class GvspFrame
{
public:
    /// Cuts out the camera's region, in its pixel format; what the image does not reach is black.
    GvspFrame(const QImage& image, const GigeRegisters& registers, quint16 block, quint64 exposedAtNs);

    quint16 block() const { return m_block; }
    /// From the leader, 0, to the trailer.
    quint32 packetCount() const { return m_payloadPackets + 2; }
    QByteArray packet(quint32 number) const;

private:
    QByteArray leader() const;
    QByteArray trailer() const;

    quint16 m_block;
    quint64 m_exposedAtNs;
    quint32 m_format;
    QRect m_region;
    QByteArray m_data;
    int m_dataPerPacket;
    quint32 m_payloadPackets;
};
