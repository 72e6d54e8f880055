// What the real program keeps of the parts that it answered.

#include "RunningCell.h"
#include "db/OtherProgram.h"
#include "db/log/ksLogDB.h"

#include <QImageReader>
#include <QtTest>

namespace {

const QByteArray archiveAll = "[Image]\nSrcImgSave_st1=true\nSrcImgSave_st2=true\nRltImgSave_st1=true\n"
                              "RltImgSave_st2=true\n";

} // namespace

class CellRecordsTest : public QObject
{
    Q_OBJECT

private:
    RunningCell m_cell;
    int m_fed[2] = {0, 0}; ///< images that the cameras of the present run have delivered

    QString database() const { return m_cell.home() + QStringLiteral("/DBFiles/Pellix.db"); }
    int rows() const { return OtherProgram(database()).value("SELECT count(*) FROM RltTable").toInt(); }

    bool start()
    {
        m_fed[0] = m_fed[1] = 0;
        return m_cell.start({{"trigerFilter", 0}}, archiveAll);
    }

    /// Feeds one part and waits for its reply, unless `wait` is false.
    bool feed(int station, bool wait = true)
    {
        const int replies = m_cell.plc().replies().count(station == 1 ? 'F' : 'G');
        m_cell.plc().send('C', {m_cell.index(1, m_fed[0]), m_cell.index(2, m_fed[1])});
        m_cell.plc().send('P', {station + 4});
        ++m_fed[station - 1];
        return !wait ||
               QTest::qWaitFor([&] { return m_cell.plc().replies().count(station == 1 ? 'F' : 'G') > replies; },
                               RunningCell::deadlineMs);
    }

    /// The angles answered so far.
    QList<double> answered()
    {
        QList<double> angles;
        for (int i = 0; i < m_cell.plc().replies().size(); ++i) {
            if (m_cell.plc().replies()[i] != 'H')
                angles << joined(m_cell.plc().reply(i), 2);
        }
        return angles;
    }

private slots:
    void initTestCase() { QVERIFY(m_cell.prepare()); }
    void cleanup() { QVERIFY(m_cell.stop()); }

    void everyAnsweredPartHasItsRowItsImagesAndItsLogLine()
    {
        QVERIFY(start());
        for (int part = 0; part < 6; ++part)
            QVERIFY(feed(part % 2 + 1));
        const QList<double> angles = answered();
        QVERIFY(m_cell.stop());
        OtherProgram records(database());
        QCOMPARE(records.value("PRAGMA integrity_check"), "ok");
        const QStringList recorded = records.column("SELECT dAngle FROM RltTable ORDER BY uid");
        const QStringList keys =
            records.column("SELECT stationName || ' ' || threshBenchMark FROM RltTable ORDER BY uid");
        const QStringList images = records.column("SELECT value1 FROM RltTable ORDER BY uid");
        QCOMPARE(recorded.size(), 6);
        for (int part = 0; part < 6; ++part) {
            const int station = part % 2 + 1;
            const QString model = m_cell.wheel(station, part / 2).value("model").toString();
            QCOMPARE(keys[part], QStringLiteral("Station_%1 %1_%2").arg(station).arg(model));
            QVERIFY(std::abs(recorded[part].toDouble() - angles[part]) < 0.0011); // the reply is cut
            QVERIFY(images[part].contains(QStringLiteral("/Station%1/%2/").arg(station).arg(model)));
            QVERIFY2(!QImage(m_cell.home() + images[part]).isNull(), qPrintable(images[part]));
        }
        QDirIterator sources(m_cell.home() + "/DBFiles/SrcImages", {"*.jpg"}, QDir::Files,
                             QDirIterator::Subdirectories);
        int count = 0;
        for (; sources.hasNext(); ++count)
            QCOMPARE(QImageReader(sources.next()).size(), QSize(2448, 2048));
        QCOMPARE(count, 6);
        const QString today = QDate::currentDate().toString("yyyy-MM-dd");
        const auto lines = SystemLog::ksLogDB(m_cell.home() + "/dbLog.db").query(today, today, 2);
        const auto said = [&](const char* text) {
            return std::any_of(lines.begin(), lines.end(),
                               [&](const auto& line) { return line.second.contains(text); });
        };
        QVERIFY(said("系统启动"));
        QVERIFY(said("★工位1:切换型号为["));
    }

    void secondProgramInTheSameHomeSaysSoAndEnds()
    {
        QVERIFY(start());
        QProcess second;
        second.start(VALVECELL_BIN_DIR "/valvecell", {"--home", m_cell.home()});
        QVERIFY(second.waitForFinished(RunningCell::deadlineMs));
        QCOMPARE(second.exitCode(), 3);
        QVERIFY(second.readAllStandardError().contains("in use by another valvecell"));
#ifdef Q_OS_UNIX
        const QFile::Permissions others = QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QVERIFY(!(QFileInfo(m_cell.home() + "/DBFiles/Images").permissions() & others));
#endif
        QVERIFY(feed(1));
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

    void programKilledInProductionLosesAtMostThePartInHand()
    {
        for (int round = 0; round < 8; ++round) {
            const int before = rows();
            QVERIFY(start());
            QVERIFY(feed(1));
            QVERIFY(feed(2));
            QVERIFY(feed(1, round % 2 == 0));
            m_cell.kill();
            const int replies = answered().size();
            const int written = rows() - before;
            QCOMPARE(OtherProgram(database()).value("PRAGMA integrity_check"), "ok");
            QVERIFY2(written >= replies - 1 && written <= 3,
                     qPrintable(QStringLiteral("%1 of %2").arg(written).arg(replies)));
        }
    }
};

QTEST_GUILESS_MAIN(CellRecordsTest)
#include "tst_cellrecords.moc"
