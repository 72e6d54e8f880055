// Drives the real program, with its real modules, over a pseudo-terminal; and looks at what it keeps.

#include "RunningCell.h"
#include "db/OtherProgram.h"
#include "db/log/ksLogDB.h"
#include "support/Table.h"

#include <QImageReader>

#include <cmath>

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
    void sendIndices(int n = 0) { m_cell.plc().send('C', {m_cell.index(1, n), m_cell.index(2, n)}); }

private slots:
    void initTestCase() { QVERIFY(m_cell.prepare()); }
    void cleanup() { QVERIFY(m_cell.stop()); }

    void everyTriggerIsAnsweredAndKept()
    {
        QVERIFY(m_cell.start({{"trigerFilter", 0}}, "[Image]\nSrcImgSave_st1=true\nSrcImgSave_st2=true\n"
                                                    "RltImgSave_st1=true\nRltImgSave_st2=true\n"));
        for (int part = 0; part < 4; ++part) {
            sendIndices(part / 2);
            m_cell.plc().send('P', {part % 2 + 5});
            QVERIFY(repliesBecome(QByteArray("FGFG").left(part + 1)));
        }
        QVERIFY(m_cell.stop());
        OtherProgram records(m_cell.home() + "/DBFiles/Pellix.db");
        const auto column = [&](const char* name) {
            return records.column(QString("SELECT %1 FROM RltTable ORDER BY uid").arg(name));
        };
        QCOMPARE(column("count(*)"), QStringList{"4"});
        const QStringList angles = column("dAngle");
        const QStringList keys = column("stationName || ' ' || threshBenchMark");
        const QStringList images = column("value1");
        const QJsonObject config = m_cell.stationConfig();
        for (int part = 0; part < 4; ++part) {
            const QString n = QString::number(part % 2 + 1);
            const SComFrame reply = m_cell.plc().reply(part);
            const QJsonObject wheel = m_cell.wheel(part % 2 + 1, part / 2);
            const QString model = wheel.value("model").toString();
            const double scale = config.value("StationScale_" + n).toDouble();
            double x = wheel.value("x").toDouble() * scale + config.value("StationXOffset_" + n).toDouble();
            double y = wheel.value("y").toDouble() * scale + config.value("StationYOffset_" + n).toDouble();
            if (config.value("station_xytrans_" + n).toBool())
                std::swap(x, y);
            const double angle = wheel.value("angle").toDouble();
            QVERIFY2(std::abs(std::remainder(joined(reply, 2) - angle, 360)) < 0.1, qPrintable(n));
            QVERIFY2(std::abs(joined(reply, 4) - x) < scale + 0.001, qPrintable(n));
            QVERIFY2(std::abs(joined(reply, 6) - y) < scale + 0.001, qPrintable(n));
            QCOMPARE(keys[part], QString("Station_%1 %1_%2").arg(n, model));
            QVERIFY(std::abs(angles[part].toDouble() - joined(reply, 2)) < 0.0011); // the reply is cut
            QVERIFY(images[part].contains(QString("/Station%1/%2/").arg(n, model)));
            QVERIFY2(!QImage(m_cell.home() + images[part]).isNull(), qPrintable(images[part]));
        }
        QDirIterator sources(m_cell.home() + "/DBFiles/SrcImages", {"*.jpg"}, QDir::Files,
                             QDirIterator::Subdirectories);
        int count = 0;
        for (; sources.hasNext(); ++count)
            QCOMPARE(QImageReader(sources.next()).size(), QSize(2448, 2048));
        QCOMPARE(count, 4);
        const QString today = QDate::currentDate().toString("yyyy-MM-dd");
        QStringList lines;
        for (const auto& line : SystemLog::ksLogDB(m_cell.home() + "/dbLog.db").query(today, today, 2))
            lines << line.second;
        QVERIFY(!lines.filter("系统启动").isEmpty() && !lines.filter("★工位1:切换型号为[").isEmpty());
    }

    // Garbage is no frame, a frame may come in pieces, and offline the stored model counts.
    void lineAndModeOfARunningCell()
    {
        const QJsonObject wheel = m_cell.wheel(1);
        QVERIFY(m_cell.start({{"onlineMode", false}, {"station_runModel_1", wheel.value("model")}}));
        m_cell.plc().pull();
        QVERIFY(m_cell.plc().plug() && m_cell.settle());
        m_cell.plc().send('C', {98, 98});
        const QByteArray trigger = m_cell.plc().encoded('P', {5});
        m_cell.plc().sendBytes(QByteArray(1000, '\xaa') + QByteArray::fromHex("aa55") + trigger.left(9));
        m_cell.plc().sendBytes(trigger.left(10));
        m_cell.plc().sendBytes(trigger.mid(10));
        QVERIFY(repliesBecome("F"));
        const double angle = wheel.value("angle").toDouble();
        QVERIFY(std::abs(std::remainder(joined(m_cell.plc().reply(0), 2) - angle, 360)) < 0.1);
        for (const int station : {5, 6}) // the program ends with tasks in hand
            m_cell.plc().send('P', {station});
    }

    void startWithoutTheLineWaitsForNobody()
    {
        QVERIFY(m_cell.startUnplugged());
        QVERIFY(m_cell.plugAndBeat());
        sendIndices();
        m_cell.plc().send('P', {5});
        QVERIFY(repliesBecome("F"));
    }

    void programThatWasAskedToShutDownStillEndsCleanly()
    {
        QVERIFY(m_cell.start());
        m_cell.plc().send(0xF1, {});
        QVERIFY(m_cell.settle()); // the close waits for its confirmation, and the heart goes on beating
    }

    void secondProgramInTheSameHomeSaysSoAndEnds()
    {
        QVERIFY(m_cell.start());
        QProcess second;
        second.start(VALVECELL_BIN_DIR "/valvecell", {"--home", m_cell.home()});
        QVERIFY(second.waitForFinished(RunningCell::deadlineMs));
        QCOMPARE(second.exitCode(), 3);
        QVERIFY(second.readAllStandardError().contains("in use by another valvecell"));
#ifdef Q_OS_UNIX
        const QFile::Permissions others = QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QVERIFY(!(QFileInfo(m_cell.home() + "/DBFiles/Images").permissions() & others));
#endif
        sendIndices();
        m_cell.plc().send('P', {5});
        QVERIFY(repliesBecome("F"));
    }

    void versionIsPrintedWithoutAScreen()
    {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "none that there is");
        program.setProcessEnvironment(environment);
        for (const char* option : {"--version", "--help"}) {
            program.start(VALVECELL_BIN_DIR "/valvecell", {option});
            QVERIFY(program.waitForFinished(RunningCell::deadlineMs));
            QCOMPARE(program.exitCode(), 0);
            QVERIFY(!program.readAllStandardOutput().isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(CellTest)
#include "tst_cell.moc"
