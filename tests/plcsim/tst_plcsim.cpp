#include "FakeProgram.h"
#include "config/ksGlobalConfig.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <cmath>

Q_DECLARE_METATYPE(ScriptedAnswer)

/// Runs the simulated PLC as a process against a fake program.
class PlcsimTest : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempHome> m_home;
    std::unique_ptr<QProcess> m_plc;
    std::unique_ptr<FakeProgram> m_program;

    QString link() const { return m_home->path("/plc"); }
    /// For tests of what holds for every line.
    static void bothLines() { Table::of<int>({{"pseudo-terminal", 0}, {"device server", 0}}); }
    QStringList lineOptions() const
    {
        if (QTest::currentDataTag() != QByteArray("device server"))
            return {"--link", link(), "--name-file", m_home->path("/name")};
        const qint64 id = QCoreApplication::applicationPid(); // an address of its own: nobody else gets its ports
        const QString place = QStringLiteral("127.2.%1.%2:0").arg(id / 256 % 256).arg(id % 254 + 1);
        return {"--listen", place, "--name-file", m_home->path("/name")};
    }
    QString output() const { return QString::fromUtf8(m_plc->property("output").toByteArray()); }
    QString errors()
    {
        const QByteArray all = m_plc->property("errors").toByteArray() + m_plc->readAllStandardError();
        m_plc->setProperty("errors", all);
        return QString::fromUtf8(all);
    }

    void startPlc(const QStringList& arguments)
    {
        m_plc = std::make_unique<QProcess>();
        connect(m_plc.get(), &QProcess::readyReadStandardOutput, this, [this] {
            m_plc->setProperty("output", m_plc->property("output").toByteArray() + m_plc->readAllStandardOutput());
        });
        m_plc->start(QStringLiteral(VALVECELL_BIN_DIR "/plcsim"), lineOptions() + arguments);
        QVERIFY2(m_plc->waitForStarted(), qPrintable(m_plc->errorString()));
    }
    void startBoth(const QStringList& arguments)
    {
        startPlc(arguments);
        QTRY_VERIFY(QFileInfo::exists(m_home->path("/name")));
        m_program = std::make_unique<FakeProgram>(QString::fromUtf8(m_home->read("/name")));
    }
    void endsWith(int exitCode)
    {
        QTRY_COMPARE(m_plc->state(), QProcess::NotRunning);
        QVERIFY2(m_plc->exitStatus() == QProcess::NormalExit && m_plc->exitCode() == exitCode,
                 qPrintable(output() + errors()));
        QVERIFY(!QFileInfo(link()).isSymLink());
    }
    QStringList truthOptions() const { return {"--truth1", m_home->path("/st1"), "--truth2", m_home->path("/st2")}; }

private slots:
    void init()
    {
        m_home = std::make_unique<TempHome>();
        for (const char* file : {"/st1/10.bmp", "/st1/2.bmp", "/st2/1.bmp"})
            m_home->write(file, "x");
        m_home->write("/st1/truth.json", R"({"images": [
            {"file": "10.bmp", "model": "A", "index": 1, "hole": true, "angle": 100, "x": 100.5, "y": 200.25},
            {"file": "2.bmp", "model": "B", "index": 2, "hole": false, "angle": null, "x": null, "y": null}]})");
        m_home->write("/st2/truth.json", R"({"images": [
            {"file": "1.bmp", "model": "C", "index": 3, "hole": true, "angle": 359.9, "x": 10, "y": 20}]})");
        ksGlobalConfig config;
        config.station(1).twoPoint.scale = 0.5;
        config.station(1).twoPoint.xOffset = -52.75; // a negative answer: its fraction is sent with the sign
        config.station(1).swapXY = true;
        QVERIFY(config.save());
    }
    void cleanup()
    {
        m_program.reset();
        m_plc.reset();
        m_home.reset();
    }

    void partsAreFedTimedAndReported_data() { bothLines(); }
    void partsAreFedTimedAndReported()
    {
        m_home->write("/road.txt", "valvecell.road: station=1 engine_ms=9 capture_ms=9 total_ms=9 rss_kib=9\n");
        const QString json = m_home->path("/out.json");
        startBoth(QStringList{"--parts", "6", "--refused", "4", "--filter", "30", "--json", json, "--road",
                              m_home->path("/road.txt"), "--home", m_home->path(), "--camera-delay", "0.25",
                              "--verbose"} +
                  truthOptions());
        m_program->roadFile = m_home->path("/road.txt");
        m_program->answers[0] = {{100.25, 100.125, -2.5}, {361}, {99.75, 100.125, -2.5}};
        m_program->answers[1] = {{0.2, 10, 20.5}};
        endsWith(0);
        QCOMPARE(m_program->seen, (QStringList{"C 1 3", "P 5", "C 2 3", "P 6", "P 5", "C 1 3", "P 6", "P 5", "C 2 3",
                                               "P 6", "C 98 98", "P 5", "P 6", "P 5", "P 6"}));

        const QJsonObject report = QJsonDocument::fromJson(m_home->read("/out.json")).object();
        QCOMPARE(report["parts"].toInt(), 6);
        QCOMPARE(report["replies"].toInt(), 6);
        QCOMPARE(report["found"].toInt(), 5);
        QVERIFY(qAbs(report["angle_error_deg"].toObject()["max"].toDouble() - 0.3) < 1e-6);
        QCOMPARE(report["center_error_px"].toObject()["max"].toDouble(), 0.5);
        QCOMPARE(report["refused"].toObject()["refused"].toInt(), 4);
        QCOMPARE(report["rss_kib"].toObject()["at_end"].toInt(), 1006);
        const QJsonArray rows = report["rows"].toArray();
        QCOMPARE(rows.size(), 6);
        for (int i = 0; i < rows.size(); ++i) {
            const double latency = rows[i]["latency_ms"].toDouble();
            const double engine = rows[i]["engine_ms"].toDouble();
            QCOMPARE(engine, (i + 1) / 1000.0);
            QVERIFY(latency > 0 && latency < 60000);
            QVERIFY(qAbs(rows[i]["rest_ms"].toDouble() - (latency - engine - 0.25)) < 1e-9);
        }
        QCOMPARE(rows[0]["center_error_px"].toDouble(), 0.0);
        QCOMPARE(rows[2]["result"].toString(), QString("ok"));
        QVERIFY(output().contains("< H 6 50 0 0 0 0 0 0"));
        QVERIFY(output().contains("all good"));
    }

    void runFailsWhenOnePartDoes_data()
    {
        Table::of<ScriptedAnswer, QString>({{"wrong direction", ScriptedAnswer{101}, "wrong"},
                                            {"missed", ScriptedAnswer{361}, "missed"},
                                            {"silent", ScriptedAnswer{0, 0, 0, true}, "no answer"},
                                            {"no H after 361", ScriptedAnswer{361, 0, 0, false, true}, "no H frame"}});
    }
    void runFailsWhenOnePartDoes()
    {
        const auto [answer, result] = Table::row<ScriptedAnswer, QString>();
        // Only what can run out gets a short time; a slow machine must not turn another answer into silence.
        const bool runsOut = answer.silent || answer.withoutNotice;
        startBoth(QStringList{"--parts", "2", "--timeout", runsOut ? "1500" : "20000"} + truthOptions());
        m_program->answers[0] = {answer};
        m_program->answers[1] = {{359.9}};
        endsWith(1);
        QVERIFY2(output().contains(result) && output().contains("NOT all good"), qPrintable(output()));
    }

    void unknownImagesOnlyHaveToBeAnswered()
    {
        startPlc({"--parts", "2", "--start-timeout", "100"});
        endsWith(1);
        QVERIFY(errors().contains("heartbeat")); // the program never came
        startBoth({"--parts", "3"});
        m_program->answers[1] = {{361}};
        endsWith(0);
        QCOMPARE(m_program->seen, (QStringList{"C 99 99", "P 5", "P 6", "P 5"}));
    }

    void endlessFeedingEndsWhenAsked_data() { Table::of<bool>({{"SIGTERM", true}, {"standard input closed", false}}); }
    void endlessFeedingEndsWhenAsked()
    {
        const auto [bySignal] = Table::row<bool>();
        startBoth(QStringList{"--parts", "0", "--interval", "10"} + truthOptions());
        m_program->answers[0] = {{100}, {361}, {100}, {361}, {100}, {361}};
        m_program->answers[1] = {{359.9}};
        QTRY_VERIFY(m_program->seen.count("P 6") >= 2);
        if (bySignal)
            m_plc->terminate();
        else
            m_plc->closeWriteChannel();
        QTRY_COMPARE(m_plc->state(), QProcess::NotRunning);
        QVERIFY(output().contains("parts "));
        QVERIFY(!QFileInfo(link()).isSymLink());
    }

    void cableIsPulledInTheMiddleOfAScript_data() { bothLines(); }
    void cableIsPulledInTheMiddleOfAScript()
    {
        m_home->write("/script", "wait C 20000\nC 1 3\nP 1\nwait F 20000\npull 100\nwait C 20000\ngarbage 50\nP 2\n"
                                 "wait G 20000\nraw aa55\nshutdown\nsleep 20\n");
        startBoth({"--script", m_home->path("/script")});
        endsWith(0);
        QTRY_COMPARE(m_program->seen.size(), 4);
        QVERIFY(m_program->seen.last().startsWith(QChar(0xF1)));
    }

    void programComesBackFromEveryCut_data() { bothLines(); }
    void programComesBackFromEveryCut()
    {
        for (const bool forgetful : {false, true}) {
            m_home->write("/pid", QByteArray::number(QCoreApplication::applicationPid()));
            startBoth(QStringList{"--cuts", "3", "--away", "600", "--json", m_home->path("/cuts.json"), "--pid-file",
                                  m_home->path("/pid"), "--seed", "5"} +
                      truthOptions());
            m_program->forgetful = forgetful;
            endsWith(forgetful ? 1 : 0);
            const QJsonObject report = QJsonDocument::fromJson(m_home->read("/cuts.json")).object();
            QCOMPARE(report["cuts"].toInt(), 3);
            QVERIFY(report["triggers"].toInt() >= 3 && report["back_ms"].toObject()["p99"].toDouble() > 0);
            QVERIFY(report["cpu_away_percent"].toDouble() > 0);
            QCOMPARE(report["stray"].toInt() > 0, forgetful);
            QCOMPARE(report["answers"].toInt() > 0, !forgetful);
            m_program.reset();
            QFile::remove(m_home->path("/name"));
        }
    }

    void failureOfAScriptTellsItsLine_data()
    {
        Table::of<QByteArray, int, QString>({{"nothing comes", "wait C 20000\n\nwait G 30\n", 1, "line 3: no frame G"},
                                             {"mistake", "sleep 1\nP 9\n", 2, "line 2"},
                                             {"missing", QByteArray(), 2, "/script"}});
    }
    void failureOfAScriptTellsItsLine()
    {
        const auto [script, exitCode, message] = Table::row<QByteArray, int, QString>();
        if (!script.isEmpty())
            m_home->write("/script", script);
        startPlc({"--script", m_home->path("/script")});
        m_program = std::make_unique<FakeProgram>(link());
        endsWith(exitCode);
        const QString text = errors();
        QVERIFY2(text.contains(message), qPrintable(text));
    }

    void personTypesCommands()
    {
        startBoth({});
        m_program->answers[0] = {{361}};
        m_plc->write("wait C 20000\nP 1\nhello\nwait H 20000\n");
        QTRY_VERIFY(output().contains("H 6 50"));
        QVERIFY(!output().contains("< C ")); // heartbeats are not shown
        m_plc->closeWriteChannel();
        endsWith(1); // for "hello"
        QVERIFY(errors().contains("line 3: unknown command \"hello\""));
    }
};

QTEST_GUILESS_MAIN(PlcsimTest)
#include "tst_plcsim.moc"
