#include "PlcLine.h"
#include "PlcScript.h"
#include "ScriptRunner.h"
#include "platform/PseudoTerminal.h"
#include "support/Table.h"

#include <QSerialPort>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// The program's end of a simulated line, seen by a test: keeps what it gets and sends what it is told.
class FarEnd
{
public:
    explicit FarEnd(const QString& link)
        : m_port(link)
    {
        QVERIFY2(m_port.open(QIODevice::ReadWrite), qPrintable(m_port.errorString()));
        QObject::connect(&m_port, &QSerialPort::readyRead, [this] {
            m_decoder.feed(m_port.readAll(), [this](const SComFrame& frame) {
                received.append(static_cast<char>(frame.command));
                if (answers && frame.command == 'P')
                    send(frame.data[0] == 5 ? 'F' : 'G');
            });
        });
    }
    void send(char command)
    {
        SComFrame frame;
        frame.command = static_cast<quint8>(command);
        m_port.write(m_encoder.next(frame));
    }

    QByteArray received; ///< commands
    bool answers = true;
    quint64 badBytes() const { return m_decoder.badBytes(); }

private:
    QSerialPort m_port;
    wire::FrameDecoder m_decoder;
    wire::FrameEncoder m_encoder;
};

} // namespace

class PlcScriptTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    QString link() const { return m_dir.filePath("line"); }

    /// Runs a script to its end; the failures.
    QStringList runScript(PlcLine& line, const QString& script, bool stopAtFailure = true)
    {
        QStringList failures;
        QVector<ScriptCommand> commands;
        QString error;
        if (!PlcScript::parse(script, &commands, &error))
            return {error};
        ScriptRunner runner(line, stopAtFailure);
        connect(&runner, &ScriptRunner::failed, this, [&](const QString& text) { failures << text; });
        QSignalSpy finished(&runner, &ScriptRunner::finished);
        runner.add(commands);
        runner.close();
        if (finished.isEmpty() && !finished.wait(patienceMs))
            failures << QStringLiteral("never finished");
        return failures;
    }

private slots:
    void mistakeInAScriptIsNamedWithItsLine_data()
    {
        Table::columns<QString>();
        const QByteArray mistakes =
            "dance|c 1 2|C 1|C 1 2 3|C one 2|C 70000 1|P|P 3|P 0|wait F|wait FG 100|wait F soon|"
            "wait F -1|wait 0x1FF 10|none F|raw|raw abc|raw xy|garbage 0|garbage 99999999|pull|"
            "pull -5|sleep|sleep 1s|shutdown now|send|send Q 1 2 3 4 5 6 7 8 9|send Q x|repeat 0|"
            "repeat twice";
        for (const QByteArray& text : mistakes.split('|'))
            QTest::newRow(text) << QString(text);
    }
    void mistakeInAScriptIsNamedWithItsLine()
    {
        const auto [text] = Table::row<QString>();
        QVector<ScriptCommand> commands;
        QString error;
        QVERIFY(!PlcScript::parse("# a comment\n\nP 1 # trigger\n" + text + "\nP 2", &commands, &error));
        QVERIFY2(error.startsWith("line 4: "), qPrintable(error));
        QCOMPARE(commands.size(), 1);
        commands.clear();
        QVERIFY(!PlcScript::parse("repeat", &commands, &error));
    }

    void commandsBecomeFrames()
    {
        QVector<ScriptCommand> commands;
        QString error;
        const QString script = "C 1 65535\r\nP 2\nshutdown\nsend 0x51 -1 2\nraw AA 55 0b\nwait H 20\nrepeat\n";
        QVERIFY2(PlcScript::parse(script, &commands, &error), qPrintable(error));
        QCOMPARE(commands.size(), 7);
        QCOMPARE(commands[0].frame.command, quint8('C'));
        QCOMPARE(int(commands[0].frame.data[1]), -1);
        QCOMPARE(int(commands[1].frame.data[0]), 6);
        QCOMPARE(commands[2].frame.command, quint8(0xF1));
        QCOMPARE(commands[3].frame.command, quint8('Q'));
        QCOMPARE(int(commands[3].frame.data[0]), -1);
        QCOMPARE(commands[4].bytes, QByteArray("\xAA\x55\x0B"));
        QCOMPARE(commands[5].number, 20);
        QCOMPARE(commands[6].line, 7);
    }

    void scriptTalksWithTheProgram()
    {
        PlcLine line;
        QString error;
        QVERIFY2(line.openLink(link(), &error), qPrintable(error));
        FarEnd program(link());
        QCOMPARE(runScript(line, "C 1 2\nP 1\nP 2\nwait G 9000\nwait F 9000\nnone F 20\nsleep 5\nshutdown"),
                 QStringList());
        QTRY_COMPARE(program.received, QByteArray("CPP\xF1"));
        QCOMPARE(runScript(line, "garbage 100\nP 1\nwait F 9000\nrepeat 3"), QStringList());
        QTRY_COMPARE(program.received, QByteArray("CPP\xF1PPP"));
        QCOMPARE(program.badBytes(), quint64(300));
    }

    void whatDoesNotComeAndWhatShouldNotAreFailures()
    {
        PlcLine line;
        QString error;
        QVERIFY(line.openLink(link(), &error));
        FarEnd program(link());
        QCOMPARE(runScript(line, "P 1\nnone F 9000\nP 2"), QStringList{"line 2: a frame F came"});
        QTRY_COMPARE(program.received, QByteArray("P")); // the script stopped
        program.answers = false;
        QCOMPARE(runScript(line, "P 1\nwait F 30\n\nwait G 30", false),
                 (QStringList{"line 2: no frame F within 30 ms", "line 4: no frame G within 30 ms"}));
    }

    void heartbeatHasToBeANewOne()
    {
        PlcLine line;
        QString error;
        QVERIFY(line.openLink(link(), &error));
        FarEnd program(link());
        QSignalSpy frames(&line, &PlcLine::frameReceived);
        program.send('C');
        QTRY_COMPARE(frames.size(), 1);
        QCOMPARE(runScript(line, "wait C 30").size(), 1);
        QTimer beat;
        connect(&beat, &QTimer::timeout, this, [&] { program.send('C'); });
        beat.start(20);
        QCOMPARE(runScript(line, "wait C 9000"), QStringList());
    }

    void linkIsReplacedWhenStaleAndGoesWithTheLine()
    {
        QVERIFY(QFile::link("/dev/pts/99999", link()));
        QString error;
        {
            PlcLine line;
            QVERIFY2(line.openLink(link(), &error), qPrintable(error));
            const QString device = QFileInfo(link()).symLinkTarget();
            QVERIFY(QFileInfo::exists(device));
            QSignalSpy back(&line, &PlcLine::pluggedIn);
            line.pull(10);
            QVERIFY(!QFileInfo(link()).isSymLink());
            line.send({}); // goes nowhere
            QVERIFY(back.wait(patienceMs));
            FarEnd program(link());
            QVERIFY(runScript(line, "P 1\nwait F 9000").isEmpty());
        }
        QVERIFY(!QFileInfo(link()).isSymLink());
        QFile file(link());
        QVERIFY(file.open(QIODevice::WriteOnly));
        PlcLine line;
        QVERIFY(!line.openLink(link(), &error));
        QVERIFY(error.contains(link()));
        QVERIFY(file.exists());
        QVERIFY(file.remove());
    }

    void namedPortThatFailsIsOpenedAgain()
    {
        PlcLine line;
        QString error;
        QVERIFY(!line.openPort(link(), 115200, &error));
        QVERIFY(error.contains(link()));
        QSignalSpy pulled(&line, &PlcLine::pulled);
        for (int round = 0; round < 2; ++round) {
            platform::PseudoTerminal program;
            QVERIFY(program.open(QIODevice::ReadWrite));
            QVERIFY(QFile::link(program.farEnd(), link()));
            if (round == 0)
                QVERIFY2(line.openPort(link(), 115200, &error), qPrintable(error));
            else
                QVERIFY(QSignalSpy(&line, &PlcLine::pluggedIn).wait(patienceMs));
            QByteArray got;
            connect(&program, &QIODevice::readyRead, this, [&] { got += program.readAll(); });
            line.send({});
            QTRY_COMPARE(got.size(), wire::frameBytes);
            QVERIFY(QFile::remove(link()));
            program.close();
            QTRY_COMPARE(pulled.size(), round + 1);
        }
    }
};

QTEST_GUILESS_MAIN(PlcScriptTest)
#include "tst_plcscript.moc"
