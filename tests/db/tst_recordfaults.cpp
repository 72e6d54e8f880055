#include "OtherProgram.h"
#include "SmallDisk.h"
#include "db/ResultRecorder.h"
#include "platform/System.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"

#include <QImage>

#include <atomic>

#ifdef Q_OS_LINUX
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

const QDateTime noon(QDate(2024, 5, 1), QTime(12, 0));

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

/// A database and its recorder.
struct Recording
{
    explicit Recording(const QString& path, const ResultRecorder::Rules& rules = fastRules())
        : database(path)
        , opened(database.initialise())
        , recorder(database, rules)
    {
    }
    void record(int number) { recorder.record(numbered(number)); }

    StationDB database;
    bool opened;
    ResultRecorder recorder;
};

/// Counts warnings while it lives, since a fault that lasts must not flood the log.
struct Warnings
{
    static inline std::atomic<int> count{0};
    QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext&, const QString&) { count += type == QtWarningMsg ? 1 : 0; });

    Warnings() { count = 0; }
    ~Warnings() { qInstallMessageHandler(previous); }
};

/// While it lives, the test is a user without an administrator's rights, who owns the folder.
class AsUser
{
public:
#ifdef Q_OS_LINUX
    explicit AsUser(const QString& folder)
    {
        constexpr uid_t nobody = 65534;
        const QByteArray above = QFile::encodeName(QFileInfo(folder).path());
        m_isOne = geteuid() == 0 && chmod(above.constData(), 0755) == 0 &&
                  chown(QFile::encodeName(folder).constData(), nobody, nobody) == 0 &&
                  setresuid(nobody, nobody, 0) == 0;
    }
    ~AsUser()
    {
        if (m_isOne && setresuid(0, 0, 0) != 0)
            qFatal("the administrator's rights cannot be had back");
    }
#else
    explicit AsUser(const QString&) {}
#endif
    bool isOne() const
    {
        return m_isOne;
    }

private:
    bool m_isOne = false;
};

} // namespace

/// Recording goes on whatever happens to the file and its disk.
class RecordFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir(QDir::tempPath() + QStringLiteral("/故障-XXXXXX")));
        QDir().mkpath(folder());
    }

    void unfitFileIsKeptAsideAndAFreshOneBegun_data()
    {
        Table::of<QByteArray, QString>({{"noise", QByteArray(20000, 'n'), ""},
                                        {"cut off", QByteArray("SQLite format 3\0 and then nothing", 33), ""},
                                        {"a letter", "Dear plant,", ""},
                                        {"another program's tables", QByteArray(), "create table bookmarks(url)"},
                                        {"another program's mark", QByteArray(), "PRAGMA application_id=1234"},
                                        {"our name, other columns", QByteArray(), "create table RltTable(uid, time)"}});
    }
    void unfitFileIsKeptAsideAndAFreshOneBegun()
    {
        const auto [bytes, sql] = Table::row<QByteArray, QString>();
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
        QVERIFY(database.initialise() && database.insertResult(numbered(1)));
        QCOMPARE(recorded(), numbers(1, 1));
        QCOMPARE(QFileInfo(database.openReport().keptAside).size(), size);
    }

    void aPageIsDamaged_data()
    {
        Table::of<QString, bool, bool>({{"first page", "", false, false},
                                        {"index root", "idx_RltTable", false, false},
                                        {"index leaf", "idx_RltTable", true, false},
                                        {"index leaf, before the start", "idx_RltTable", true, true},
                                        {"key counter", "sqlite_sequence", false, false},
                                        {"key counter, before the start", "sqlite_sequence", false, true}});
    }
    void aPageIsDamaged()
    {
        const auto [name, leaf, restart] = Table::row<QString, bool, bool>();
        auto cell = std::make_unique<Recording>(file());
        for (int i = 1; i <= 400; ++i)
            cell->record(i);
        cell->database.close(); // so that the next row meets the damage
        spoilPage(name, leaf);
        if (restart)
            cell = std::make_unique<Recording>(file());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("damaged-"));
        cell->record(401);
        cell->record(402);
        QCOMPARE(recorded(), numbers(401, 402));
        const QFileInfoList aside = QDir(folder()).entryInfoList({"*.damaged-*"}, QDir::Files);
        QCOMPARE(aside.size(), 1);
        const QString recovered = m_folder->filePath("recovered.db");
        if (name.isEmpty())
            return; // nothing is left to be recovered
        if (QStandardPaths::findExecutable("python3").isEmpty())
            QSKIP("no Python, which recovers what a damaged file holds");
        QProcess::execute("python3", {QFINDTESTDATA("../../scripts/recover"), aside[0].filePath(), recovered});
        QCOMPARE(OtherProgram(recovered).column("select value3 from RltTable order by uid"), numbers(1, 400));
    }

    void databaseCannotBeWrittenForAWhile_data()
    {
        Table::of<QByteArray, bool, int>({{"locked at the start", "lock", false, 4},
                                          {"folder is a file at the start", "file", false, 4},
                                          {"rights are taken away", "rights", false, 4},
                                          {"disk is full at the start", "full", false, 4},
                                          {"disk is read-only at the start", "read-only", false, 4},
                                          {"disk is full", "full", true, 2}});
    }
    void databaseCannotBeWrittenForAWhile()
    {
        const auto [fault, running, warned] = Table::row<QByteArray, bool, int>();
        const bool onDisk = fault == "full" || fault == "read-only";
        SmallDisk disk(4);
        if (onDisk && !disk.isMounted())
            QSKIP("a small disk cannot be mounted here");
        std::optional<AsUser> user;
        if (fault == "rights" && !user.emplace(folder()).isOne()) // an administrator may write everything
            QSKIP("only an administrator can be another user");
        const QString path = onDisk ? disk.path() + "/Pellix.db" : file();
        std::unique_ptr<Recording> cell;
        if (running || fault == "rights" || fault == "read-only")
            Recording(path).record(0);
        if (running)
            cell = std::make_unique<Recording>(path);
        std::optional<OtherProgram> other;
        QFile inTheWay(folder());
        if (fault == "lock")
            QVERIFY(other.emplace(path).run("BEGIN IMMEDIATE"));
        else if (fault == "file")
            QVERIFY(QDir().rmdir(folder()) && inTheWay.open(QIODevice::WriteOnly));
        else if (fault == "rights")
            QVERIFY(QFile::setPermissions(file(), QFile::ReadOwner) &&
                    QFile::setPermissions(folder(), QFile::ReadOwner | QFile::ExeOwner));
        else
            fault == "full" ? disk.fill() : void(disk.setReadOnly(true));

        const Warnings warnings;
        if (!running)
            cell = std::make_unique<Recording>(path);
        QCOMPARE(cell->opened, running);
        const QSignalSpy retried(&cell->recorder, &ResultRecorder::retried);
        int last = 0;
        while (cell->recorder.waiting() < (running ? 50 : 3))
            cell->record(++last);
        QTRY_VERIFY(retried.count() > 20);
        QCOMPARE(int(warnings.count), warned / 2); // the file, and that rows wait

        if (fault == "lock")
            QVERIFY(other->run("ROLLBACK"));
        else if (fault == "file")
            QVERIFY(inTheWay.remove());
        else if (fault == "rights")
            QVERIFY(QFile::setPermissions(folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner) &&
                    QFile::setPermissions(file(), QFile::ReadOwner | QFile::WriteOwner));
        else
            fault == "full" ? disk.empty() : void(disk.setReadOnly(false));
        QTRY_COMPARE(cell->recorder.waiting(), 0);
        QCOMPARE(int(warnings.count), warned);
        OtherProgram reader(path);
        const int first = reader.value("select min(uid) from RltTable where value3 = '0'").isEmpty() ? 1 : 0;
        QCOMPARE(reader.column("select value3 from RltTable order by uid"), numbers(first, last));
        QCOMPARE(reader.value("select count(*) from sqlite_master where name = 'idx_RltTable'"), QString("1"));
        QCOMPARE(told(reader.value("PRAGMA journal_mode"), reader.value("PRAGMA integrity_check")), "wal|ok");
    }

    void folderIsRemovedWhileTheCellRuns()
    {
        Recording cell(file());
        cell.record(1);
        QVERIFY(QDir(folder()).removeRecursively());
        cell.record(2);
        cell.record(3);
        QCOMPARE(recorded(), numbers(2, 3));
    }

    void anotherFileTakesItsNameWhileTheCellRuns()
    {
        const QString earlier = folder() + "/earlier.db";
        Recording(earlier).record(7);
        Recording cell(file());
        cell.record(1);
        QVERIFY(QFile::remove(file()) && QFile::rename(earlier, file())); // and the log of the first lies beside it
        cell.record(2);
        QCOMPARE(recorded(), QStringList({"7", "2"}));
    }

    void rowsOfOneMomentThatLookAlikeAllOutliveARestart()
    {
        ResultRecorder::Rules rules = fastRules();
        SetClock clock(noon);
        rules.scheduler = &clock;
        {
            OtherProgram other(file());
            Recording cell(file(), rules);
            cell.record(1);
            QVERIFY(other.run("BEGIN IMMEDIATE"));
            cell.record(1);
            cell.record(1);
        }
        Recording cell(file(), rules);
        QTRY_COMPARE(cell.recorder.waiting(), 0);
        QCOMPARE(recorded(), QStringList({"1", "1", "1"}));
    }

    void anotherProgramWritesForAWhile()
    {
        ResultRecorder::Rules rules = fastRules();
        SetClock clock(noon);
        rules.scheduler = &clock;
        Recording cell(file(), rules);
        OtherProgram other(file());
        QVERIFY(other.run("BEGIN IMMEDIATE"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Pellix\\.db"));
        cell.record(1);
        cell.record(2);
        QCOMPARE(cell.recorder.waiting(), 2);
        QVERIFY(other.run("COMMIT"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("2"));
        QTRY_COMPARE(cell.recorder.waiting(), 0);
        cell.record(3);
        QCOMPARE(recorded(), numbers(1, 3));
        QCOMPARE(other.value("select time from RltTable where value3 = '1'"), QString("2024-05-01 12:00:00 000"));
    }

    void engineTipHoldsAnApostrophe()
    {
        Recording cell(file());
        StationResult result = numbered(1);
        result.resultTip = "can't\nsee";
        cell.recorder.record(result);
        QCOMPARE(OtherProgram(file()).value("select resultTip from RltTable"), QStringLiteral("can\u2019t see"));
    }

    void fileWhoseLogCannotBeWrittenIsWaitedFor_data() { Table::of<QString>({{"log", "-wal"}, {"index", "-shm"}}); }
    void fileWhoseLogCannotBeWrittenIsWaitedFor()
    {
        const auto [tail] = Table::row<QString>();
        const AsUser user(folder());
        if (!user.isOne())
            QSKIP("only an administrator can be another user");
        {
            Recording crashed(folder() + "/crashed.db");
            crashed.record(1);
            QTRY_COMPARE(crashed.recorder.waiting(), 0);
            for (const char* part : {"", "-wal", "-shm"})
                QVERIFY(QFile::copy(folder() + "/crashed.db" + part, file() + part));
        }
        QFile log(file() + tail);
        QVERIFY(log.setPermissions(QFile::ReadOwner));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("没有权限写入文件.*Pellix\\.db" + tail));
        Recording cell(file());
        cell.record(2);
        QCOMPARE(cell.recorder.waiting(), 1);
        QVERIFY(cell.database.keptAside().isEmpty());
        QVERIFY(log.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
        QTRY_COMPARE(cell.recorder.waiting(), 0);
        QCOMPARE(recorded(), numbers(1, 2));
    }

    void oldestRowsAreGivenUpBeyondTheLimit()
    {
        ResultRecorder::Rules rules = fastRules();
        rules.maxWaiting = 3;
        Recording cell(file(), rules);
        OtherProgram other(file());
        QVERIFY(other.run("BEGIN IMMEDIATE"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Pellix\\.db"));
        for (int i = 1; i <= 5; ++i)
            cell.record(i);
        QCOMPARE(cell.recorder.givenUp(), 2);
        QVERIFY(other.run("ROLLBACK"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("5.*2"));
        QTRY_COMPARE(cell.recorder.waiting(), 0);
        QCOMPARE(recorded(), numbers(3, 5));
    }

    void rowsThatWaitAtTheEndGoInAtTheNextStart()
    {
        const QString spill = file() + ".waiting.json";
        Recording(file()).record(1);
        {
            OtherProgram other(file());
            QVERIFY(other.run("BEGIN IMMEDIATE"));
            Recording(file()).record(2);
            Recording(file()).record(3); // behind the row of the start before
        }
        QVERIFY(QFile::copy(spill, file() + ".copy"));
        for (int next = 4; next <= 5; ++next) {
            Recording cell(file());
            cell.record(next);
            QTRY_COMPARE(cell.recorder.waiting(), 0);
            QCOMPARE(recorded(), numbers(1, next));
            QVERIFY(!QFile::exists(spill));
            QFile::rename(file() + ".copy", spill); // as if the program had died before it removed the file
        }
    }

    void rowsThatWaitOutliveTheProcess_data()
    {
        Table::of<QByteArray, QByteArray, QStringList>({{"killed", "", "", numbers(1, 4)},
                                                        {"while it wrote", "\"4\"}\n", "\"4", numbers(1, 3)},
                                                        {"spoiled", "\"3\"}\n", "\"3\n", {"1", "2", "4"}}});
    }
    void rowsThatWaitOutliveTheProcess()
    {
        const auto [written, found, rows] = Table::row<QByteArray, QByteArray, QStringList>();
        Recording cell(file());
        cell.record(1);
        OtherProgram other(file());
        QVERIFY(other.run("BEGIN IMMEDIATE"));
        for (int i = 2; i <= 4; ++i)
            cell.record(i);
        const QString name = "/Pellix.db", after = m_folder->filePath("after");
        QDir().mkpath(after);
        for (const char* tail : {"", "-wal", ".waiting.json"}) // as they lie there when the process is killed
            QVERIFY(QFile::copy(file() + tail, after + name + tail));
        QFile left(after + name + ".waiting.json");
        QVERIFY(left.open(QIODevice::ReadWrite));
        const QByteArray content = left.readAll().replace(written, found);
        QVERIFY(left.resize(0) && left.seek(0) && left.write(content) == content.size());
        left.close();
        Recording next(after + name);
        QTRY_COMPARE(next.recorder.waiting(), 0);
        QCOMPARE(OtherProgram(after + name).column("select value3 from RltTable order by uid"), rows);
        QCOMPARE(QDir(after).entryList({"*.damaged-*"}).size(), int(rows.last() == "4" && rows.size() == 3));
    }

    void everyRowIsFlushedToTheDiskBesideTheCell()
    {
        std::atomic<int> flushes{0};
        Recording cell(file());
        cell.database.setFlush([&](const QString& path) {
            flushes += path == file() + "-wal" ? 1 : 0;
            return platform::flushFile(path);
        });
        cell.record(1);
        QTRY_COMPARE(int(flushes), 1);
        cell.record(2);
        cell.database.close(); // at the latest
        QCOMPARE(int(flushes), 2);
    }

    void flushThatFailsIsToldAndTriedAgain()
    {
        const Warnings warnings;
        std::atomic<int> tries{0};
        Recording cell(file());
        cell.database.setFlush([&](const QString& path) { return ++tries > 3 && platform::flushFile(path); });
        cell.record(1);
        QTRY_COMPARE(int(tries), 4);
        QTRY_COMPARE(int(warnings.count), 2); // that it fails, and that it is over
        cell.database.setFlush([&](const QString&) { return false; });
        cell.database.close();
        QVERIFY(cell.database.open());
        cell.record(2);
        cell.database.close(); // which ends, all the same
        QCOMPARE(int(warnings.count), 3);
    }

    void processIsKilledInMidProductionFiftyTimes()
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
        for (QDirIterator files(m_folder->path(), {"*.jpg"}, QDir::Files, QDirIterator::Subdirectories);
             files.hasNext(); ++images) {
            const QString path = files.next();
            QVERIFY2(!QImage(path).isNull(), qPrintable(path));
        }
        QVERIFY(images > 0);
    }

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QString folder() const { return m_folder->filePath("DBFiles"); }
    QString file() const { return folder() + "/Pellix.db"; }
    /// Overwrites the root page of a table or an index, or the page to which its next entry goes; the file's first
    /// page.
    void spoilPage(const QString& name, bool leaf) const
    {
        const auto number = [this, &name](const char* sql) {
            return OtherProgram(file()).value(QString(sql).arg(name)).toLongLong();
        };
        const qint64 pageSize = number("PRAGMA page_size /* %1 */");
        qint64 page = name.isEmpty() ? 1 : number("select rootpage from sqlite_master where name = '%1'");
        QFile damaged(file());
        QVERIFY(page > 0 && damaged.open(QIODevice::ReadWrite));
        if (leaf) {
            QVERIFY(damaged.seek((page - 1) * pageSize + 8)); // an interior page's rightmost child
            page = qFromBigEndian<quint32>(damaged.read(4).constData());
        }
        QVERIFY(damaged.seek((page - 1) * pageSize));
        QCOMPARE(damaged.write(QByteArray(int(pageSize), 'x')), pageSize);
    }
    QStringList recorded() const { return OtherProgram(file()).column("select value3 from RltTable order by uid"); }
};

QTEST_GUILESS_MAIN(RecordFaultsTest)
#include "tst_recordfaults.moc"
