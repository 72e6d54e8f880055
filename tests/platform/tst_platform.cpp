#include "platform/MachineIdentity.h"
#include "platform/System.h"

#include <valvecell/HomeFiles.h>

#include <QTemporaryDir>
#include <QtTest>

/// What every system that the program runs on has to do alike.
class TestPlatform : public QObject
{
    Q_OBJECT

private slots:
    /// Neither a machine's code page nor the system's usual limit of a path's length may matter.
    void filesOfAnyName_data()
    {
        QTest::addColumn<QString>("below");
        QTest::newRow("plain") << "cell";
        QTest::newRow("Chinese and more") << QString::fromUtf8("零件 Ärger €/中文");
        QTest::newRow("long") << QStringList{QString(90, 'a'), QString(90, 'b'), QString(90, 'c')}.join('/');
    }

    void filesOfAnyName()
    {
        QFETCH(QString, below);
        const QTemporaryDir root;
        const QString home = root.filePath(below);
        HomeFiles::setHome(home);
        QCOMPARE(HomeFiles::home(), QDir(home).absolutePath());

        const QString path = home + "/row.txt";
        const QString next = home + "/row.txt.part";
        QString error;
        QCOMPARE(platform::fileIdentity(path), quint64(0));
        for (const char* text : {"first", "second"}) // the second replaces
            QVERIFY2(HomeFiles::writeFile(path, text, &error), qUtf8Printable(error));
        QVERIFY(HomeFiles::writeFile(next, "third", &error));
        QVERIFY(platform::flushFile(next));
        QCOMPARE(platform::replaceFile(next, path), QString());
        QVERIFY(!QFile::exists(next));
        QVERIFY(platform::fileIdentity(path) != 0);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("third"));
        QVERIFY(!platform::replaceFile(next, path).isEmpty());
    }

    void theMachineAndTheProcess()
    {
        QCOMPARE(platform::machineIdentity(), platform::machineIdentity());
        QVERIFY(platform::residentMemoryKiB() > 1000);
        QVERIFY(platform::processorTimeMs(QCoreApplication::applicationPid()).has_value());
        QVERIFY(platform::freeSpaceMiB(QDir::tempPath()) > 0);
    }
};

QTEST_GUILESS_MAIN(TestPlatform)
#include "tst_platform.moc"
