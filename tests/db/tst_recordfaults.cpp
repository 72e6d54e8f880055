#include "OtherProgram.h"
#include "SmallDisk.h"
#include "db/ResultRecorder.h"

#include <QImage>
#include <QtTest>

namespace {

StationResult numbered(int number)
{
    StationResult result;
    result.value3 = QString::number(number);
    return result;
}

ResultRecorder::Rules fastRules()
{
    ResultRecorder::Rules rules;
    rules.retryMs = 10;
    return rules;
}

QStringList numbers(int first, int last)
{
    QStringList texts;
    for (int i = first; i <= last; ++i)
        texts << QString::number(i);
    return texts;
}

/// Counts warnings, since a fault that lasts must not flood the log.
int s_warnings = 0;

void countWarnings(QtMsgType type, const QMessageLogContext&, const QString&)
{
    s_warnings += type == QtWarningMsg ? 1 : 0;
}

} // namespace

/// Recording goes on whatever happens to the file and its disk.
class tst_recordfaults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void unfitFileIsKeptAsideAndAFreshOneBegun_data();
    void unfitFileIsKeptAsideAndAFreshOneBegun();
    void fileIsDamagedWhileTheCellRuns();
    void folderIsRemovedWhileTheCellRuns();
    void anotherProgramWritesForAWhile();
    void engineTipHoldsAnApostrophe();
    void databaseCannotBeOpenedForAWhile();
    void diskFillsUpAndIsEmptied();
    void diskBecomesReadOnlyAndBack();
    void oldestRowsAreGivenUpBeyondTheLimit();
    void clockIsSetBackAnHour();
    void processIsKilledInMidProductionFiftyTimes();

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QString folder() const { return m_folder->filePath("DBFiles"); }
    QString file() const { return folder() + "/Pellix.db"; }
    QStringList recorded() const { return OtherProgram(file()).column("select value3 from RltTable order by uid"); }
};

void tst_recordfaults::init()
{
    m_folder.reset(new QTemporaryDir(QDir::tempPath() + QStringLiteral("/故障-XXXXXX")));
    QDir().mkpath(folder());
}

void tst_recordfaults::unfitFileIsKeptAsideAndAFreshOneBegun_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("sql");
    QTest::newRow("noise") << QByteArray(20000, 'n') << "";
    QTest::newRow("cut off") << QByteArray("SQLite format 3\0 and then nothing", 33) << "";
    QTest::newRow("a letter") << QByteArray("Dear plant,") << "";
    QTest::newRow("another program's tables") << QByteArray() << "create table bookmarks(url)";
    QTest::newRow("another program's mark") << QByteArray() << "PRAGMA application_id=1234";
    QTest::newRow("our name, other columns") << QByteArray() << "create table RltTable(uid, time)";
}

void tst_recordfaults::unfitFileIsKeptAsideAndAFreshOneBegun()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, sql);
    if (sql.isEmpty()) {
        QFile damaged(file());
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write(bytes);
    } else {
        QVERIFY(OtherProgram(file()).run(sql));
    }
    const qint64 size = QFileInfo(file()).size();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Pellix\\.db.*damaged-"));
    StationDB database(file());
    QVERIFY(database.initialise());
    QVERIFY(database.insertResult(numbered(1)));
    QCOMPARE(recorded(), numbers(1, 1));
    QCOMPARE(QFileInfo(database.openReport().keptAside).size(), size);
}

void tst_recordfaults::fileIsDamagedWhileTheCellRuns()
{
    StationDB database(file());
    QVERIFY(database.initialise());
    ResultRecorder recorder(database, fastRules());
    recorder.record(numbered(1));
    database.close(); // so that the next row meets the damage
    QFile damaged(file());
    QVERIFY(damaged.open(QIODevice::ReadWrite));
    damaged.write(QByteArray(4096, 'x'));
    damaged.close();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("damaged-"));
    recorder.record(numbered(2));
    QCOMPARE(recorded(), numbers(2, 2));
}

void tst_recordfaults::folderIsRemovedWhileTheCellRuns()
{
    StationDB database(file());
    QVERIFY(database.initialise());
    ResultRecorder recorder(database, fastRules());
    recorder.record(numbered(1));
    QVERIFY(QDir(folder()).removeRecursively());
    recorder.record(numbered(2));
    recorder.record(numbered(3));
    QCOMPARE(recorded(), numbers(2, 3));
}

void tst_recordfaults::anotherProgramWritesForAWhile()
{
    StationDB database(file());
    QVERIFY(database.initialise());
    const QDateTime noon(QDate(2024, 5, 1), QTime(12, 0));
    ResultRecorder::Rules rules = fastRules();
    rules.clock = [noon] { return noon; };
    ResultRecorder recorder(database, rules);
    OtherProgram other(file());
    QVERIFY(other.run("BEGIN IMMEDIATE"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Pellix\\.db"));
    recorder.record(numbered(1));
    recorder.record(numbered(2));
    QCOMPARE(recorder.waiting(), 2);
    QVERIFY(other.run("COMMIT"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("2"));
    QTRY_COMPARE(recorder.waiting(), 0);
    recorder.record(numbered(3));
    QCOMPARE(recorded(), numbers(1, 3));
    QCOMPARE(other.value("select time from RltTable where value3 = '1'"), QString("2024-05-01 12:00:00 000"));
}

void tst_recordfaults::engineTipHoldsAnApostrophe()
{
    StationDB database(file());
    QVERIFY(database.initialise());
    ResultRecorder recorder(database);
    StationResult result = numbered(1);
    result.resultTip = "can't\nsee";
    recorder.record(result);
    QCOMPARE(OtherProgram(file()).value("select resultTip from RltTable"), QStringLiteral("can\u2019t see"));
}

void tst_recordfaults::databaseCannotBeOpenedForAWhile()
{
    QVERIFY(QDir().rmdir(folder()));
    QFile inTheWay(folder());
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    s_warnings = 0;
    const auto previous = qInstallMessageHandler(countWarnings);
    StationDB database(file());
    const bool opened = database.initialise();
    ResultRecorder recorder(database, fastRules());
    for (int i = 1; i <= 3; ++i)
        recorder.record(numbered(i));
    const QSignalSpy retried(&recorder, &ResultRecorder::retried);
    QTRY_VERIFY(retried.count() > 5);
    const int warnings = s_warnings;
    QVERIFY(inTheWay.remove());
    QTRY_COMPARE(recorder.waiting(), 0);
    qInstallMessageHandler(previous);
    QVERIFY(!opened);
    QCOMPARE(warnings, 2); // the file, and that rows wait
    QCOMPARE(recorded(), numbers(1, 3));
}

void tst_recordfaults::diskFillsUpAndIsEmptied()
{
    SmallDisk disk(4);
    if (!disk.isMounted())
        QSKIP("a small disk cannot be mounted here");
    const QString path = disk.path() + "/Pellix.db";
    StationDB database(path);
    QVERIFY(database.initialise());
    ResultRecorder recorder(database, fastRules());
    recorder.record(numbered(1));
    disk.fill();
    s_warnings = 0;
    const auto previous = qInstallMessageHandler(countWarnings);
    int number = 1;
    while (recorder.waiting() < 50)
        recorder.record(numbered(++number));
    qInstallMessageHandler(previous);
    QCOMPARE(s_warnings, 1);
    disk.empty();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("50"));
    QTRY_COMPARE(recorder.waiting(), 0);
    OtherProgram other(path);
    QCOMPARE(other.column("select value3 from RltTable order by uid"), numbers(1, number));
    QCOMPARE(other.value("PRAGMA integrity_check"), QString("ok"));
}

void tst_recordfaults::diskBecomesReadOnlyAndBack()
{
    SmallDisk disk(4);
    if (!disk.isMounted())
        QSKIP("a small disk cannot be mounted here");
    const QString path = disk.path() + "/Pellix.db";
    {
        StationDB database(path);
        QVERIFY(database.initialise());
        QVERIFY(database.insertResult(numbered(1)));
    }
    QVERIFY(disk.setReadOnly(true));
    s_warnings = 0;
    const auto previous = qInstallMessageHandler(countWarnings);
    StationDB database(path);
    const bool opened = database.initialise();
    ResultRecorder recorder(database, fastRules());
    recorder.record(numbered(2));
    const QSignalSpy retried(&recorder, &ResultRecorder::retried);
    QTRY_VERIFY(retried.count() > 5);
    qInstallMessageHandler(previous);
    QVERIFY(!opened);
    QVERIFY2(s_warnings <= 3, qPrintable(QString::number(s_warnings)));
    QVERIFY(disk.setReadOnly(false));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("1"));
    QTRY_COMPARE(recorder.waiting(), 0);
    QCOMPARE(OtherProgram(path).column("select value3 from RltTable order by uid"), numbers(1, 2));
}

void tst_recordfaults::oldestRowsAreGivenUpBeyondTheLimit()
{
    StationDB database(file());
    QVERIFY(database.initialise());
    ResultRecorder::Rules rules = fastRules();
    rules.maxWaiting = 3;
    ResultRecorder recorder(database, rules);
    OtherProgram other(file());
    QVERIFY(other.run("BEGIN IMMEDIATE"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Pellix\\.db"));
    for (int i = 1; i <= 5; ++i)
        recorder.record(numbered(i));
    QCOMPARE(recorder.givenUp(), 2);
    QVERIFY(other.run("ROLLBACK"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("5.*2"));
    QTRY_COMPARE(recorder.waiting(), 0);
    QCOMPARE(recorded(), numbers(3, 5));
}

void tst_recordfaults::clockIsSetBackAnHour()
{
    StationDB database(file());
    QVERIFY(database.initialise());
    QDateTime now(QDate(2024, 5, 1), QTime(12, 0));
    ResultRecorder::Rules rules;
    rules.clock = [&now] { return now; };
    ResultRecorder recorder(database, rules);
    recorder.record(numbered(1));
    now = now.addSecs(-3600);
    recorder.record(numbered(2));
    OtherProgram other(file());
    QCOMPARE(other.column("select value3 from RltTable order by uid"), numbers(1, 2));
    QCOMPARE(other.column("select value3 from RltTable order by time"), (QStringList{"2", "1"}));
}

void tst_recordfaults::processIsKilledInMidProductionFiftyTimes()
{
    const QString program = QCoreApplication::applicationDirPath() + "/vc_crashwriter";
    int answered = 0;
    for (int round = 0; round < 50; ++round) {
        QProcess cell;
        cell.start(program, {m_folder->path(), QString::number(answered + 1)});
        QVERIFY(cell.waitForStarted());
        // Each line is the number of a part that the PLC has its answer for.
        const int partsOfRound = 1 + round * 7 % 40;
        for (int parts = 0; parts < partsOfRound;) {
            QVERIFY(cell.canReadLine() || cell.waitForReadyRead());
            for (; cell.canReadLine(); ++parts)
                answered = cell.readLine().trimmed().toInt();
        }
        cell.kill();
        QVERIFY(cell.waitForFinished());
        while (cell.canReadLine())
            answered = cell.readLine().trimmed().toInt();

        OtherProgram other(file());
        QCOMPARE(other.value("PRAGMA integrity_check"), QString("ok"));
        const int last = other.value("select max(cast(value3 as integer)) from RltTable").toInt();
        QVERIFY2(last == answered || last == answered - 1, qPrintable(QString("%1 of %2").arg(last).arg(answered)));
        QCOMPARE(other.value("select count(*) from RltTable").toInt(), last);
        answered = last;
    }
    int images = 0;
    for (QDirIterator files(m_folder->path(), {"*.jpg"}, QDir::Files, QDirIterator::Subdirectories); files.hasNext();
         ++images) {
        const QString path = files.next();
        QVERIFY2(!QImage(path).isNull(), qPrintable(path));
    }
    QVERIFY(images > 0);
}

QTEST_GUILESS_MAIN(tst_recordfaults)
#include "tst_recordfaults.moc"
