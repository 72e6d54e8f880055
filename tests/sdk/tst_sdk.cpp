// What the author of a module does: takes the installed headers, builds the example, and has its module used.

#include "support/Delivered.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <valvecell/Extension.h>
#include <valvecell/ICameraParameters.h>
#include <valvecell/ICameraSettings.h>

#include <memory>

namespace {

constexpr int deadlineMs = 300'000;

/// Empty, or what was run and all that it said.
QString runCMake(const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(CMAKE_COMMAND), arguments);
    const bool ended = process.waitForFinished(deadlineMs);
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return {};
    const QString said = ended ? QString::fromLocal8Bit(process.readAll()) : process.errorString();
    return QStringLiteral("cmake %1\n%2").arg(arguments.join(' '), said);
}

/// A place outside of the project, as the author of a module has it: the installed SDK and a copy of one example.
class OutsideBuild
{
public:
    QString prefix() const { return m_dir.filePath(QStringLiteral("prefix")); }
    QString source() const { return m_dir.filePath(QStringLiteral("module")); }
    QString build() const { return m_dir.filePath(QStringLiteral("build")); }

    /// Installs the SDK, copies the example and builds it; empty, or what failed.
    QString make(const QString& example, bool install = true) const
    {
        QString failed =
            runCMake({"-S", SOURCE_DIR, "-B", m_dir.filePath("sdk"), "-G", CMAKE_GENERATOR, "-DVALVECELL_SDK_ONLY=ON",
                      "-DCMAKE_MAKE_PROGRAM=" CMAKE_MAKE_PROGRAM, "-DCMAKE_CXX_COMPILER=" CMAKE_CXX_COMPILER,
                      "-DCMAKE_PREFIX_PATH=" CMAKE_PREFIX_PATH});
        if (failed.isEmpty())
            failed = runCMake({"--install", m_dir.filePath("sdk"), "--prefix", prefix()});
        const QDir from(QStringLiteral(SOURCE_DIR "/examples/") + example);
        QDir().mkpath(source());
        for (const QString& file : from.entryList(QDir::Files))
            QFile::copy(from.filePath(file), source() + '/' + file);
        QString where = prefix();
        if (*CMAKE_PREFIX_PATH)
            where += QStringLiteral(";" CMAKE_PREFIX_PATH);
        const QVector<QStringList> steps{
            {"-S", source(), "-B", build(), "-G", CMAKE_GENERATOR, "-DCMAKE_MAKE_PROGRAM=" CMAKE_MAKE_PROGRAM,
             "-DCMAKE_CXX_COMPILER=" CMAKE_CXX_COMPILER, "-DCMAKE_CXX_FLAGS=" EXAMPLE_FLAGS,
             "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DCMAKE_PREFIX_PATH=" + where},
            {"--build", build(), "--parallel", "2"},
            {"--install", build(), "--prefix", prefix()}};
        for (const QStringList& step : install ? steps : steps.mid(0, 2)) {
            if (failed.isEmpty())
                failed = runCMake(step);
        }
        return failed;
    }

private:
    QTemporaryDir m_dir;
};

const QString left = QStringLiteral("左");
const QString right = QStringLiteral("right");
const QByteArray twoCameras = R"({"cameras": [
    {"key": "左", "type": 100, "width": 321, "height": 240, "exposure_ms": 1},
    {"key": "right", "type": 100, "width": 200, "height": 200, "exposure_ms": 3600000}]})";

} // namespace

class SdkTest : public QObject
{
    Q_OBJECT

private:
    OutsideBuild m_outside;
    CoreCtrlInitFunction m_init = nullptr;

    /// The module's own object, made and started in the present home.
    std::unique_ptr<ICoreCtrl> started() const
    {
        std::unique_ptr<ICoreCtrl> core(m_init(nullptr));
        core->start();
        return core;
    }

private slots:
    void onlyInstalledHeadersAreUsedAndAllAreThere()
    {
        QFile commands(m_outside.build() + QStringLiteral("/compile_commands.json"));
        QVERIFY(commands.open(QIODevice::ReadOnly));
        const QByteArray text = commands.readAll();
        QVERIFY2(text.contains(m_outside.prefix().toUtf8() + "/include") && !text.contains(SOURCE_DIR "/include"),
                 text.constData());
        const QStringList headers{QStringLiteral("*.h")};
        QCOMPARE(QDir(m_outside.prefix() + "/include/valvecell").entryList(headers),
                 QDir(SOURCE_DIR "/include/valvecell").entryList(headers));
    }

    /// Built like the camera, and held to their contracts; the host lives on in an empty home.
    void otherExamplesKeepTheirContracts_data()
    {
        QTest::addColumn<QString>("module");
        QTest::newRow("DarkSpotEngine") << "ksbengine.so";
        QTest::newRow("EchoLine") << "SerialPortTool.so";
        QTest::newRow("SingleUser") << "QUserInfo.so";
        QTest::newRow("SmallHost") << "";
    }
    void otherExamplesKeepTheirContracts()
    {
        QFETCH(QString, module);
        const OutsideBuild outside;
        const QString failed = outside.make(QString::fromLatin1(QTest::currentDataTag()), false);
        QVERIFY2(failed.isEmpty(), qPrintable(failed));
        const TempHome home;
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        if (module.isEmpty())
            process.start(outside.build() + "/smallhost", {VALVECELL_BIN_DIR "/libvalvecell.so"});
        else
            process.start(VALVECELL_BIN_DIR "/modulecheck", {outside.build() + '/' + module});
        QVERIFY(process.waitForFinished(deadlineMs));
        const QString said = QString::fromUtf8(process.readAll());
        QCOMPARE(told(process.exitCode(), said.contains("camera.json")), module.isEmpty() ? "2|true" : "0|false");
    }

    void initTestCase()
    {
        const QString failed = m_outside.make(QStringLiteral("TestPatternCamera"));
        QVERIFY2(failed.isEmpty(), qPrintable(failed));
        m_init = Delivered::init(m_outside.prefix() + QStringLiteral("/bin/ksCoreCtrl"));
    }

    void anotherQtIsRefusedByTheCompiler()
    {
        QProcess compiler;
        const QString qt = QLibraryInfo::location(QLibraryInfo::HeadersPath);
        compiler.start(CMAKE_CXX_COMPILER, {"-E", "-fPIC", "-x", "c++", "-std=c++17", "-I", qt, "-I", qt + "/QtCore",
                                            "-I", m_outside.prefix() + "/include", "-"});
        compiler.write("#include <QtGlobal>\n#undef QT_VERSION\n#define QT_VERSION 0x060200\n"
                       "#include <valvecell/Export.h>\n");
        compiler.closeWriteChannel();
        QVERIFY(compiler.waitForFinished(deadlineMs));
        QVERIFY(compiler.exitCode() != 0 && compiler.readAllStandardError().contains("Qt 5.15"));
    }

    void triggersOfTwoCamerasAreAnsweredSideBySide()
    {
        TempHome home;
        home.write("/user/camera.json", twoCameras);
        Delivered delivered;
        const auto core = started();
        delivered.connectTo(*core);
        QCOMPARE(core->cameraKeys(), QStringList({left, right}));

        for (int i = 0; i < 3; ++i)
            core->trigger({right, left});
        QTRY_COMPARE(delivered.images(left).size(), 3);
        QCOMPARE(delivered.images(right).size(), 0);
        const QVector<QImage> images = delivered.images(left);
        QCOMPARE(images[0].size(), QSize(321, 240));
        QVERIFY2(images[0] != images[1] && images[1] != images[2], "the pattern stands still");
        const QPoint hole(160 + 72, 119); // 0.75 of the disc's radius to the right of its centre
        QVERIFY(images[0].pixelColor(hole).value() < images[0].pixelColor(160, 119).value());
        QCOMPARE(images[1].pixelColor(hole), images[1].pixelColor(160, 119));
        core->stop();
    }

    void stopEndsALongExposureAndNothingComesAfterIt()
    {
        TempHome home;
        home.write("/user/camera.json", twoCameras);
        Delivered delivered;
        auto core = started();
        delivered.connectTo(*core);
        core->trigger({right, right, right});
        core->trigger({left});
        QTRY_COMPARE(delivered.images(left).size(), 1);
        core->stop();
        const int captured = delivered.images(right).size();
        QVERIFY2(captured <= 1, "triggers that waited are dropped");
        core->trigger({right, left, "stranger"});
        core.reset();
        QCOMPARE(delivered.images(right).size(), captured);
        QCOMPARE(delivered.images(left).size(), 1);
        QCOMPARE(delivered.notes(), QStringList());
    }

    void describedSettingIsCheckedChangedAndKept()
    {
        const TempHome home;
        home.write("/user/camera.json", R"({"cameras": [{"key": "a"}, {"key": "a"}, 7, {"key": "b", "width": 1e9}]})");
        for (const char* said : {"cameras\\[1\\]", "cameras\\[2\\]", "“b”.*width.*1000000000.*10000"})
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(said));
        QCOMPARE(started()->cameraKeys(), QStringList({"a", "b"}));
        home.write("/user/camera.json", twoCameras);
        auto core = started();
        auto* settings = extensionOf<ICameraSettings>(core.get());
        const auto parameters = extensionOf<ICameraParameters>(core.get())->parameters(CameraType::Virtual, left);
        QCOMPARE(parameters.size(), settings->settings(left).size());
        QString error;
        QVERIFY(!settings->applySettings(left, {{"width", 99999}}, &error));
        QVERIFY2(error.contains(left) && error.contains("99999") && error.contains("16"), qPrintable(error));
        QVERIFY2(settings->applySettings(left, {{"width", 640}}, &error), qPrintable(error));
        core->stop();
        core = started();
        Delivered delivered;
        delivered.connectTo(*core);
        core->trigger({left});
        QTRY_COMPARE(delivered.images(left).size(), 1);
        QCOMPARE(delivered.images(left)[0].size(), QSize(640, 240));
        core->stop();
    }
};

QTEST_GUILESS_MAIN(SdkTest)
#include "tst_sdk.moc"
