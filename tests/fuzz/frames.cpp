#include "Harness.h"
#include "wire/FrameCodec.h"

#include <cstring>

namespace {

constexpr char start[] = "\xAA\x55";
constexpr int crcAt = 5;
constexpr int commandAt = 7;

bool looksLikeFrame(const char* at)
{
    return std::memcmp(at, start, 2) == 0 && at[3] == 0 && at[4] == 17;
}

quint16 crcOf(const char* at)
{
    const auto* bytes = reinterpret_cast<const quint8*>(at);
    return wire::crc16Modbus(bytes + commandAt, wire::frameBytes - commandAt, wire::crc16Modbus(bytes + 2, 3));
}

bool isFrame(const char* at)
{
    return looksLikeFrame(at) && crcOf(at) == quint16(quint8(at[crcAt]) | quint8(at[crcAt + 1]) << 8);
}

/// A second receiver, which sees the whole stream at once, is the judge.
void checkStream(const QByteArray& bytes)
{
    int at = 0;
    int taken = 0;
    const auto check = [&](const SComFrame& frame) {
        while (at + wire::frameBytes <= bytes.size() && !isFrame(bytes.constData() + at))
            ++at;
        fuzz::require(at + wire::frameBytes <= bytes.size(), "what is taken for a frame is one");
        const QByteArray again = wire::encode(frame, frame.header[wire::sequenceByte]);
        fuzz::require(std::memcmp(again.constData(), bytes.constData() + at, wire::frameBytes) == 0,
                      "a frame holds what was on the line");
        at += wire::frameBytes;
        taken += wire::frameBytes;
    };
    wire::FrameDecoder decoder;
    const int cut = bytes.isEmpty() ? 0 : quint8(bytes[0]) % bytes.size();
    decoder.feed(QByteArray::fromRawData(bytes.constData(), cut), check);
    decoder.feed(QByteArray::fromRawData(bytes.constData() + cut, bytes.size() - cut), check);
    for (; at + wire::frameBytes <= bytes.size(); ++at)
        fuzz::require(!isFrame(bytes.constData() + at), "no frame is lost");
    const auto left = bytes.size() - taken - qint64(decoder.badBytes());
    fuzz::require(left >= 0 && left < wire::frameBytes, "every byte is accounted for");
}

} // namespace

/// Each stream as it is, and with each of its bits wrong.
FUZZ_TARGET(frames)
{
    QByteArray stream(bytes.constData(), bytes.size());
    char* const begin = stream.data();
    checkStream(stream);
    for (int bit = 0; bit < 8 * stream.size(); ++bit) {
        begin[bit / 8] = char(begin[bit / 8] ^ 1 << bit % 8);
        checkStream(stream);
        begin[bit / 8] = char(begin[bit / 8] ^ 1 << bit % 8);
    }
    fuzz::alsoRan(8 * stream.size());
}

#ifdef VALVECELL_LIBFUZZER
extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

/// Half of what is damaged gets a right checksum again, which chance would never find.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed)
{
    size = LLVMFuzzerMutate(data, size, maxSize);
    for (size_t at = 0; seed % 2 && at + wire::frameBytes <= size; ++at) {
        if (!looksLikeFrame(reinterpret_cast<char*>(data) + at))
            continue;
        const quint16 crc = crcOf(reinterpret_cast<char*>(data) + at);
        data[at + crcAt] = quint8(crc);
        data[at + crcAt + 1] = quint8(crc >> 8);
    }
    return size;
}
#endif
