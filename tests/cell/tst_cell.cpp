// Drives the real program, with its real modules, over a pseudo-terminal.

#include "RunningCell.h"

#include <QtTest>

#include <cmath>

namespace {

double angleBetween(double a, double b)
{
    return std::abs(std::remainder(a - b, 360.0));
}

} // namespace

class CellTest : public QObject
{
    Q_OBJECT

private:
    RunningCell m_cell;

    bool repliesBecome(const QByteArray& commands)
    {
        const bool came = QTest::qWaitFor([&] { return m_cell.plc().replies() == commands; }, RunningCell::deadlineMs);
        if (!came)
            qWarning("replies are %s", m_cell.plc().replies().constData());
        return came;
    }

private slots:
    void initTestCase() { QVERIFY(m_cell.prepare()); }
    void cleanup() { QVERIFY(m_cell.stop()); }

    void triggerIsAnsweredWithAngleAndMachineCoordinates()
    {
        QVERIFY(m_cell.start());
        m_cell.plc().send('C', {m_cell.index(1), m_cell.index(2)});
        m_cell.plc().send('P', {5});
        QVERIFY(repliesBecome("F"));
        m_cell.plc().send('P', {6});
        QVERIFY(repliesBecome("FG"));
        const QJsonObject config = m_cell.stationConfig();
        for (int station = 1; station <= 2; ++station) {
            const SComFrame reply = m_cell.plc().reply(station - 1);
            const QString n = QString::number(station);
            const QJsonObject wheel = m_cell.wheel(station);
            const double scale = config.value("StationScale_" + n).toDouble();
            double x = wheel.value("x").toDouble() * scale + config.value("StationXOffset_" + n).toDouble();
            double y = wheel.value("y").toDouble() * scale + config.value("StationYOffset_" + n).toDouble();
            if (config.value("station_xytrans_" + n).toBool())
                std::swap(x, y);
            QVERIFY2(angleBetween(joined(reply, 2), wheel.value("angle").toDouble()) < 0.1, qPrintable(n));
            QVERIFY2(std::abs(joined(reply, 4) - x) < scale + 0.001, qPrintable(n));
            QVERIFY2(std::abs(joined(reply, 6) - y) < scale + 0.001, qPrintable(n));
        }
    }

    void unknownIndexIsRefusedWith999AndClearedIndexIsNotAnswered()
    {
        QVERIFY(m_cell.start());
        m_cell.plc().send('C', {98, 0});
        m_cell.plc().send('P', {6});
        m_cell.plc().send('P', {5});
        QVERIFY(repliesBecome("FH"));
        QCOMPARE(joined(m_cell.plc().reply(0), 2), 999.0);
        QCOMPARE(int(m_cell.plc().reply(1).data[0]), 6);
        QCOMPARE(int(m_cell.plc().reply(1).data[1]), 50);
        QVERIFY(m_cell.settle());
        QCOMPARE(m_cell.plc().replies(), QByteArray("FH"));
    }

    void secondTriggerWithinFilterTimeIsDropped()
    {
        QVERIFY(m_cell.start({{"trigerFilter", 10000000}}));
        m_cell.plc().send('C', {m_cell.index(1), m_cell.index(2)});
        for (int i = 0; i < 3; ++i)
            m_cell.plc().send('P', {5});
        QVERIFY(repliesBecome("F"));
        m_cell.plc().send('P', {6});
        QVERIFY(repliesBecome("FG"));
        QVERIFY(m_cell.settle());
        QCOMPARE(m_cell.plc().replies(), QByteArray("FG"));
    }

    void offlineEveryTriggerCapturesWithTheStoredModel()
    {
        const QJsonObject wheel = m_cell.wheel(1);
        QVERIFY(m_cell.start({{"onlineMode", false}, {"station_runModel_1", wheel.value("model")}}));
        m_cell.plc().send('C', {98, 98});
        m_cell.plc().send('P', {5});
        QVERIFY(repliesBecome("F"));
        QVERIFY(angleBetween(joined(m_cell.plc().reply(0), 2), wheel.value("angle").toDouble()) < 0.1);
    }

    void garbageAndSpoiledFramesAreNotAnswered()
    {
        QVERIFY(m_cell.start());
        const QByteArray trigger = m_cell.plc().encoded('P', {5});
        QByteArray spoiled = m_cell.plc().encoded('C', {98, 98});
        spoiled[12] = static_cast<char>(spoiled[12] ^ 1);
        m_cell.plc().send('C', {m_cell.index(1), m_cell.index(2)});
        m_cell.plc().sendBytes(QByteArray(1000, '\xaa') + spoiled + QByteArray::fromHex("aa55") + trigger.left(9));
        m_cell.plc().send(0x7e, {5});
        m_cell.plc().sendBytes(trigger.left(10));
        m_cell.plc().sendBytes(trigger.mid(10));
        QVERIFY(repliesBecome("F"));
    }

    void cableUnpluggedAndBack()
    {
        QVERIFY(m_cell.start());
        m_cell.plc().pull();
        QVERIFY(m_cell.plc().plug());
        QVERIFY(m_cell.settle());
        m_cell.plc().send('C', {98, 98});
        m_cell.plc().send('P', {6});
        QVERIFY(repliesBecome("GH"));
    }

    void startWithoutTheLineWaitsForNobody()
    {
        QVERIFY(m_cell.startUnplugged());
        QVERIFY(m_cell.plugAndBeat());
        m_cell.plc().send('C', {m_cell.index(1), m_cell.index(2)});
        m_cell.plc().send('P', {5});
        QVERIFY(repliesBecome("F"));
    }

    void programThatWasAskedToShutDownStillEndsCleanly()
    {
        QVERIFY(m_cell.start());
        m_cell.plc().send(0xF1, {});
        QVERIFY(m_cell.settle()); // the close waits for its confirmation, and the heart goes on beating
    }

    void endsCleanlyWithATaskInHand()
    {
        QVERIFY(m_cell.start());
        m_cell.plc().send('C', {m_cell.index(1), m_cell.index(2)});
        m_cell.plc().send('P', {5});
        m_cell.plc().send('P', {6});
    }
};

QTEST_GUILESS_MAIN(CellTest)
#include "tst_cell.moc"
