#include "db/archive/FolderSweep.h"
#include "db/archive/QDiskCleanThread.h"
#include "platform/System.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"

namespace {

QStringList hiddenToo(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

/// Files are made now; the cleaner's clock runs ahead.
class DiskCleanerTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_root.reset(new QTemporaryDir(QDir::tempPath() + QStringLiteral("/图像-XXXXXX")));
        m_freeMiB = 10 * 1024;
    }

    void oldFilesGoOnceThereAreMoreThanTen()
    {
        makeFiles("2024-05-02", names(5, ".txt"));
        makeFiles(QStringLiteral("2024-05-01/轮毂"), names(5, ".jpg"));
        QDiskCleanThread& cleaner = prepared(QDiskCleanThread::Files, 7);
        cleaner.setAgeLimit(7);
        cleaner.setAgeCleaning(true);
        cleaner.pass(); // ten
        makeFiles(QStringLiteral("2024-05-01/轮毂"), {"eleventh.jpg"});
        cleaner.setAgeCleaning(false);
        cleaner.pass();
        cleaner.setAgeCleaning(true);
        cleaner.setAgeLimit(8);
        cleaner.pass(); // they are younger
        QCOMPARE(hiddenToo(m_root->filePath("2024-05-02")).size(), 5);
        cleaner.setAgeLimit(0); // counts as 3
        cleaner.pass();
        QVERIFY(hiddenToo(m_root->filePath("2024-05-02")).isEmpty());
        QCOMPARE(hiddenToo(m_root->path()), (QStringList{"2024-05-01", "2024-05-02"}));
    }

    void oldestImagesGoWhenSpaceIsLow()
    {
        makeFiles("a", {"x.JPG", "y.bmp", "z.Png", "x.jpeg", "notes.txt", "jpg"});
        makeFiles("b", names(700, ".jpg"));
        m_freeMiB = 10 * 1024 - 1;
        QDiskCleanThread& cleaner = prepared(QDiskCleanThread::Files, 0);
        QTest::ignoreMessage(QtWarningMsg, "Delete Imgs  Finish...");
        cleaner.pass();
        QCOMPARE(hiddenToo(m_root->filePath("a")), (QStringList{"jpg", "notes.txt", "x.jpeg"}));
        QCOMPARE(hiddenToo(m_root->filePath("b")).size(), 106); // 600 less the six of the other folder
    }

    void datedFoldersGoByAge_data()
    {
        Table::of<int, int, bool>({{"a week", 7, 7, true},
                                   {"a day less", 7, 6, false},
                                   {"no limit is three days", 0, 3, true},
                                   {"no limit, two days", -5, 2, false}});
    }
    void datedFoldersGoByAge()
    {
        const auto [limit, daysAhead, gone] = Table::row<int, int, bool>();
        makeDay("2024-05-01");
        makeFiles(".", {"beside.jpg"});
        QDiskCleanThread& cleaner = prepared(QDiskCleanThread::Folders, daysAhead);
        cleaner.setAgeCleaning(true);
        cleaner.setAgeLimit(limit);
        cleaner.pass();
        QCOMPARE(!QDir(m_root->filePath("2024-05-01")).exists(), gone);
        QVERIFY(QFile::exists(m_root->filePath("beside.jpg")));
    }

    void whatTheArchiveDidNotMakeStays()
    {
        const QString image = QStringLiteral("2024_05_01_123456789.jpg");
        makeDay("2024-05-01");
        const QStringList kept{"golden samples/2024-05-01/Station1/W18/" + image,
                               "2024-05-01x/Station1/W18/" + image,
                               "2024-13-01/Station1/W18/" + image,
                               "2024-05-02/Station1/W18/golden.jpg",
                               "2024-05-02/Station1/W18/best/" + image,
                               "2024-05-02/Station3/W18/" + image,
                               "2024-05-02/" + image,
                               "2024-05-02/.notes.txt"};
        for (const QString& path : kept)
            makeFiles(QFileInfo(path).path(), {QFileInfo(path).fileName()});
        makeDay("2024-05-02");
        m_freeMiB = 0;
        prepared(QDiskCleanThread::Folders, 100).pass();
        QVERIFY(!QDir(m_root->filePath("2024-05-01")).exists());
        QStringList left;
        QDirIterator files(m_root->path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext())
            left << QDir(m_root->path()).relativeFilePath(files.next());
        left.sort();
        QStringList expected = kept;
        expected.sort();
        QCOMPARE(left, expected);
    }

    void clockThatJumpsStopsCleaningByAgeUntilItIsAccepted()
    {
        makeDay("2024-05-01");
        ManualScheduler clock(QDateTime::currentDateTime());
        QDiskCleanThread& cleaner = prepared(QDiskCleanThread::Folders, 0);
        cleaner.setScheduler(clock);
        cleaner.setAgeCleaning(true);
        cleaner.setAgeLimit(30);
        const auto passes = [&] {
            for (int second = 0; second < 4; ++second) {
                clock.advance(1000);
                cleaner.pass();
            }
            return QDir(m_root->filePath("2024-05-01")).exists();
        };
        QVERIFY(passes() && !cleaner.clock().jump().isValid());
        clock.setClock(clock.now().addSecs(240)); // as a time service does
        QVERIFY(passes() && !cleaner.clock().jump().isValid());
        clock.setClock(clock.now().addDays(31));
        QVERIFY(passes() && cleaner.clock().jump() > clock.now().addSecs(-10));
        m_freeMiB = 0; // nor does low space let anything go by a clock that may be wrong
        QVERIFY(passes());
        cleaner.clock().accept();
        QVERIFY(!passes() && !cleaner.clock().jump().isValid());
    }

    void changedLimitsCountFromTheNextPass()
    {
        makeDay("2024-05-01");
        QDiskCleanThread& cleaner = prepared(QDiskCleanThread::Folders, 20);
        cleaner.pass(); // age cleaning is off
        cleaner.setAgeCleaning(true);
        cleaner.setAgeLimit(30);
        cleaner.pass();
        cleaner.change(false, 7, 10);
        cleaner.pass();
        QVERIFY(QDir(m_root->filePath("2024-05-01")).exists());
        cleaner.change(true, 7, 10);
        cleaner.pass();
        QVERIFY(hiddenToo(m_root->path()).isEmpty());
    }

    void lowSpaceOverridesTheSettingForGood()
    {
        QDiskCleanThread& cleaner = prepared(QDiskCleanThread::Folders, 1);
        cleaner.setAgeLimit(30);
        m_freeMiB = 10 * 1024 - 1;
        cleaner.pass();
        QVERIFY(cleaner.isKeepingShortened());
        m_freeMiB = 100 * 1024; // space is back, the override stays
        cleaner.change(false, 30, 10);
        makeDay("2024-05-01");
        cleaner.pass();
        QVERIFY(hiddenToo(m_root->path()).isEmpty());
    }

    void unknownSpaceCountsAsNone()
    {
        makeDay("2024-05-01");
        QDiskCleanThread& cleaner = prepared(QDiskCleanThread::Folders, 1);
        m_freeMiB = -1;
        QTest::ignoreMessage(QtWarningMsg, "ERROR: Call to GetDiskFreeSpaceEx() failed.");
        cleaner.pass();
        QVERIFY(hiddenToo(m_root->path()).isEmpty());
        cleaner.pass(); // not logged again
    }

#ifdef Q_OS_UNIX // elsewhere Qt makes shortcuts, which are files
    void linksAreNeverFollowed_data()
    {
        Table::of<int>({{"files", int(QDiskCleanThread::Files)}, {"folders", int(QDiskCleanThread::Folders)}});
    }
    void linksAreNeverFollowed()
    {
        const auto [mode] = Table::row<int>();
        const QTemporaryDir outside;
        for (int i = 0; i < 20; ++i)
            QVERIFY(
                QFile(outside.filePath(QString("2024_05_01_1234567%1.jpg").arg(i + 10))).open(QIODevice::WriteOnly));
        makeFiles("2024-05-01/Station1", names(20, ".jpg"));
        makeDay("2024-05-01");
        QVERIFY(QFile::link(outside.path(), m_root->filePath("linked")));
        QVERIFY(QFile::link(outside.path(), m_root->filePath("2024-05-01/Station2")));
        QVERIFY(QFile::link(outside.path(), m_root->filePath("2024-05-01/Station1/linked")));
        QVERIFY(QFile::link(outside.path(), m_root->filePath("2024-05-02")));
        QVERIFY(QFile::link(outside.path(), m_root->filePath("2024-05-01/linked")));
        QVERIFY(QFile::link(outside.filePath("2024_05_01_123456710.jpg"),
                            m_root->filePath("2024-05-01/Station1/linked.jpg")));
        QVERIFY(QFile::link(m_root->path(), m_root->filePath("2024-05-01/round")));
        m_freeMiB = 0;
        QDiskCleanThread& cleaner = prepared(mode, 100);
        if (mode == QDiskCleanThread::Files)
            QTest::ignoreMessage(QtWarningMsg, "Delete Imgs  Finish...");
        cleaner.pass();
        QCOMPARE(hiddenToo(outside.path()).size(), 20);
        QVERIFY(QFileInfo(m_root->filePath("linked")).isSymLink());
        QVERIFY(!QFile::exists(m_root->filePath("2024-05-01/Station1/W18/2024_05_01_123456789.jpg")));
    }
#endif

    void nothingIsCleanedWithoutARoot()
    {
        makeFiles("2024-05-01", names(20, ".jpg"));
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_root->path()));
        const QDateTime future = QDateTime::currentDateTime().addYears(1);
        const auto never = [] { return false; };
        for (const char* root : {"", "/no/such/folder"}) {
            QCOMPARE(FolderSweep::deleteFilesBefore(root, future, never), 0);
            QCOMPARE(FolderSweep::deleteOldestImages(root, never), 0);
            QCOMPARE(FolderSweep::deleteFoldersBefore(root, future, never), 0);
        }
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(FolderSweep::deleteFoldersBefore(m_root->path(), future, [] { return true; }), 0);
        QCOMPARE(hiddenToo(m_root->filePath("2024-05-01")).size(), 20);
    }

    void cleanerRunsBesideTheCellAndStopsAtOnce()
    {
        QDiskCleanThread& cleaner = prepared(QDiskCleanThread::Folders, 8);
        cleaner.setAgeCleaning(true);
        makeDay("2024-05-01");
        cleaner.start();
        QTRY_VERIFY(hiddenToo(m_root->path()).isEmpty());
        makeDay("2024-05-02"); // for a second pass
        QTRY_VERIFY(hiddenToo(m_root->path()).isEmpty());
        cleaner.stop();
        QVERIFY(cleaner.wait(10000));
    }

    void freeSpaceIsThatOfTheRootsDisk()
    {
        const qint64 free = platform::freeSpaceMiB(m_root->path());
        QVERIFY(free >= 0 && qAbs(platform::freeSpaceMiB(m_root->path() + "/not/there/yet") - free) < 1024);
        QCOMPARE(platform::freeSpaceMiB(""), qint64(-1));
    }

private:
    void makeFiles(const QString& folder, const QStringList& names)
    {
        QVERIFY(QDir().mkpath(m_root->filePath(folder)));
        for (const QString& name : names)
            QVERIFY(QFile(m_root->filePath(folder + "/" + name)).open(QIODevice::WriteOnly));
    }
    /// As the archive makes it: two images, one of which was being written when the power failed.
    void makeDay(const QString& day)
    {
        makeFiles(day + "/Station1/W18",
                  {"2024_05_01_123456789.jpg", "2024_05_01_123456789_12.jpg", "2024_05_01_123456790.jpg.aBcDeF"});
    }
    QStringList names(int count, const QString& suffix)
    {
        QStringList all;
        for (int i = 0; i < count; ++i)
            all << QString("%1%2").arg(i, 4, 10, QChar('0')).arg(suffix);
        return all;
    }
    QDiskCleanThread& prepared(int mode, int daysAhead)
    {
        m_cleaner.reset(new QDiskCleanThread);
        m_cleaner->setMode(mode);
        m_cleaner->setRootPath(m_root->path() + "/");
        m_cleaner->setMinFreeSpace(10);
        m_clock.set(QDateTime::currentDateTime().addDays(daysAhead).addSecs(60));
        m_cleaner->setScheduler(m_clock);
        m_cleaner->setFreeSpaceProbe([this](const QString&) { return m_freeMiB.load(); });
        return *m_cleaner;
    }
    QScopedPointer<QTemporaryDir> m_root;
    SetClock m_clock{QDateTime::currentDateTime()};
    QScopedPointer<QDiskCleanThread> m_cleaner;
    std::atomic<qint64> m_freeMiB{0}; // the cleaner asks on its thread
};

QTEST_GUILESS_MAIN(DiskCleanerTest)
#include "tst_diskcleaner.moc"
