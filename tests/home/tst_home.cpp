// What a plant stands on after its computer broke: homes that are backed up while they run, and come back whole.

#include "db/SmallDisk.h"
#include "home/HomeLock.h"
#include "home/HomeVersion.h"
#include "home/Restore.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <valvecell/HomeFiles.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <thread>

namespace {

const auto everything = HomeParts::Set(QFlag(HomeParts::everything));

/// Files of a running cell, each with its own content; the database has rows that lie in its log alone.
struct RunningHome
{
    RunningHome()
    {
        for (const char* file :
             {"/user/globalConfig.json", "/user/systemConfig.ini", "/user/solutions/甲/W18.model.json",
              "/user/calibrations.jsonl", "/user/licence.lic", "/valvecell.lock", "/showImg.ini",
              "/DBFiles/Images/2026-01-01/一.jpg", "/DBFiles/x.db.damaged-1", "/run.log"})
            home.write(QString::fromUtf8(file), QByteArray("content of ") + file);
        QDir().mkpath(home.path("/DBFiles"));
        database = QSqlDatabase::addDatabase("QSQLITE", "cell");
        database.setDatabaseName(home.path("/DBFiles/Pellix.db"));
        QVERIFY(database.open());
        QSqlQuery(database).exec("PRAGMA journal_mode=WAL");
        QSqlQuery(database).exec("CREATE TABLE T(id INTEGER PRIMARY KEY, half INT, whole INT)");
        add();
    }
    ~RunningHome()
    {
        database.close();
        database = {};
        QSqlDatabase::removeDatabase("cell");
    }
    /// Two rows that belong together.
    void add() const
    {
        QSqlDatabase cell = database;
        cell.transaction();
        QSqlQuery(cell).exec("INSERT INTO T(half) VALUES(1)");
        QSqlQuery(cell).exec("INSERT INTO T(half) VALUES(-1)");
        cell.commit();
    }

    TempHome home;
    QSqlDatabase database;
    const QString file = home.path("/../备份.vcbackup");
};

/// Rows and their sum; -1 when the database cannot be read.
QPair<int, int> rowsOf(const QString& path)
{
    QPair<int, int> rows{-1, -1};
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "look");
        database.setDatabaseName(path);
        database.open();
        QSqlQuery query("SELECT count(*), sum(half) FROM T", database);
        if (query.next())
            rows = {query.value(0).toInt(), query.value(1).toInt()};
    }
    QSqlDatabase::removeDatabase("look");
    return rows;
}

/// Every file below a folder with its content.
QMap<QString, QByteArray> contentOf(const QString& folder)
{
    QMap<QString, QByteArray> content;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        QFile file(walk.next());
        file.open(QIODevice::ReadOnly);
        content[QDir(folder).relativeFilePath(file.fileName())] = file.readAll();
    }
    return content;
}

} // namespace

class HomeTest : public QObject
{
    Q_OBJECT

private slots:
    void runningHomeComesBackOnAnotherMachine_data()
    {
        Table::of<QStringList, int>({{"all", {"settings", "models", "calibration", "results", "pictures"}, 7},
                                     {"calibration", {"calibration"}, 2},
                                     {"records", {"results", "pictures"}, 2}});
    }
    void runningHomeComesBackOnAnotherMachine()
    {
        const auto [names, files] = Table::row<QStringList, int>();
        const RunningHome cell;
        const auto parts = *HomeParts::parse(names);
        const Backup::Outcome made = Backup::make(cell.home.path(), parts, cell.file);
        QVERIFY2(made.isGood(), qPrintable(made.error));
        QCOMPARE(made.manifest.files.size(), files);
        QVERIFY(Backup::check(cell.file).isGood());
        const TempHome other;
        other.write("/user/licence.lic", "of this machine");
        const Backup::Outcome staged = Restore::stage(other.path(), everything, cell.file);
        QVERIFY2(staged.isGood() && Restore::isPending(other.path()), qPrintable(staged.error));
        QCOMPARE(HomeVersion::enter(other.path()), QString());
        for (const BackupManifest::File& file : made.manifest.files)
            if (!file.path.endsWith(".db"))
                QCOMPARE(other.read('/' + file.path), cell.home.read('/' + file.path));
        if (parts & HomeParts::Results)
            QCOMPARE(rowsOf(other.path("/DBFiles/Pellix.db")), qMakePair(2, 0));
        QCOMPARE(other.read("/user/licence.lic"), QByteArray("of this machine"));
        QVERIFY(!QFile::exists(other.path("/restore.new")) && !QFile::exists(other.path("/run.log")));
    }

    void copyOfADatabaseThatIsWrittenIsOfOneMoment()
    {
        const RunningHome cell;
        std::atomic<bool> ending{false};
        std::thread writer([&] {
            QSqlDatabase own = QSqlDatabase::cloneDatabase(QStringLiteral("cell"), "writer");
            own.open();
            while (!ending) {
                own.transaction();
                QSqlQuery(own).exec("INSERT INTO T(half) VALUES(1)");
                QSqlQuery(own).exec("INSERT INTO T(half) VALUES(-1)");
                own.commit();
            }
            own.close();
            own = {};
            QSqlDatabase::removeDatabase("writer");
        });
        for (int i = 0; i < 5; ++i) {
            const TempHome other;
            const Backup::Outcome made = Backup::make(cell.home.path(), HomeParts::Results, cell.file);
            const Backup::Outcome out = Backup::extract(cell.file, everything, other.path("/out"));
            if (!made.isGood() || !out.isGood() || rowsOf(other.path("/out/DBFiles/Pellix.db")).second != 0)
                QTest::qFail(qPrintable(made.error + out.error + " or half of a pair"), __FILE__, __LINE__);
        }
        ending = true;
        writer.join();
    }

    void whatIsReplacedIsKeptAndPicturesStay()
    {
        const RunningHome cell;
        QVERIFY(Backup::make(cell.home.path(), everything, cell.file).isGood());
        const TempHome other;
        other.write("/user/solutions/乙/old.model.json", "old");
        other.write("/DBFiles/Pellix.db", "another database");
        other.write("/DBFiles/Pellix.db-wal", "and its log");
        other.write("/DBFiles/Images/old.jpg", "old picture");
        QVERIFY(Restore::stage(other.path(), everything, cell.file).isGood());
        QCOMPARE(other.read("/DBFiles/Pellix.db"), QByteArray("another database")); // its cell may run
        const Restore::Outcome outcome = Restore::finish(other.path());
        QCOMPARE(outcome.error, QString());
        QCOMPARE(contentOf(outcome.kept).keys(),
                 QStringList({"DBFiles/Pellix.db", "DBFiles/Pellix.db-wal", "user/solutions/乙/old.model.json"}));
        QVERIFY(!QFile::exists(other.path("/DBFiles/Pellix.db-wal")));
        QCOMPARE(other.read("/DBFiles/Images/old.jpg"), QByteArray("old picture"));
        QCOMPARE(rowsOf(other.path("/DBFiles/Pellix.db")), qMakePair(2, 0));
    }

    /// A power failure at any moment of finish(): what is left to do is done at the next start.
    void interruptedRestorationGoesOn()
    {
        const RunningHome cell;
        QVERIFY(Backup::make(cell.home.path(), HomeParts::Settings, cell.file).isGood());
        const TempHome other;
        other.write("/user/systemConfig.ini", "old");
        other.write("/user/look.ini", "old look");
        QVERIFY(Restore::stage(other.path(), everything, cell.file).isGood());
        QJsonObject plan = HomeFiles::readJson(other.path("/restore.new/plan.json")).object;
        const QString kept = other.path('/' + plan["kept"].toString());
        QDir().mkpath(kept + "/user"); // one was set aside, then another ...
        QVERIFY(QFile::rename(other.path("/user/look.ini"), kept + "/user/look.ini"));
        QCOMPARE(Restore::finish(other.path()).error, QString());
        QCOMPARE(other.read("/user/systemConfig.ini"), cell.home.read("/user/systemConfig.ini"));
        QCOMPARE(contentOf(kept).keys(), QStringList({"user/look.ini", "user/systemConfig.ini"}));
        QVERIFY(Restore::stage(other.path(), everything, cell.file).isGood());
        plan = HomeFiles::readJson(other.path("/restore.new/plan.json")).object;
        plan["aside"] = true; // ... or all, and some were put in place
        QVERIFY(HomeFiles::writeJson(other.path("/restore.new/plan.json"), plan, nullptr));
        other.write("/user/systemConfig.ini", "is in place");
        QVERIFY(QFile::remove(other.path("/restore.new/files/user/systemConfig.ini")));
        QVERIFY(!Restore::stage(other.path(), everything, cell.file).isGood());
        QCOMPARE(Restore::finish(other.path()).error, QString());
        QCOMPARE(other.read("/user/systemConfig.ini"), QByteArray("is in place"));
        QCOMPARE(other.read("/user/globalConfig.json"), cell.home.read("/user/globalConfig.json"));
    }

    void damagedBackupTouchesNothing_data()
    {
        Table::of<int>({{"cut", 0}, {"a byte of a picture", 1}, {"an empty file", 2}, {"something else", 3}});
    }
    void damagedBackupTouchesNothing()
    {
        const auto [damage] = Table::row<int>();
        const RunningHome cell;
        QVERIFY(Backup::make(cell.home.path(), everything, cell.file).isGood());
        QFile file(cell.file);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        if (damage == 0)
            bytes.chop(bytes.size() / 3);
        else if (damage == 1)
            bytes[bytes.indexOf("content of /DB") + 3] = '!';
        else
            bytes = QByteArray(damage == 2 ? 0 : 5000, 'x');
        QVERIFY(file.resize(0) && file.seek(0));
        file.write(bytes);
        file.close();
        const TempHome other;
        other.write("/user/systemConfig.ini", "good");
        const auto before = contentOf(other.path());
        const Backup::Outcome staged = Restore::stage(other.path(), everything, cell.file);
        QVERIFY2(!staged.isGood() && !Backup::check(cell.file).isGood(), qPrintable(staged.error));
        QCOMPARE(HomeVersion::of(other.path()), 0);
        QCOMPARE(contentOf(other.path()), before);
    }

    void pathsThatLeadOutOfAHomeAreNone()
    {
        for (const char* path : {"../user/x", "/user/x", "user/../../x", "user\\x", "c:/user/x", "etc/passwd",
                                 "user//x", "user/forward.json", "user/licence.lic", "valvecell.lock"})
            QVERIFY2(!HomeParts::isPlain(QString::fromLatin1(path)), path);
        QVERIFY(HomeParts::isPlain("user/solutions/甲/a.json"));
    }

    void failedBackupLeavesNothingHalf()
    {
        const RunningHome cell;
        QVERIFY(Backup::make(cell.home.path(), everything, cell.file).isGood());
        const auto before = contentOf(cell.home.path("/.."));
        const auto cancel = [](qint64, qint64) { return false; };
        QVERIFY(!Backup::make(cell.home.path(), everything, cell.file, cancel).isGood());
        QVERIFY(!Restore::stage(cell.home.path(), everything, cell.file, cancel).isGood());
        cell.home.write("/user/noise.bin", [] {
            QByteArray noise;
            for (quint32 word = 1; noise.size() < 4'000'000; word = word * 1664525 + 1013904223)
                noise.append(char(word >> 24));
            return noise;
        }());
        const SmallDisk disk(1);
        if (disk.isMounted()) {
            const Backup::Outcome full = Backup::make(cell.home.path(), everything, disk.path() + "/backup");
            QVERIFY2(full.error.contains("backup"), qPrintable(full.error));
            QCOMPARE(QDir(disk.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                     QStringList());
        }
        QFile::remove(cell.home.path("/user/noise.bin"));
        QCOMPARE(contentOf(cell.home.path("/..")).keys(), before.keys());
        QVERIFY(Backup::check(cell.file).isGood());
    }

    void homeIsMigratedOrRefused()
    {
        const TempHome home;
        QCOMPARE(HomeVersion::enter(home.path()), QString());
        QCOMPARE(HomeVersion::of(home.path()), HomeVersion::current);
        QVERIFY2(!QFile::exists(home.path("/backups")), "a new home has nothing to keep");
        QVERIFY(QFile::remove(home.path("/user/home.json")));
        home.write("/user/globalConfig.json", "old form");
        QStringList ran;
        const std::vector<HomeVersion::Migration> migrations{
            {0, [&](const QString&) { return ran << "0", QString(); }},
            {1, [&](const QString& place) { return ran << place, QString(ran.size() > 1 ? "" : "not yet"); }}};
        QVERIFY(HomeVersion::enter(home.path(), migrations).endsWith("not yet"));
        QCOMPARE(HomeVersion::of(home.path()), 0);
        QCOMPARE(HomeVersion::enter(home.path(), migrations), QString());
        QCOMPARE(HomeVersion::enter(home.path(), migrations), QString());
        QCOMPARE(ran, QStringList({home.path(), home.path()}));
        const QStringList kept = QDir(home.path("/backups")).entryList(QDir::Files);
        QVERIFY(!kept.isEmpty() && Backup::check(home.path("/backups/") + kept[0]).isGood());
        home.write("/user/home.json", R"({"version": 99})");
        const auto before = contentOf(home.path());
        QVERIFY(HomeVersion::enter(home.path()).contains("99"));
        QCOMPARE(contentOf(home.path()), before);
    }

    void scriptBacksUpRestoresAndClones()
    {
        const RunningHome cell;
        const TempHome other;
        const auto run = [&](const QStringList& arguments, int code) {
            QProcess tool;
            tool.start(QStringLiteral(VALVECELL_BIN_DIR "/valvecell-backup"), arguments + QStringList{"--json"});
            const bool ended = tool.waitForFinished(60000) && tool.exitCode() == code;
            const QByteArray said = tool.readAllStandardOutput();
            if (!ended)
                qWarning("%d: %s", tool.exitCode(), said.constData());
            return ended ? QJsonDocument::fromJson(said).object() : QJsonObject();
        };
        QCOMPARE(run({"make", cell.file, "--home", cell.home.path()}, 0)["files"].toInt(), 7);
        QCOMPARE(run({"check", cell.file}, 0)["parts"].toArray().size(), 5);
        QCOMPARE(run({"restore", cell.file, "--home", other.path(), "--parts", "models"}, 0)["files"].toInt(), 1);
        QCOMPARE(run({"clone", other.path("/zwei"), "--home", cell.home.path()}, 0)["files"].toInt(), 5);
        QVERIFY(!QFile::exists(other.path("/zwei/DBFiles")) && !QFile::exists(other.path("/zwei/user/licence.lic")));
        HomeLock lock(other.path());
        QVERIFY(lock.take());
        QCOMPARE(run({"restore", cell.file, "--home", other.path()}, 3)["code"].toInt(), 3);
        QVERIFY(!run({"check", cell.home.path("/run.log")}, 1)["error"].toString().isEmpty());
        run({"restore"}, 2);
        run({"make", cell.file, "--parts", "everything"}, 2);
    }
};

QTEST_GUILESS_MAIN(HomeTest)
#include "tst_home.moc"
