#include "GvspFrame.h"

#include "GigeRegisters.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace {

constexpr int overhead = 20 + 8 + 8; ///< IP, UDP and the protocol's own header
constexpr quint32 mono12Packed = 0x010C0006;
constexpr quint32 rgb8 = 0x02180014;

void put(QByteArray* bytes, quint32 value)
{
    char raw[4];
    qToBigEndian(value, raw);
    bytes->append(raw, 4);
}

QByteArray header(quint16 block, quint32 kind, quint32 number)
{
    QByteArray packet;
    put(&packet, block);
    put(&packet, kind << 24 | number);
    return packet;
}

QByteArray encoded(const QByteArray& gray, quint32 format)
{
    if (format != mono12Packed && format != rgb8)
        return gray;
    QByteArray data;
    data.reserve(gray.size() * 3);
    for (int i = 0; i < gray.size(); i += format == rgb8 ? 1 : 2) {
        data += gray.at(i);
        data += format == rgb8 ? gray.at(i) : '\0';
        data += format == rgb8 ? gray.at(i) : gray.at(std::min(i + 1, gray.size() - 1));
    }
    return data;
}

} // namespace

GvspFrame::GvspFrame(const QImage& image, const GigeRegisters& registers, quint16 block, quint64 exposedAtNs)
    : m_block(block)
    , m_exposedAtNs(exposedAtNs)
    , m_format(registers.number(GigeRegisters::PixelFormat))
    , m_region(int(registers.number(GigeRegisters::OffsetX)), int(registers.number(GigeRegisters::OffsetY)),
               int(registers.number(GigeRegisters::Width)), int(registers.number(GigeRegisters::Height)))
    , m_dataPerPacket(std::max(64, int(registers.number(GigeRegisters::PacketSize) & 0xFFFF)) - overhead)
{
    const QImage gray = image.convertToFormat(QImage::Format_Grayscale8);
    m_data.fill('\0', m_region.width() * m_region.height());
    const int width = std::min(m_region.width(), gray.width() - m_region.x());
    for (int y = 0; width > 0 && y < m_region.height() && y + m_region.y() < gray.height(); ++y)
        std::memcpy(m_data.data() + y * m_region.width(), gray.constScanLine(y + m_region.y()) + m_region.x(),
                    size_t(width));
    m_data = encoded(m_data, m_format);
    m_payloadPackets = quint32((m_data.size() + m_dataPerPacket - 1) / m_dataPerPacket);
}

QByteArray GvspFrame::packet(quint32 number) const
{
    if (number == 0)
        return leader();
    if (number > m_payloadPackets)
        return trailer();
    return header(m_block, 3, number) + m_data.mid(int(number - 1) * m_dataPerPacket, m_dataPerPacket);
}

QByteArray GvspFrame::leader() const
{
    QByteArray packet = header(m_block, 1, 0);
    for (const quint32 value :
         {quint32(1), quint32(m_exposedAtNs >> 32), quint32(m_exposedAtNs), m_format, quint32(m_region.width()),
          quint32(m_region.height()), quint32(m_region.x()), quint32(m_region.y()), quint32(0)})
        put(&packet, value);
    return packet;
}

QByteArray GvspFrame::trailer() const
{
    QByteArray packet = header(m_block, 2, m_payloadPackets + 1);
    put(&packet, 1);
    put(&packet, quint32(m_region.height()));
    return packet;
}
