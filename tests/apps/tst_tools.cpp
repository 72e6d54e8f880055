// What scripts count on: each program answers without a screen, a home or a device.

#include "platform/ServiceNotice.h"
#include "support/Patience.h"

#include <QtTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// The service manager's end.
struct Manager
{
    explicit Manager(const QByteArray& path)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path, sizeof address.sun_path);
        ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address);
        qputenv("NOTIFY_SOCKET", path);
        qputenv("WATCHDOG_USEC", "20000");
    }
    ~Manager()
    {
        ::close(socket);
        qunsetenv("NOTIFY_SOCKET");
        qunsetenv("WATCHDOG_USEC");
    }
    /// All that came so far.
    const QByteArrayList& heard()
    {
        char text[200];
        for (ssize_t size = 0; (size = ::recv(socket, text, sizeof text, MSG_DONTWAIT)) > 0;)
            m_heard.append(QByteArray(text, int(size)));
        return m_heard;
    }

    const int socket = ::socket(AF_UNIX, SOCK_DGRAM, 0);

private:
    QByteArrayList m_heard;
};

} // namespace

class ToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void eachSaysItsVersionAndItsExitCodes_data()
    {
        QTest::addColumn<QString>("program");
        for (const char* program : {"valvecell", "Report", "licencetool", "locate", "plcsim", "wheelgen", "soak",
                                    "valvecell-backup", "modulecheck"})
            QTest::newRow(program) << QString::fromLatin1(program);
    }
    void eachSaysItsVersionAndItsExitCodes()
    {
        QFETCH(QString, program);
        const auto run = [&](const char* option) {
            QProcess process;
            QProcessEnvironment bare = QProcessEnvironment::systemEnvironment();
            bare.remove("DISPLAY");
            bare.remove("QT_QPA_PLATFORM");
            process.setProcessEnvironment(bare);
            process.start(QStringLiteral(VALVECELL_BIN_DIR "/") + program, {QLatin1String(option)});
            const bool good = process.waitForFinished(60000) && process.exitCode() == 0;
            return good ? QString::fromUtf8(process.readAllStandardOutput()) : QStringLiteral("failed");
        };
        const QString version = run("--version");
        QVERIFY2(version.contains(QRegularExpression("^[\\w-]+ \\d+\\.\\d+\\.\\d+\n$")), qPrintable(version));
        const QString help = run("--help");
        QVERIFY2(help.contains("Exit code: 0 ") || help.contains("Exit code 0: "), qPrintable(help));
    }

    void serviceManagerHearsOfALoopThatRuns()
    {
        const QTemporaryDir folder;
        Manager manager(folder.filePath("notify").toUtf8());
        platform::ServiceNotice notice;
        QVERIFY(manager.heard().isEmpty());
        notice.ready();
        QElapsedTimer hung;
        for (hung.start(); !hung.hasExpired(60);)
            QCOMPARE(manager.heard(), QByteArrayList{"READY=1"});
        QTRY_VERIFY(manager.heard().count("WATCHDOG=1") >= 2);
        notice.stopping();
        QCOMPARE(manager.heard().last(), QByteArray("STOPPING=1"));
    }
};

QTEST_GUILESS_MAIN(ToolsTest)
#include "tst_tools.moc"
