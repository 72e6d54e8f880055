#include "FakeProgram.h"
#include "PlcLine.h"
#include "PlcScript.h"
#include "ScriptRunner.h"
#include "platform/PseudoTerminal.h"
#include "support/Table.h"

#include <QTemporaryDir>
#include <QtTest>

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

    void scriptTalksWithTheProgram()
    {
        PlcLine line;
        QString error;
        QVERIFY2(line.openLink(link(), &error), qPrintable(error));
        FakeProgram program(link());
        QCOMPARE(
            runScript(line, "C 1 65535\r\nP 1\nP 2\nwait G 9000\nwait F 9000\nnone F 20\nsend 0x51 -1 2\nshutdown"),
            QStringList());
        QCOMPARE(runScript(line, "garbage 100\nraw AA 55 0b\nP 1\nwait F 9000\nrepeat 3"), QStringList());
        QCOMPARE(runScript(line, "P 1\nnone F 9000\nP 2"), QStringList{"line 2: a frame F came"}); // and stopped
        QTRY_COMPARE(program.seen.join('|'), QString::fromLatin1("C 1 -1|P 5|P 6|Q -1|\xF1 0|P 5|P 5|P 5|P 5"));
        program.answers[0] = {{0, 0, 0, true}};
        QCOMPARE(runScript(line, "P 1\nwait F 30\n\nwait G 30", false),
                 (QStringList{"line 2: no frame F within 30 ms", "line 4: no frame G within 30 ms"}));
    }

    void heartbeatHasToBeANewOne()
    {
        PlcLine line;
        QString error;
        QVERIFY(line.openLink(link(), &error));
        FakeProgram program(link());
        QSignalSpy frames(&line, &PlcLine::frameReceived);
        program.heartbeat.setSingleShot(true); // before its first
        program.heartbeat.start(0);
        QTRY_COMPARE(frames.size(), 1);
        QCOMPARE(runScript(line, "wait C 30").size(), 1);
        program.heartbeat.setSingleShot(false);
        program.heartbeat.start(20);
        QCOMPARE(runScript(line, "wait C 9000"), QStringList());
    }

    void staleLinkIsReplacedButNoFile()
    {
        QVERIFY(QFile::link("/dev/pts/99999", link()));
        QString error;
        QVERIFY2(PlcLine().openLink(link(), &error), qPrintable(error));
        QVERIFY(!QFileInfo(link()).isSymLink());
        QFile file(link());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(!PlcLine().openLink(link(), &error) && error.contains(link()));
        QVERIFY(file.remove());
    }

    void placeToListenAtHasToBeOne()
    {
        QString error;
        for (const char* place : {"", "4001", "plc:4001", "127.0.0.1", "127.0.0.1:70000", "[::1"})
            QVERIFY2(!PlcLine().listen(place, &error) && error.contains(place), place);
    }

    void namedPortThatFailsIsOpenedAgain()
    {
        PlcLine line;
        QString error;
        QVERIFY(!line.openPort(link(), 115200, &error) && error.contains(link()));
        QSignalSpy pulled(&line, &PlcLine::pulled);
        for (int round = 0; round < 2; ++round) {
            platform::PseudoTerminal program;
            QVERIFY(program.open(QIODevice::ReadWrite) && QFile::link(program.farEnd(), link()));
            QVERIFY(round ? QSignalSpy(&line, &PlcLine::pluggedIn).wait(patienceMs)
                          : line.openPort(link(), 115200, &error));
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
