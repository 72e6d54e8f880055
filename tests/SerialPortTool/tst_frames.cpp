#include "support/Table.h"
#include "wire/FrameCodec.h"

#include <QVector>
#include <QtTest>

#include <numeric>
#include <random>

namespace {

/// The wire bytes below were worked out apart from the codec, with a table-driven CRC.
const QByteArray trigger = QByteArray::fromHex("aa55 00 00 11 8e60 50 0500 0000 0000 0000 0000 0000 0000 0000");
const QByteArray longReply = QByteArray::fromHex("aa55 ff 00 11 36a7 46 0000 0000 6700 e401 feff 0cfe ff7f 0080");

SComFrame frameOf(quint8 command, const QVector<qint16>& words)
{
    SComFrame frame;
    frame.command = command;
    std::copy(words.begin(), words.end(), frame.data);
    return frame;
}

/// As it was on the line, as far as the program sees it.
QByteArray bytesOf(const SComFrame& frame)
{
    QByteArray bytes(reinterpret_cast<const char*>(frame.header), 7);
    bytes += static_cast<char>(frame.command);
    for (const qint16 word : frame.data) {
        bytes += static_cast<char>(word & 0xFF);
        bytes += static_cast<char>(word >> 8 & 0xFF);
    }
    return bytes;
}

QVector<SComFrame> decode(wire::FrameDecoder& decoder, const QByteArray& bytes, int pieceBytes)
{
    QVector<SComFrame> frames;
    for (int i = 0; i < bytes.size(); i += pieceBytes)
        decoder.feed(bytes.mid(i, pieceBytes), [&](const SComFrame& frame) { frames.append(frame); });
    return frames;
}

QByteArray numbered(int count)
{
    wire::FrameEncoder encoder;
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += encoder.next(frameOf('P', {qint16(i)}));
    return bytes;
}

QByteArray spoilt(QByteArray bytes, int at)
{
    bytes[at] = static_cast<char>(bytes[at] ^ 0x01);
    return bytes;
}

/// Another reading of the wire format, as plain as it can be: over all bytes at once, with the checksum as its
/// textbook has it, bit by bit in reflected order. Nothing of it is the codec's.
namespace plain {

quint32 mirrored(quint32 value, int bits)
{
    quint32 result = 0;
    for (int bit = 0; bit < bits; ++bit)
        result |= (value >> bit & 1U) << (bits - 1 - bit);
    return result;
}

quint32 checksum(const QByteArray& bytes)
{
    quint32 remainder = 0xFFFF;
    for (const char byte : bytes)
        for (int bit = 0; bit < 8; ++bit) {
            const quint32 next = static_cast<quint8>(byte) >> bit & 1U;
            const quint32 out = remainder >> 15 & 1U;
            remainder = (remainder << 1 & 0xFFFF) ^ (next != out ? 0x8005 : 0);
        }
    return mirrored(remainder, 16);
}

bool isFrame(const QByteArray& bytes)
{
    const quint32 sum = checksum(bytes.mid(2, 3) + bytes.mid(7));
    return bytes.startsWith("\xAA\x55") && bytes[3] == 0 && bytes[4] == 17 &&
           static_cast<quint8>(bytes[5]) == (sum & 0xFF) && static_cast<quint8>(bytes[6]) == sum >> 8;
}

/// Where the frames of a stream end.
QVector<int> ends(const QByteArray& stream)
{
    QVector<int> ends;
    for (int at = 0; at + 24 <= stream.size();)
        if (isFrame(stream.mid(at, 24)))
            ends.append(at += 24);
        else
            ++at;
    return ends;
}

} // namespace plain

/// Frames as a bad line delivers them, by seed.
class BadLine
{
public:
    explicit BadLine(quint32 seed)
        : m_random(seed)
    {
    }
    int below(int limit) { return static_cast<int>(m_random() % static_cast<quint32>(limit)); }

    QByteArray frame()
    {
        SComFrame frame;
        frame.command = static_cast<quint8>(below(256));
        for (qint16& word : frame.data) // often what a frame begins with
            word = static_cast<qint16>(below(4) ? below(65536) : below(2) ? 0x55AA : 0x1100);
        return wire::encode(frame, static_cast<quint8>(below(256)));
    }

    QByteArray damaged()
    {
        QByteArray bytes = frame();
        const int at = below(bytes.size());
        switch (below(9)) {
        case 0: // bits
            for (int flips = 1 + below(3); flips > 0; --flips)
                bytes.data()[below(bytes.size())] ^= static_cast<char>(1 << below(8));
            return bytes;
        case 1:
            return bytes.remove(at, 1 + below(4));
        case 2:
            return bytes.insert(at, bytes.mid(at, 1 + below(3)));
        case 3:
            return bytes.insert(at, noise());
        case 4:
            return bytes.left(at);
        case 5:
            return bytes.mid(at);
        case 6: // one within another
            return bytes.insert(at, frame());
        case 7:
            return noise() + bytes;
        default:
            return bytes;
        }
    }

private:
    QByteArray noise()
    {
        QByteArray bytes(1 + below(30), '\0');
        for (char& byte : bytes)
            byte = below(3) ? static_cast<char>(below(256)) : "\xAA\x55\x00\x11"[below(4)];
        return bytes;
    }

    std::mt19937 m_random;
};

} // namespace

class FramesTest : public QObject
{
    Q_OBJECT

private slots:
    void framesLookOnTheLineAsAgreed()
    {
        QCOMPARE(wire::encode(frameOf('P', {5}), 0).toHex(), trigger.toHex());
        const SComFrame reply = frameOf('F', {0, 0, 103, 484, -2, -500, 32767, -32768});
        QCOMPARE(wire::encode(reply, 255).toHex(), longReply.toHex());

        wire::FrameDecoder decoder;
        const auto frames = decode(decoder, longReply, wire::frameBytes);
        QCOMPARE(frames.size(), 1);
        QCOMPARE(frames[0].command, reply.command);
        QVERIFY(std::equal(std::begin(reply.data), std::end(reply.data), frames[0].data));
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(frames[0].header), 7), longReply.left(7));
    }

    void sequenceNumberWraps()
    {
        wire::FrameDecoder decoder;
        const auto frames = decode(decoder, numbered(600), 100);
        QCOMPARE(frames.size(), 600);
        for (int i = 0; i < frames.size(); ++i) {
            QCOMPARE(int(frames[i].header[wire::sequenceByte]), i % 256);
            QCOMPARE(int(frames[i].data[0]), i);
        }
    }

    void anySplittingGivesTheSameFrames()
    {
        const QByteArray bytes = "\xAA" + numbered(20) + QByteArray::fromHex("aa55aa") + numbered(3);
        for (int piece = 1; piece <= bytes.size(); ++piece) {
            wire::FrameDecoder decoder;
            QCOMPARE(decode(decoder, bytes, piece).size(), 23);
            QCOMPARE(decoder.badBytes(), quint64(4));
            QCOMPARE(decoder.crcErrors(), quint64(0));
        }
    }

    void wholeFrameAfterDirtIsTaken_data()
    {
        Table::columns<QByteArray, int>();
        QTest::newRow("noise") << QByteArray(1000, '\x37') << 0;
        QTest::newRow("start mark again and again") << QByteArray::fromHex("aaaaaa55aa55aa55") << 0;
        QTest::newRow("wrong fourth byte") << QByteArray::fromHex("aa55000111") << 0;
        QTest::newRow("wrong length") << QByteArray::fromHex("aa55000012") << 0;
        QTest::newRow("wrong checksum") << spoilt(trigger, 5) << 1;
        QTest::newRow("byte lost in the middle") << longReply.left(12) + longReply.mid(13) << 1;
        QTest::newRow("byte put in") << longReply.left(12) + "x" + longReply.mid(12) << 1;
        for (int cut = 1; cut < wire::frameBytes; ++cut)
            QTest::addRow("cut after %d", cut) << longReply.left(cut) << (cut < 5 ? 0 : 1);
        QTest::newRow("two cut frames") << longReply.left(20) + trigger.left(20) << 2;
    }
    void wholeFrameAfterDirtIsTaken()
    {
        const auto [dirt, crcErrors] = Table::row<QByteArray, int>();
        for (const int piece : {1, 5, 2000}) {
            wire::FrameDecoder decoder;
            const auto frames = decode(decoder, dirt + trigger, piece);
            QCOMPARE(frames.size(), 1);
            QCOMPARE(frames[0].command, quint8('P'));
            QCOMPARE(decoder.badBytes(), quint64(dirt.size()));
            QCOMPARE(decoder.crcErrors(), quint64(crcErrors));
        }
    }

    void everySingleWrongBitIsNoticed()
    {
        for (int bit = 0; bit < wire::frameBytes * 8; ++bit) {
            QByteArray bytes = longReply;
            bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8));
            wire::FrameDecoder decoder;
            QVERIFY(decode(decoder, bytes, 7).isEmpty());
        }
    }

    /// VALVECELL_FRAMES says how many damaged frames, VALVECELL_SEED which.
    void badLineGivesWhatAnotherReaderFinds()
    {
        const int wanted =
            qEnvironmentVariableIsSet("VALVECELL_FRAMES") ? qEnvironmentVariableIntValue("VALVECELL_FRAMES") : 50000;
        const auto seed = static_cast<quint32>(qEnvironmentVariableIntValue("VALVECELL_SEED"));
        qint64 whole = 0;
        for (int done = 0; done < wanted; done += 50) {
            const quint32 streamSeed = seed + static_cast<quint32>(done);
            BadLine line(streamSeed);
            QByteArray stream;
            for (int i = 0; i < 50; ++i)
                stream += line.damaged();
            const QVector<int> ends = plain::ends(stream);
            wire::FrameDecoder decoder;
            int found = 0;
            bool alike = true;
            for (int at = 0; at < stream.size();) {
                const int piece = 1 + line.below(line.below(4) ? 40 : 400);
                decoder.feed(stream.mid(at, piece), [&](const SComFrame& frame) {
                    const QByteArray bytes = found < ends.size() ? stream.mid(ends[found] - 24, 24) : QByteArray();
                    alike = alike && bytesOf(frame) == bytes;
                    ++found;
                });
                at += piece;
                const auto due = std::upper_bound(ends.begin(), ends.end(), at) - ends.begin();
                alike = alike && found == due; // each as soon as its last byte is there
            }
            const auto bad = static_cast<int>(decoder.badBytes());
            const int rest = stream.size() - 24 * ends.size() - bad; // the beginning of one more
            QVERIFY2(alike && rest >= 0 && rest < 24, qPrintable(QString("stream of seed %1").arg(streamSeed)));
            whole += found;
        }
        QVERIFY2(whole > wanted / 5 && whole < wanted, qPrintable(QString::number(whole)));
        qInfo("%d damaged frames, %lld whole ones found by both readers", wanted, whole);
    }

    void beginningOfAFrameIsForgottenWhenTheLineCloses()
    {
        wire::FrameDecoder decoder;
        QVERIFY(decode(decoder, trigger.left(20), 20).isEmpty());
        decoder.reset();
        QVERIFY(decode(decoder, trigger.mid(20), 4).isEmpty());
        QCOMPARE(decode(decoder, longReply, 24).size(), 1);
    }
};

QTEST_APPLESS_MAIN(FramesTest)
#include "tst_frames.moc"
