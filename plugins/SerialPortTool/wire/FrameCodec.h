#pragma once

#include <valvecell/SComFrame.h>

#include <QByteArray>

#include <array>
#include <functional>

/// The wire format of the serial line, alike in both directions: 24 bytes a frame.
///
///     0, 1   0xAA 0x55
///     2      the sender's sequence number, wraps at 255
///     3      0
///     4      17, the number of bytes from byte 7 on
///     5, 6   CRC-16/MODBUS, low byte first, over bytes 2, 3, 4 and 7 to 23
///     7      command
///     8-23   eight signed 16-bit words, low byte first
///
/// Plain values without threads; one object serves one direction of one line.
namespace wire {

constexpr int frameBytes = 24;
constexpr int sequenceByte = 2;

/// CRC-16/MODBUS: polynomial 0xA001 reflected, start 0xFFFF. `crc` carries on from an earlier piece.
quint16 crc16Modbus(const quint8* bytes, int count, quint16 crc = 0xFFFF);

/// The frame as it goes over the line; what its header holds is not looked at.
QByteArray encode(const SComFrame& frame, quint8 sequence);

/// Numbers the frames of one sender.
class FrameEncoder
{
public:
    QByteArray next(const SComFrame& frame) { return encode(frame, m_sequence++); }

private:
    quint8 m_sequence = 0;
};

/// Finds the frames in a stream of bytes that comes in any pieces. What is no frame loses its first byte and is looked
/// at again, so that after garbage, a cut frame or a spoiled one the next whole frame is taken at its last byte.
class FrameDecoder
{
public:
    /// Receives a frame whose checksum is right; the header holds the bytes as they were on the line.
    using Sink = std::function<void(const SComFrame& frame)>;

    void feed(const QByteArray& bytes, const Sink& sink);

    /// Forgets the beginning of a frame, as when the line was closed. The counters stay.
    void reset() { m_count = 0; }

    quint64 badBytes() const { return m_badBytes; }   ///< bytes that belonged to no frame
    quint64 crcErrors() const { return m_crcErrors; } ///< what looked like a frame and had a wrong checksum

private:
    bool canBeFrame() const;
    bool checksumHolds() const;
    void resynchronise();

    std::array<quint8, frameBytes> m_window{};
    int m_count = 0;
    quint64 m_badBytes = 0;
    quint64 m_crcErrors = 0;
};

} // namespace wire
