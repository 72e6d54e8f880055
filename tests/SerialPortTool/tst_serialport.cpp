#include "PortList.h"
#include "support/ServerPlcEnd.h"
#include "support/Table.h"

#include <valvecell/Extension.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialPorts.h>
#include <valvecell/ISerialReopen.h>
#include <valvecell/ISerialSession.h>
#include <valvecell/ISerialStatus.h>
#include <valvecell/ISerialUrgent.h>

#include <QElapsedTimer>
#include <QLibrary>
#include <QMutex>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <memory>
#include <thread>

namespace {

/// What the program's callback got, on the module's thread.
class Inbox
{
public:
    void add(const SComFrame& frame)
    {
        const QMutexLocker lock(&m_mutex);
        m_numbers.append(frame.data[0]);
    }
    QVector<qint16> numbers() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_numbers;
    }

private:
    mutable QMutex m_mutex;
    QVector<qint16> m_numbers;
};

SComFrame reply(qint16 number)
{
    SComFrame frame;
    frame.command = 'F';
    frame.data[2] = number;
    return frame;
}

/// The baud rate that a terminal is set to, once its PLC has read something.
QByteArray speedOf(const QString& device)
{
    QProcess stty;
    stty.start("stty", {"-F", device, "speed"});
    return stty.waitForFinished() ? stty.readAllStandardOutput().trimmed() : QByteArray();
}

double cpuSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace

class SerialPortTest : public QObject
{
    Q_OBJECT

    QLibrary m_library{QStringLiteral(VALVECELL_BIN_DIR "/SerialPortTool")};
    QTemporaryDir m_dir;
    std::unique_ptr<PlcEnd> m_plc;
    std::unique_ptr<Inbox> m_inbox;
    std::unique_ptr<ISerialPort> m_port;

    SerialStatus status() { return extensionOf<ISerialStatus>(m_port.get())->status(); }
    bool openPort(ISerialPort& port, PlcEnd& plc)
    {
        port.open(plc.name(), QStringLiteral("115200")); // a slow machine may need longer than it waits
        return QTest::qWaitFor([&] { return extensionOf<ISerialStatus>(&port)->status().open && plc.isUp(); },
                               patienceMs);
    }
    bool openPort() { return openPort(*m_port, *m_plc); }
    std::unique_ptr<ISerialPort> makePort()
    {
        const auto create = reinterpret_cast<SerialPortCreateFunction>(m_library.resolve("SerialPortCreate"));
        return std::unique_ptr<ISerialPort>(create ? create() : nullptr);
    }
    /// For tests of what holds for every line; init() makes the PLC's end accordingly.
    static void bothLines() { Table::of<int>({{"cable", 0}, {"device server", 0}}); }
    bool sendAndArrives(qint16 number)
    {
        const SComFrame frame = reply(number);
        m_port->send(&frame);
        return QTest::qWaitFor([&] { return !m_plc->received.isEmpty() && m_plc->received.last().data[2] == number; });
    }

private slots:
    void init()
    {
        m_port = makePort();
        QVERIFY2(m_port, qPrintable(m_library.errorString()));
        if (QTest::currentDataTag() == QByteArray("device server"))
            m_plc = std::make_unique<ServerPlcEnd>();
        else
            m_plc = std::make_unique<PlcEnd>(m_dir.filePath("串口"));
        QVERIFY(m_plc->plug());
        m_inbox = std::make_unique<Inbox>();
        m_port->setReceiveCallback(this, [inbox = m_inbox.get()](const SComFrame& frame) { inbox->add(frame); });
    }
    void cleanup()
    {
        m_port.reset();
        m_plc.reset();
    }

    void framesPassBothWaysByteByByteAndThroughGarbage_data() { bothLines(); }
    void framesPassBothWaysByteByByteAndThroughGarbage()
    {
        QVERIFY(openPort());
        QCOMPARE(status().device, m_plc->device());
        QVERIFY(sendAndArrives(1));
        SComFrame frame = reply(7);
        const QByteArray bytes = wire::encode(frame, 9);
        for (const char byte : bytes)
            m_plc->sendBytes(QByteArray(1, byte));
        m_plc->sendBytes("garbage\xAA\x55" + bytes.left(11));
        m_plc->send('P', {42});
        m_plc->sendBytes(bytes.left(23) + '\x7f');
        m_plc->send('P', {43});
        QTRY_COMPARE(m_inbox->numbers(), (QVector<qint16>{0, 42, 43}));
        QTRY_COMPARE(status().badBytes, quint64(9 + 11 + 24));
        QCOMPARE(status().crcErrors, quint64(2));
        QCOMPARE(status().framesIn, quint64(3));
        QCOMPARE(status().framesOut, quint64(1));
    }

    void triggersFromBeforeTheProgramWasThereAreForgotten()
    {
        for (qint16 i = 0; i < 20; ++i)
            m_plc->send('P', {i});
        QVERIFY(openPort());
        m_plc->send('P', {100});
        QTRY_VERIFY(m_inbox->numbers().contains(100));
        QCOMPARE(m_inbox->numbers().size(), 1);
    }

    void cableUnpluggedAndBack_data() { bothLines(); }
    void cableUnpluggedAndBack()
    {
        QVERIFY(openPort());
        QVERIFY(sendAndArrives(1));
        const QByteArray cut = m_plc->encoded('P', {6});
        m_plc->sendBytes(cut.left(11));
        const double cpu = cpuSeconds();
        const quint64 attempts = status().openAttempts;
        QElapsedTimer pulled;
        pulled.start();
        m_plc->pull();
        QVERIFY2(!QFileInfo(m_plc->link).isSymLink(), "it would lead to whatever gets the device's number next");
        QTRY_VERIFY(!status().open);
        for (qint16 i = 100; i < 110; ++i) {
            const SComFrame lost = reply(i);
            m_port->send(&lost);
        }
        // 50, 100, 200 and 400 ms: the fourth attempt comes after at least 750 ms.
        QTRY_VERIFY(status().openAttempts >= attempts + 4);
        QVERIFY2(pulled.elapsed() >= 600, "the pauses do not grow");
        QVERIFY2(cpuSeconds() - cpu < 0.5 * pulled.elapsed() / 1000, "the dead line keeps the processor busy");
        QVERIFY2(status().lastError.contains(m_plc->name().section("tcp:", -1)), qPrintable(status().lastError));

        m_plc->received.clear();
        QVERIFY(m_plc->plug());
        QTRY_VERIFY(status().open);
        QCOMPARE(status().device, m_plc->device());
        QVERIFY(sendAndArrives(2));
        QCOMPARE(m_plc->received.size(), 1);
        QCOMPARE(status().framesDropped, quint64(10));
        m_plc->sendBytes(cut.mid(11)); // its beginning came on another line
        m_plc->send('P', {5});
        QTRY_COMPARE(m_inbox->numbers(), (QVector<qint16>{5}));
    }

    void frameOfALineThatIsGoneIsGivenUp_data() { bothLines(); }
    void frameOfALineThatIsGoneIsGivenUp()
    {
        auto* sessions = extensionOf<ISerialSession>(m_port.get());
        QCOMPARE(sessions->session(), quint64(0));
        QVERIFY(openPort());
        const quint64 first = sessions->session();
        m_plc->pull();
        QTRY_COMPARE(sessions->session(), quint64(0));
        QVERIFY(m_plc->plug());
        QTRY_VERIFY(sessions->session() != 0);
        const quint64 second = sessions->session();
        QVERIFY(openPort()); // anew, as for another setting
        const quint64 third = sessions->session();
        QVERIFY(first != 0 && first != second && second != third && first != third);
        auto* urgent = extensionOf<ISerialUrgent>(m_port.get());
        std::thread([&] { // as while the program is held up
            for (const quint64 session : {first, second, third})
                urgent->sendUrgent(reply(static_cast<qint16>(session)), session);
        })
            .join();
        QTRY_COMPARE(m_plc->received.size(), 1);
        QCOMPARE(quint64(m_plc->received[0].data[2]), third);
    }

    void flappingLineIsSlowedDown()
    {
        QVERIFY(openPort());
        QElapsedTimer time;
        time.start();
        for (int i = 0; i < 4; ++i) {
            QVERIFY(m_plc->plug()); // the old one is cut in the same moment
            QTRY_VERIFY(status().open && status().device == m_plc->device());
        }
        QVERIFY2(time.elapsed() >= 600, "a line that opens and fails at once is tried without growing pauses");
    }

    void otherPortIsTakenWhileTheCellRuns()
    {
        auto* line = extensionOf<ISerialReopen>(m_port.get());
        QVERIFY(openPort());
        PlcEnd other(m_dir.filePath("另一串口"));
        QVERIFY(other.plug());
        QVERIFY(!line->reopen(QString(), "115200") && !line->reopen(other.link, "fast"));
        QVERIFY2(sendAndArrives(1), "the line stays when there can be no other");
        QCOMPARE(speedOf(m_plc->device()), QByteArray("115200"));
        QVERIFY(line->reopen(other.link, "115200"));
        QTRY_VERIFY(status().open && status().device == other.device());
        m_plc->send('P', {7});
        other.send('P', {8});
        QTRY_COMPARE(m_inbox->numbers(), QVector<qint16>{8});
        const SComFrame frame = reply(2);
        m_port->send(&frame);
        QTRY_COMPARE(other.received.size(), 1);
        QCOMPARE(m_plc->received.size(), 1);
        QVERIFY(line->reopen("/nowhere/tty", "9600"));
        QTRY_VERIFY(!status().open && status().lastError.contains("/nowhere/tty"));
        QVERIFY(line->reopen(m_plc->link, "9600"));
        QTRY_VERIFY(status().open);
        QVERIFY(sendAndArrives(3));
        QCOMPARE(speedOf(m_plc->device()), QByteArray("9600"));
        m_port->close();
        QVERIFY2(line->reopen(other.link, "115200"), "from a closed port, too");
        QTRY_VERIFY(status().open);
    }

    /// As udev names a converter: by a relative link, which goes and comes with it.
    void converterIsFollowedByItsNameToAnotherDevice()
    {
        const QDir folder(m_dir.filePath("by-id"));
        QVERIFY(folder.mkpath("."));
        QFile::remove(m_dir.filePath("dev"));
        QVERIFY(QFile::link("/dev", m_dir.filePath("dev")));
        const QString name = folder.filePath("usb-FTDI_FT232R_串口-if00-port0");
        const auto lead = [&](const QString& device) {
            QFile::remove(name);
            return QFile::link("../dev" + device.mid(4), name);
        };
        QVERIFY(lead(m_plc->device()));
        QVERIFY(m_port->open(name, "115200"));
        const QString first = m_plc->device();
        QCOMPARE(status().device, first);
        const auto listed = findPorts(folder.path());
        QVERIFY(!listed.isEmpty() && listed[0].name == name && listed[0].device == first);

        platform::PseudoTerminal second;
        QVERIFY(second.open(QIODevice::ReadWrite) && lead(second.farEnd()));
        QVERIFY(sendAndArrives(3)); // a line that works is left alone
        QCOMPARE(status().device, first);
        QVERIFY(QFile::remove(name)); // both are pulled, and the second comes back alone
        m_plc->pull();
        QTRY_VERIFY(!status().open);
        QVERIFY(m_plc->plug()); // another converter gets the first device
        QVERIFY(findPorts(folder.path()).size() < listed.size());
        QTRY_VERIFY(status().lastError.contains(name));
        QVERIFY(lead(second.farEnd()));
        QTRY_COMPARE(status().device, second.farEnd());
        QTRY_VERIFY(status().open);
    }

    void portThatIsNotThereYetIsOpenedLater_data() { bothLines(); }
    void portThatIsNotThereYetIsOpenedLater()
    {
        m_plc->pull();
        QVERIFY(!m_port->open(m_plc->name(), "115200"));
        QVERIFY(!status().open);
        QVERIFY(m_plc->plug());
        QTRY_VERIFY(status().open);
        QVERIFY(sendAndArrives(4));
    }

    void lineThatCannotBeIsRefused_data()
    {
        Table::of<QString, QString>({{"no name", "", "115200"},
                                     {"missing device", "/nowhere/tty", "115200"},
                                     {"a folder", QDir::tempPath(), "115200"},
                                     {"an ordinary file", QCoreApplication::applicationFilePath(), "115200"},
                                     {"Windows name", "COM3", "115200"},
                                     {"no port number", "tcp:plc", "115200"},
                                     {"port 0", "tcp:plc:0", "115200"},
                                     {"port beyond 16 bits", "tcp:plc:70000", "115200"},
                                     {"port that is no number", "tcp:plc:4OO1", "115200"},
                                     {"blank host", "tcp: :4001", "115200"},
                                     {"address of three parts", "tcp:192.168.1:4001", "115200"},
                                     {"address out of range", "tcp:192.168.1.256:4001", "115200"},
                                     {"address of a page", "tcp://plc:4001", "115200"},
                                     {"IPv6 without brackets", "tcp:::1:4001", "115200"},
                                     {"brackets around a name", "tcp:[plc]:4001", "115200"},
                                     {"brackets that stay open", "tcp:[::1:4001", "115200"},
                                     {"name that cannot be looked up", "tcp:" + QString(70, 'x') + ":4001", "115200"},
                                     {"baud rate is text", "link", "fast"},
                                     {"baud rate is zero", "link", "0"},
                                     {"baud rate is too large a number", "link", "99999999999"}});
    }
    void lineThatCannotBeIsRefused()
    {
        const auto [name, baud] = Table::row<QString, QString>();
        const QString typed = name == "link" ? m_plc->link : name;
        QVERIFY(!m_port->open(typed, baud));
        const QString wanted = name == "link" ? baud : name.section("tcp:", -1).section(":4001", 0, 0);
        QTRY_VERIFY2(status().lastError.contains(wanted), qPrintable(status().lastError)); // a look-up takes its time
        QVERIFY(!status().open);
        const auto* names = extensionOf<ISerialPorts>(m_port.get());
        const bool malformed = name.isEmpty() || (name.startsWith("tcp:") && !name.contains("xxx"));
        QCOMPARE(!names->problemOf(typed).isEmpty(), malformed);
        QVERIFY2(!malformed || status().lastError.contains("tcp:192.168.1.50:4001"), "there is an example");
        m_port->close();
    }

    void deviceServerIsFoundByEveryKindOfAddress_data()
    {
        Table::of<QString, QString>({{"IPv4", "127.0.0.1", "tcp:127.0.0.1:%1"},
                                     {"name", "127.0.0.1", "TCP: localhost :%1"},
                                     {"full width", "127.0.0.1", "ｔｃｐ：１２７.0.0.1：%1"},
                                     {"IPv6", "::1", "tcp:[::1]:%1"}});
    }
    void deviceServerIsFoundByEveryKindOfAddress()
    {
        const auto [address, name] = Table::row<QString, QString>();
        ServerPlcEnd plc{QHostAddress(address)};
        if (!plc.plug())
            QSKIP("this machine has no such address");
        const QString typed = name.arg(plc.device().section(':', -1));
        QCOMPARE(extensionOf<ISerialPorts>(m_port.get())->problemOf(typed), QString());
        m_port->open(typed, "means nothing here");
        QTRY_VERIFY(status().open && plc.isUp());
        QCOMPARE(status().device, plc.device());
        plc.send('P', {3});
        QTRY_COMPARE(m_inbox->numbers(), QVector<qint16>{3});
        plc.pull();
        QTRY_VERIFY(status().lastError.contains("拒绝连接"));
    }

    void deviceThatAnotherProgramHasIsSaidToBeBusy()
    {
        const auto other = makePort();
        QVERIFY(openPort(*other, *m_plc));
        QVERIFY(!m_port->open(m_plc->link, "115200"));
        QVERIFY2(status().lastError.contains("另一个程序"), qPrintable(status().lastError));
        other->close();
        QTRY_VERIFY(status().open);
    }

    void jammedLineGivesFramesUpRatherThanSendingThemLate_data() { bothLines(); }
    void jammedLineGivesFramesUpRatherThanSendingThemLate()
    {
        QVERIFY(openPort());
        constexpr int frames = 6000; // more than the system's buffer takes
        const SComFrame frame = reply(1);
        for (int i = 0; i < frames; ++i)
            m_port->send(&frame);
        const QDeadlineTimer deadline(patienceMs);
        while (status().framesOut + status().framesDropped < frames && !deadline.hasExpired())
            QThread::msleep(1); // and the PLC reads nothing
        const auto sent = static_cast<int>(status().framesOut);
        QVERIFY(sent < frames);
        const auto freshFrameArrives = [this] {
            const SComFrame fresh = reply(2);
            m_port->send(&fresh);
            return !m_plc->received.isEmpty() && m_plc->received.last().data[2] == 2;
        };
        QTRY_VERIFY(freshFrameArrives());
        const auto late = [](const SComFrame& one) { return one.data[2] == 1; };
        QVERIFY(std::count_if(m_plc->received.begin(), m_plc->received.end(), late) < sent + 10);
    }

    void closedPortIsQuietWhileFramesStreamIn_data() { bothLines(); }
    void closedPortIsQuietWhileFramesStreamIn()
    {
        auto calls = std::make_shared<std::atomic<int>>(0);
        m_port->setReceiveCallback(this, [calls](const SComFrame&) { ++*calls; });
        for (int round = 0; round < 30; ++round) {
            QVERIFY(m_plc->plug());
            QVERIFY(openPort());
            const int before = *calls;
            for (qint16 i = 0; i < 150; ++i)
                m_plc->send('P', {i});
            if (round % 2 == 0)
                QTRY_VERIFY(*calls > before);
            m_port->close();
            const int atClose = *calls;
            for (qint16 i = 0; i < 20; ++i)
                m_plc->send('P', {i});
            const SComFrame late = reply(1);
            m_port->send(&late);
            QVERIFY(!status().open);
            QCOMPARE(int(*calls), atClose);
        }
    }
};

QTEST_GUILESS_MAIN(SerialPortTest)
#include "tst_serialport.moc"
