#include "wire/FrameCodec.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace wire {

namespace {

/// Places of checksum, command and words in a frame.
constexpr int crcAt = 5;
constexpr int commandAt = 7;
constexpr int wordsAt = 8;
constexpr int payloadBytes = frameBytes - commandAt;

/// What each of the first bytes has to be; -1 for any.
constexpr int pattern[] = {0xAA, 0x55, -1, 0, payloadBytes};
constexpr int patternBytes = sizeof(pattern) / sizeof(*pattern);

quint16 frameCrc(const quint8* frame)
{
    const quint16 head = crc16Modbus(frame + sequenceByte, crcAt - sequenceByte);
    return crc16Modbus(frame + commandAt, payloadBytes, head);
}

SComFrame frameFrom(const std::array<quint8, frameBytes>& bytes)
{
    SComFrame frame;
    std::copy_n(bytes.data(), sizeof(frame.header), frame.header);
    frame.command = bytes[commandAt];
    qFromLittleEndian<qint16>(bytes.data() + wordsAt, std::size(frame.data), frame.data);
    return frame;
}

} // namespace

quint16 crc16Modbus(const quint8* bytes, int count, quint16 crc)
{
    for (int i = 0; i < count; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = static_cast<quint16>(crc & 1 ? (crc >> 1) ^ 0xA001 : crc >> 1);
    }
    return crc;
}

QByteArray encode(const SComFrame& frame, quint8 sequence)
{
    QByteArray bytes(frameBytes, '\0');
    auto* out = reinterpret_cast<quint8*>(bytes.data());
    for (int i = 0; i < patternBytes; ++i)
        out[i] = static_cast<quint8>(i == sequenceByte ? sequence : pattern[i]);
    out[commandAt] = frame.command;
    qToLittleEndian<qint16>(frame.data, std::size(frame.data), out + wordsAt);
    qToLittleEndian<quint16>(frameCrc(out), out + crcAt);
    return bytes;
}

void FrameDecoder::feed(const QByteArray& bytes, const Sink& sink)
{
    for (const char byte : bytes) {
        m_window[m_count++] = static_cast<quint8>(byte);
        resynchronise();
        if (m_count == frameBytes) {
            m_count = 0;
            sink(frameFrom(m_window));
        }
    }
}

bool FrameDecoder::canBeFrame() const
{
    for (int i = 0; i < std::min(m_count, patternBytes); ++i)
        if (pattern[i] >= 0 && m_window[i] != pattern[i])
            return false;
    return true;
}

bool FrameDecoder::checksumHolds() const
{
    return frameCrc(m_window.data()) == qFromLittleEndian<quint16>(m_window.data() + crcAt);
}

void FrameDecoder::resynchronise()
{
    while (m_count > 0) {
        const bool plausible = canBeFrame();
        if (plausible && (m_count < frameBytes || checksumHolds()))
            return;
        m_crcErrors += plausible;
        ++m_badBytes;
        --m_count;
        std::memmove(m_window.data(), m_window.data() + 1, m_count);
    }
}

} // namespace wire
