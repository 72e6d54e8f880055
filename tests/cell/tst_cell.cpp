// Drives the real program, with its real modules, over a pseudo-terminal.

#include "PlcEnd.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

namespace {

constexpr int kDeadline = 20000;
const QString kBin = QStringLiteral(VALVECELL_BIN_DIR "/");

QJsonObject readObject(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

/// An angle or coordinate as two words carry it.
double joined(const SComFrame& frame, int word)
{
    return frame.data[word] + frame.data[word + 1] / 1000.0;
}

double angleBetween(double a, double b)
{
    return std::abs(std::remainder(a - b, 360.0));
}

} // namespace

class CellTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_home;
    std::unique_ptr<PlcEnd> m_plc;
    std::unique_ptr<QProcess> m_program;

    /// The wheel that a station's camera delivers first.
    QJsonObject firstWheel(int station) const
    {
        const QJsonObject truth = readObject(QStringLiteral("%1/images/%2/truth.json").arg(m_home).arg(station));
        return truth.value("images").toArray().first().toObject();
    }
    int firstIndex(int station) const { return firstWheel(station).value("index").toInt(); }

    /// Starts the program with some keys of its set-up changed, and waits for its heartbeat.
    void start(const QJsonObject& changes = {})
    {
        QJsonObject config = readObject(m_dir.path() + "/globalConfig.json");
        for (auto it = changes.begin(); it != changes.end(); ++it)
            config.insert(it.key(), it.value());
        QFile file(m_home + "/user/globalConfig.json");
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(config).toJson());
        file.close();
        m_plc = std::make_unique<PlcEnd>(m_home + "/plc");
        QVERIFY(m_plc->plug());
        m_program = std::make_unique<QProcess>();
        m_program->setProcessChannelMode(QProcess::ForwardedChannels);
        m_program->start(kBin + "valvecell", {"--home", m_home});
        QTRY_VERIFY_WITH_TIMEOUT(m_plc->heartbeats() > 0, kDeadline);
    }

private slots:
    void initTestCase()
    {
        m_home = m_dir.path() + QStringLiteral("/家");
        QVERIFY(QDir().mkpath(m_home));
        QCOMPARE(QProcess::execute(kBin + "wheelgen", {"--demo", m_home}), 0);
        QVERIFY(QFile::copy(m_home + "/user/globalConfig.json", m_dir.path() + "/globalConfig.json"));
    }

    void cleanup()
    {
        if (m_program && m_program->state() != QProcess::NotRunning) {
            m_program->terminate();
            QVERIFY(m_program->waitForFinished(kDeadline));
            QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
            QCOMPARE(m_program->exitCode(), 0);
        }
        m_plc.reset();
    }

    void triggerIsAnsweredWithAngleAndMachineCoordinates()
    {
        start();
        m_plc->send('C', {firstIndex(1), firstIndex(2)});
        m_plc->send('P', {5});
        m_plc->send('P', {6});
        QTRY_COMPARE_WITH_TIMEOUT(m_plc->replies().size(), 2, kDeadline);
        const QJsonObject config = readObject(m_dir.path() + "/globalConfig.json");
        for (int i = 0; i < 2; ++i) {
            const SComFrame reply = m_plc->reply(i);
            const int station = reply.command == 'F' ? 1 : 2;
            const QString n = QString::number(station);
            const QJsonObject wheel = firstWheel(station);
            const double scale = config.value("StationScale_" + n).toDouble();
            double x = wheel.value("x").toDouble() * scale + config.value("StationXOffset_" + n).toDouble();
            double y = wheel.value("y").toDouble() * scale + config.value("StationYOffset_" + n).toDouble();
            if (config.value("station_xytrans_" + n).toBool())
                std::swap(x, y);
            QVERIFY2(angleBetween(joined(reply, 2), wheel.value("angle").toDouble()) < 0.1, qPrintable(n));
            QVERIFY2(std::abs(joined(reply, 4) - x) < scale + 0.001, qPrintable(n));
            QVERIFY2(std::abs(joined(reply, 6) - y) < scale + 0.001, qPrintable(n));
        }
        QCOMPARE(m_plc->replies().count('F'), 1);
    }

    void unknownIndexIsRefusedWith999AndClearedIndexIsNotAnswered()
    {
        start();
        m_plc->send('C', {98, 0});
        m_plc->send('P', {6});
        m_plc->send('P', {5});
        QTRY_COMPARE_WITH_TIMEOUT(m_plc->replies(), QByteArray("FH"), kDeadline);
        QCOMPARE(joined(m_plc->reply(0), 2), 999.0);
        QCOMPARE(int(m_plc->reply(1).data[0]), 6);
        QCOMPARE(int(m_plc->reply(1).data[1]), 50);
        const int beats = m_plc->heartbeats();
        QTRY_VERIFY_WITH_TIMEOUT(m_plc->heartbeats() > beats + 1, kDeadline);
        QCOMPARE(m_plc->replies(), QByteArray("FH"));
    }

    void secondTriggerWithinFilterTimeIsDropped()
    {
        start({{"trigerFilter", 100000}});
        m_plc->send('C', {firstIndex(1), firstIndex(2)});
        for (const int station : {5, 5, 5, 6})
            m_plc->send('P', {station});
        QTRY_VERIFY_WITH_TIMEOUT(m_plc->replies().contains('G') && m_plc->replies().contains('F'), kDeadline);
        const int beats = m_plc->heartbeats();
        QTRY_VERIFY_WITH_TIMEOUT(m_plc->heartbeats() > beats + 1, kDeadline);
        QCOMPARE(m_plc->replies().count('F'), 1);
    }

    void offlineEveryTriggerCapturesWithTheStoredModel()
    {
        const QString model = firstWheel(1).value("model").toString();
        start({{"onlineMode", false}, {"station_runModel_1", model}});
        m_plc->send('C', {98, 98});
        m_plc->send('P', {5});
        QTRY_COMPARE_WITH_TIMEOUT(m_plc->replies(), QByteArray("F"), kDeadline);
        QVERIFY(angleBetween(joined(m_plc->reply(0), 2), firstWheel(1).value("angle").toDouble()) < 0.1);
    }

    void garbageAndSpoiledFramesAreNotAnswered()
    {
        start();
        const QByteArray trigger = m_plc->encoded('P', {5});
        QByteArray spoiled = m_plc->encoded('C', {98, 98});
        spoiled[12] = static_cast<char>(spoiled[12] ^ 1);
        m_plc->send('C', {firstIndex(1), firstIndex(2)});
        m_plc->sendBytes(QByteArray(1000, '\xaa') + spoiled + QByteArray::fromHex("aa55") + trigger.left(9));
        m_plc->send(0x7e, {5});
        m_plc->sendBytes(trigger.left(10));
        m_plc->sendBytes(trigger.mid(10));
        QTRY_COMPARE_WITH_TIMEOUT(m_plc->replies(), QByteArray("F"), kDeadline);
    }

    void cableUnpluggedAndBack()
    {
        start();
        m_plc->pull();
        QVERIFY(m_plc->plug());
        const int beats = m_plc->heartbeats();
        QTRY_VERIFY_WITH_TIMEOUT(m_plc->heartbeats() > beats, kDeadline);
        m_plc->send('C', {98, 98});
        m_plc->send('P', {6});
        QTRY_COMPARE_WITH_TIMEOUT(m_plc->replies(), QByteArray("GH"), kDeadline);
    }

    void programThatIsAskedToShutDownStillEndsCleanly()
    {
        start();
        m_plc->send(0xF1, {});
        const int beats = m_plc->heartbeats();
        QTRY_VERIFY_WITH_TIMEOUT(m_plc->heartbeats() > beats + 1, kDeadline); // the close waits for its confirmation
    }

    void endsCleanlyWithATaskInHand()
    {
        start();
        m_plc->send('C', {firstIndex(1), firstIndex(2)});
        m_plc->send('P', {5});
        m_plc->send('P', {6});
    }
};

QTEST_GUILESS_MAIN(CellTest)
#include "tst_cell.moc"
