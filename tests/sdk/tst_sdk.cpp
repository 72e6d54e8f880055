// What the author of a module does: takes the installed headers, builds the example, and has its module used.

#include "OutsideBuild.h"
#include "support/TempHome.h"

#include <valvecell/ICoreCtrl.h>

#include <QLibrary>
#include <QtTest>

#include <memory>
#include <mutex>

namespace {

/// What the module's threads delivered.
class Delivered
{
public:
    void connectTo(ICoreCtrl& core)
    {
        core.setRequestCallback([](const QString&, const QVariant&) { return QVariant(); });
        core.setNotificationCallback([this](const QString& topic, const QVariant& value) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_notes.append(topic + ": " + value.toString());
        });
        core.setImageCallback([this](const QString& key, const QImage& image) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_images[key].append(image);
        });
    }
    QVector<QImage> images(const QString& key) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_images.value(key);
    }
    int count(const QString& key) const { return images(key).size(); }
    QStringList notes() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_notes;
    }

private:
    mutable std::mutex m_mutex; // protects the two below; one that a thread sanitizer understands
    QMap<QString, QVector<QImage>> m_images;
    QStringList m_notes;
};

const QString kLeft = QStringLiteral("左");
const QString kRight = QStringLiteral("right");
const QByteArray kTwoCameras = R"({"cameras": [
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
    void initTestCase()
    {
        QString failed = m_outside.installSdk();
        QVERIFY2(failed.isEmpty(), qPrintable(failed));
        failed = m_outside.copyExample(QStringLiteral("TestPatternCamera"));
        QVERIFY2(failed.isEmpty(), qPrintable(failed));
        failed = m_outside.configure();
        QVERIFY2(failed.isEmpty(), qPrintable(failed));
        failed = m_outside.buildAndInstall();
        QVERIFY2(failed.isEmpty(), qPrintable(failed));

        QLibrary library(m_outside.prefix() + QStringLiteral("/bin/ksCoreCtrl"));
        m_init = reinterpret_cast<CoreCtrlInitFunction>(library.resolve("Lib_CoreCtrl_Init"));
        QVERIFY2(m_init && library.resolve("Lib_CoreCtrl_Free"),
                 qPrintable(library.fileName() + library.errorString()));
    }

    void installedHeadersAreTheOnlyOnesUsed()
    {
        QFile commands(m_outside.build() + QStringLiteral("/compile_commands.json"));
        QVERIFY(commands.open(QIODevice::ReadOnly));
        const QByteArray text = commands.readAll();
        QVERIFY2(text.contains(m_outside.prefix().toUtf8() + "/include"), text.constData());
        QVERIFY2(!text.contains(SOURCE_DIR "/include"), text.constData());
    }

    void everyHeaderIsInstalled()
    {
        const QStringList headers{QStringLiteral("*.h")};
        QCOMPARE(QDir(m_outside.prefix() + "/include/valvecell").entryList(headers),
                 QDir(SOURCE_DIR "/include/valvecell").entryList(headers));
    }

    void triggersOfTwoCamerasAreAnsweredSideBySide()
    {
        TempHome home;
        home.write("/user/camera.json", kTwoCameras);
        Delivered delivered;
        const auto core = started();
        delivered.connectTo(*core);
        QCOMPARE(core->cameraKeys(), QStringList({kLeft, kRight}));

        for (int i = 0; i < 3; ++i)
            core->trigger({kRight, kLeft});
        QTRY_COMPARE(delivered.count(kLeft), 3);
        QCOMPARE(delivered.count(kRight), 0);
        const QVector<QImage> images = delivered.images(kLeft);
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
        home.write("/user/camera.json", kTwoCameras);
        Delivered delivered;
        auto core = started();
        delivered.connectTo(*core);
        core->trigger({kRight, kRight, kRight});
        core->trigger({kLeft});
        QTRY_COMPARE(delivered.count(kLeft), 1);
        core->stop();
        const int captured = delivered.count(kRight);
        QVERIFY2(captured <= 1, "triggers that waited are dropped");
        core->trigger({kRight, kLeft, "stranger"});
        core.reset();
        QCOMPARE(delivered.count(kRight), captured);
        QCOMPARE(delivered.count(kLeft), 1);
        QCOMPARE(delivered.notes(), QStringList());
    }

    void replacedCallbackReceivesTheNextImage()
    {
        TempHome home;
        home.write("/user/camera.json", kTwoCameras);
        Delivered before;
        Delivered after;
        const auto core = started();
        before.connectTo(*core);
        core->trigger({kLeft});
        QTRY_COMPARE(before.count(kLeft), 1);
        after.connectTo(*core);
        core->trigger({kLeft, "stranger"});
        QTRY_COMPARE(after.count(kLeft), 1);
        QCOMPARE(after.notes(), QStringList("unknownCamera: stranger"));
        QCOMPARE(before.count(kLeft), 1);
        QCOMPARE(before.notes(), QStringList());
        core->stop();
    }

    void spoiledCameraListIsToldWithItsPlace_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("told");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("cut off") << QByteArray("{\"cameras\": [\n{\"key\"") << "camera.json, line 2" << QStringList();
        QTest::newRow("key taken") << QByteArray(R"({"cameras": [{"key": "a"}, {"key": "a"}, {"key": "b"}]})")
                                   << "cameras\\[1\\]" << QStringList({"a", "b"});
        QTest::newRow("wrong type") << QByteArray(R"({"cameras": [7, {"key": "b", "width": 1e9}]})") << "cameras\\[0\\]"
                                    << QStringList("b");
    }
    void spoiledCameraListIsToldWithItsPlace()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, told);
        QFETCH(QStringList, keys);
        TempHome home;
        home.write("/user/camera.json", json);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(told));
        const auto core = started();
        QCOMPARE(core->cameraKeys(), keys);
        core->stop();
    }
};

QTEST_GUILESS_MAIN(SdkTest)
#include "tst_sdk.moc"
