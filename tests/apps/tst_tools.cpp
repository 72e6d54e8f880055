// What scripts count on: each program answers without a screen, a home or a device.

#include <QtTest>

class ToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void eachSaysItsVersionAndItsExitCodes_data()
    {
        QTest::addColumn<QString>("program");
        for (const char* program : {"valvecell", "Report", "licencetool", "locate", "plcsim", "wheelgen", "soak"})
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
        QVERIFY2(version.contains(QRegularExpression("^\\w+ \\d+\\.\\d+\\.\\d+\n$")), qPrintable(version));
        const QString help = run("--help");
        QVERIFY2(help.contains("Exit code: 0 ") || help.contains("Exit code 0: "), qPrintable(help));
    }
};

QTEST_GUILESS_MAIN(ToolsTest)
#include "tst_tools.moc"
