#include "support/Table.h"
#include "wire/FrameCodec.h"

#include <QVector>
#include <QtTest>

#include <numeric>

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
