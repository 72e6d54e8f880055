#include "FakePort.h"
#include "workflow/PlcLink.h"

#include <QSignalSpy>
#include <QtTest>

#include <limits>

class PlcLinkTest : public QObject
{
    Q_OBJECT

private slots:
    void resultIsCutNeverRounded_data()
    {
        QTest::addColumn<int>("station");
        QTest::addColumn<double>("angle");
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<QByteArray>("commands");
        QTest::addColumn<QString>("words");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("plain") << 1 << 123.4567 << 60.25 << 120.125 << QByteArray("F") << "0 0 123 456 60 250 120 125";
        QTest::newRow("negative x") << 2 << 0.0 << -2.5 << -0.75 << QByteArray("G") << "0 0 0 0 -2 -500 0 -750";
        QTest::newRow("negative angle") << 1 << -30.25 << 12.3456 << 0.0 << QByteArray("F") << "0 0 329 750 12 345 0 0";
        QTest::newRow("almost a turn") << 1 << 359.9996 << 0.0 << 0.0 << QByteArray("F") << "0 0 359 999 0 0 0 0";
        QTest::newRow("below -360") << 1 << -361.0 << 0.0 << 0.0 << QByteArray("F") << "0 0 -1 0 0 0 0 0";
        QTest::newRow("a turn") << 2 << 360.0 << 1.0 << 2.0 << QByteArray("GH") << "0 0 360 0 1 0 2 0";
        QTest::newRow("refused") << 2 << 999.0 << 0.0 << 0.0 << QByteArray("GH") << "0 0 999 0 0 0 0 0";
        QTest::newRow("largest") << 1 << 1.0 << 32767.9 << -32767.5 << QByteArray("F")
                                 << "0 0 1 0 32767 900 -32767 -500";
        QTest::newRow("no station") << 0 << 361.0 << 0.0 << 0.0 << QByteArray("GH") << "0 0 361 0 0 0 0 0";
        // A position that a frame would carry wrapped around is no position.
        QTest::newRow("x too large") << 1 << 90.0 << 32768.0 << 5.0 << QByteArray("FH") << "0 0 361 0 0 0 0 0";
        QTest::newRow("y is no number") << 2 << 90.0 << 1.0 << nan << QByteArray("GH") << "0 0 361 0 0 0 0 0";
    }
    void resultIsCutNeverRounded()
    {
        QFETCH(int, station);
        QFETCH(double, angle);
        QFETCH(double, x);
        QFETCH(double, y);
        FakePort port;
        PlcLink link(&port);
        link.sendResult(station, angle, x, y);
        QTEST(port.commands(), "commands");
        QTEST(port.words(0), "words");
        if (port.sent.size() > 1)
            QCOMPARE(port.words(1), QStringLiteral("%1 50 0 0 0 0 0 0").arg(station + 5));
    }

    void heartbeatIsTheSameEveryTime()
    {
        FakePort port;
        PlcLink link(&port);
        link.sendHeartbeat();
        link.sendHeartbeat();
        QCOMPARE(port.commands(), QByteArray("CC"));
        QCOMPARE(port.words(1), QStringLiteral("0 0 0 0 0 0 200 80"));
    }

    void withoutASerialModuleNothingHappens()
    {
        PlcLink link;
        const QSignalSpy seen(&link, &PlcLink::frameSeen);
        link.sendHeartbeat();
        link.sendResult(1, 1, 2, 3);
        QCOMPARE(seen.size(), 0);
    }

    void receivedFrameAsksForOneThing_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<int>("word0");
        QTest::addColumn<QString>("asked");
        QTest::newRow("models") << int('C') << -7 << "models -7 9";
        QTest::newRow("trigger 1") << int('P') << 5 << "trigger 1";
        QTest::newRow("trigger 2") << int('P') << 6 << "trigger 2";
        QTest::newRow("trigger of no station") << int('P') << 7 << "";
        QTest::newRow("shutdown") << 0xF1 << 0 << "shutdown";
        QTest::newRow("a reply's letter") << int('F') << 5 << "";
        QTest::newRow("unknown") << 0 << 5 << "";
    }
    void receivedFrameAsksForOneThing()
    {
        QFETCH(int, command);
        QFETCH(int, word0);
        PlcLink link;
        QStringList asked;
        connect(&link, &PlcLink::modelIndexReceived, this,
                [&](int one, int two) { asked << QStringLiteral("models %1 %2").arg(one).arg(two); });
        connect(&link, &PlcLink::triggerReceived, this, [&](int n) { asked << QStringLiteral("trigger %1").arg(n); });
        connect(&link, &PlcLink::shutdownReceived, this, [&] { asked << QStringLiteral("shutdown"); });
        SComFrame frame;
        frame.command = static_cast<quint8>(command);
        frame.data[0] = static_cast<qint16>(word0);
        frame.data[1] = 9;
        link.receive(frame);
        QTEST(asked.join(','), "asked");
    }
};

QTEST_GUILESS_MAIN(PlcLinkTest)
#include "tst_plclink.moc"
