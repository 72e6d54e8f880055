#include "OtherProgram.h"
#include "db/log/LogLine.h"
#include "db/log/ksSysLog.h"
#include "support/Table.h"

#include <thread>

using namespace SystemLog;

namespace {

QList<QPair<int, QByteArray>> s_lines;

void collect(int type, const char* message, int length)
{
    s_lines.append({type, QByteArray(message, length)});
}

QByteArray textOf(const QByteArray& line)
{
    return line.mid(20);
}

} // namespace

class SystemLogTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        s_lines.clear();
        setOutput(collect);
        setLevel(Trace);
    }

    void lineBeginsWithTheTimeAndCarriesWhatIsStreamed()
    {
        const QString form = QStringLiteral("yyyy-MM-dd hh:mm:ss");
        const QDateTime before = QDateTime::fromString(QDateTime::currentDateTime().toString(form), form);
        LogLine(Information).stream() << -7 << ' ' << 0U << ' ' << std::numeric_limits<long long>::min() << ' ' << ~0ULL
                                      << ' ' << 1.0 / 3 << ' ' << 1e20 << ' ' << true << ' '
                                      << reinterpret_cast<void*>(0xbeef) << ' ' << QStringLiteral("工位1")
                                      << std::string("!");
        QCOMPARE(s_lines.size(), 1);
        QCOMPARE(s_lines[0].first, 2);
        const QDateTime time = QDateTime::fromString(QString::fromUtf8(s_lines[0].second.left(19)), form);
        QVERIFY(time >= before && time <= QDateTime::currentDateTime());
        QCOMPARE(textOf(s_lines[0].second), QByteArray("-7 0 -9223372036854775808 18446744073709551615 0.333333333333 "
                                                       "1e+20 1 0xbeef 工位1!"));
    }

    void overlongLineIsCutAtAWholeCharacter()
    {
        information(QString(3000, QChar(0x5de5)));
        const QByteArray line = s_lines.value(0).second;
        QVERIFY(line.size() > 3990 && line.size() <= 4000);
        const QString text = QString::fromUtf8(textOf(line));
        QCOMPARE(text, QString(text.size(), QChar(0x5de5)));
    }

    void linesAboveTheLevelAreNotWritten()
    {
        qputenv("MUDUO_LOG_TRACE", "1");
        QCOMPARE(level(), 4);
        setLevel(Warning);
        information("no");
        QTest::ignoreMessage(QtWarningMsg, "yes");
        SystemLog::warning("yes");
        QCOMPARE(s_lines.size(), 1);
        QCOMPARE(textOf(s_lines[0].second), QByteArray("yes"));
    }

    void linesAreReadBackByDayAndType()
    {
        ksLogDB log(file());
        log.setPause(1);
        log.start();
        for (const char* text : {"系统启动", "one", "two"})
            log.append(2, text, static_cast<int>(strlen(text)));
        log.append(1, "other", 5);
        QTRY_COMPARE(messages(1), QStringList{"other"});
        QCOMPARE(messages(2), (QStringList{QStringLiteral("系统启动"), "one", "two"}));
        QVERIFY(log.query("2000-01-01", "2000-01-02", 2).isEmpty());
        QVERIFY(ksLogDB(m_folder->filePath("other.db")).query("it's", "", 2).isEmpty());
    }

    void logStaysWhereItBeganWhenTheWorkingDirectoryChanges()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_folder->path()));
        ksLogDB log;
        QVERIFY(QDir::setCurrent(before));
        log.setPause(1);
        log.start();
        log.append(1, "here", 4);
        QTRY_COMPARE(messages(1), QStringList{"here"});
        QVERIFY(!log.query("2000-01-01", "2999-12-31", 1).isEmpty());
    }

    void entriesOfTheFirstAndTheLastSecondAreNotReturned()
    {
        const ksLogDB log(file());
        OtherProgram other(file());
        for (const char* time : {"00:00:00", "00:00:01", "23:59:58", "23:59:59"})
            other.run(QStringLiteral("insert into SystemInfo(datetime, type, message) values('2024-05-01 %1', 2, '%1')")
                          .arg(time));
        const QList<QPair<QString, QString>> expected{{"2024-05-01 00:00:01", "00:00:01"},
                                                      {"2024-05-01 23:59:58", "23:59:58"}};
        QCOMPARE(log.query("2024-05-01", "2024-05-01", 2), expected);
    }

    void apostropheCostsARowButNoLine()
    {
        ksLogDB log(file());
        QVERIFY(!log.insert(2, "can't") && log.insert(2, "can"));
        QCOMPARE(messages(2), QStringList{"can"});
        information("can't");
        QCOMPARE(textOf(s_lines.value(0).second), QByteArray("can`t"));
    }

    void stoppingTakesNoLongerThanThePassInHand()
    {
        ksLogDB log(file());
        log.setPause(3600 * 1000);
        log.start();
        for (int i = 0; i < 3; ++i)
            log.append(2, "line", 4);
        QTRY_COMPARE(messages(2).size(), 1);
        log.stop(); // would take an hour if the pause were slept out
        log.stop();
        QCOMPARE(told(log.waiting(), messages(2).size()), "2|1");
    }

    void burstStaysBoundedAndTheLossIsLogged()
    {
        ksLogDB log(file());
        log.setPause(1);
        log.setLimits({50, 1000});
        for (int i = 0; i < 200; ++i)
            log.append(2, "x", 1);
        QCOMPARE(log.waiting(), 50);
        log.append(2, QByteArray(980, 'y'), 980);
        QCOMPARE(log.waiting(), 21);
        log.start();
        QTRY_COMPARE(log.waiting(), 0);
        QTRY_COMPARE(messages(2).size(), 21);
        QCOMPARE(messages(1).size(), 1);
        QVERIFY(messages(1).first().endsWith(QStringLiteral("日志过多，丢弃了最早的180行")));
    }

    void damagedLogIsKeptAside()
    {
        QFile damaged(file());
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write(QByteArray(5000, 'x'));
        damaged.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("dbLog\\.db.*damaged-"));
        ksLogDB log(file());
        QVERIFY(log.insert(2, "line"));
        QCOMPARE(QDir(m_folder->path()).entryList({"*.damaged-*"}, QDir::Files).size(), 1);
    }

    void logCannotBeMadeAtTheStart()
    {
        OtherProgram other(file());
        QVERIFY(other.run("BEGIN IMMEDIATE"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("dbLog\\.db"));
        ksLogDB log(file());
        log.setPause(1);
        log.start();
        log.append(2, "first", 5);
        log.append(2, "second", 6);
        QTest::qWait(100); // the thread has met the lock
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("dbLog\\.db"));
        QVERIFY(other.run("ROLLBACK"));
        QTRY_COMPARE(messages(2), (QStringList{"first", "second"}));
    }

    void logIsDeletedWhileTheCellRuns()
    {
        ksLogDB log(file());
        log.setPause(1);
        log.start();
        log.append(2, "before", 6);
        QTRY_COMPARE(messages(2), QStringList{"before"});
        for (const char* tail : {"", "-wal", "-shm"})
            QFile::remove(file() + tail);
        const auto logUntilItIsBack = [&log, this] {
            log.append(2, "after", 5);
            return QFile::exists(file()) && !messages(2).isEmpty();
        };
        QTRY_VERIFY(logUntilItIsBack());
    }

    void fourThreadsLogAtOnce()
    {
        QVERIFY(QDir::setCurrent(m_folder->path()));
        ksSysLog* const log = ksSysLog::instance();
        QCOMPARE(ksSysLog::instance(), log);
        log->database().setLimits({1000000, 100000000});
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([i] {
                for (int k = 0; k < 5000; ++k)
                    LogLine(Debug).stream() << i << ' ' << k;
            });
        for (std::thread& thread : threads)
            thread.join();
        QTRY_VERIFY(!messages(Debug).isEmpty());
        log->stop();
        QCOMPARE(log->database().waiting() + messages(Debug).size(), 20000);
    }

private:
    QScopedPointer<QTemporaryDir> m_folder;
    QString file() const { return m_folder->filePath("dbLog.db"); }
    QStringList messages(int type) const
    {
        QStringList texts;
        const auto lines = ksLogDB(file()).query("2000-01-01", "2999-12-31", type);
        for (const auto& line : lines)
            texts << line.second;
        return texts;
    }
};

QTEST_GUILESS_MAIN(SystemLogTest)
#include "tst_systemlog.moc"
