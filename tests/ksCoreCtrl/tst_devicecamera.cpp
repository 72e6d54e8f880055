#include "CameraEvents.h"
#include "CameraFile.h"
#include "device/DeviceCamera.h"
#include "device/PixelConversion.h"
#include "support/Table.h"

#include <condition_variable>

using End = DeviceShot::End;
Q_DECLARE_METATYPE(QImage::Format)

namespace {

/// What a device in memory does, set by the test while the camera's thread is in it.
struct Script
{
    std::mutex mutex;
    std::condition_variable changed;
    QStringList openProblems; ///< one for each opening, before it succeeds
    QVector<End> ends;        ///< of the next captures; whole images after them
    bool hangs = false;       ///< capture() and check() do not return
    QString checkProblem;
    int opened = 0;
    int captures = 0;
    QVariantMap featuresAtOpening;
};

class FakeDevice final : public CameraDevice
{
public:
    explicit FakeDevice(Script& script)
        : m_script(script)
    {
    }
    QString open(const QVariantMap&, const QVariantMap& features) override
    {
        const std::lock_guard<std::mutex> lock(m_script.mutex);
        m_script.featuresAtOpening = features;
        if (!m_script.openProblems.isEmpty())
            return m_script.openProblems.takeFirst();
        ++m_script.opened;
        return {};
    }
    void close() override {}
    QString apply(const QVariantMap&) override { return {}; }
    DeviceShot capture(const DeviceRequest& request) override
    {
        std::unique_lock<std::mutex> lock(m_script.mutex);
        ++m_script.captures;
        while (m_script.hangs && !request.cancelled)
            m_script.changed.wait_for(lock, std::chrono::milliseconds(10));
        DeviceShot shot;
        shot.end = m_script.ends.isEmpty() ? End::Image : m_script.ends.takeFirst();
        if (shot.end == End::Image)
            shot.image = QImage(m_script.captures, 1, QImage::Format_Grayscale8);
        else
            shot.problem = QStringLiteral("end %1").arg(int(shot.end));
        return shot;
    }
    QString check() override
    {
        const std::lock_guard<std::mutex> lock(m_script.mutex);
        return std::exchange(m_script.checkProblem, {});
    }
    DeviceIdentity identity() const override { return {}; }
    QStringList featureNames() override { return {"A", "B", "C"}; }
    CameraFeature feature(const QString& name) override
    {
        CameraFeature feature;
        feature.name = name;
        return feature;
    }
    QString writeFeature(const QString& name, const QVariant&) override { return name == "bad" ? "no" : QString(); }

private:
    Script& m_script;
};

QVector<CameraParameter> parameters()
{
    return {DeviceCamera::timeLimit()};
}

/// A camera over the device above, and what it answers: "7: image", "7: <problem>", or "note <topic>".
class Rig
{
public:
    Script script;
    CameraEvents events;
    std::unique_ptr<DeviceCamera> camera;

    explicit Rig(const QVariantMap& settings = {{"timeout_ms", 60000}}, bool opened = true)
    {
        events.setCaptureCallback([this](const ICameraCapture::Outcome& outcome) {
            add(QStringLiteral("%1: %2").arg(outcome.number).arg(outcome.image.isNull() ? outcome.problem : "image"));
        });
        events.setNotificationCallback([this](const QString& topic, const QVariant&) { add("note " + topic); });
        const DevicePace fast{std::chrono::milliseconds(5), std::chrono::milliseconds(1), std::chrono::milliseconds(4),
                              std::chrono::milliseconds(1)};
        camera = std::make_unique<DeviceCamera>(CameraConfig{"cam", 120, settings}, events, parameters,
                                                std::make_unique<FakeDevice>(script), fast);
        if (opened)
            camera->open();
    }
    ~Rig() { camera->close(); }

    void hang()
    {
        const std::lock_guard<std::mutex> lock(script.mutex);
        script.hangs = true;
    }
    void release()
    {
        {
            const std::lock_guard<std::mutex> lock(script.mutex);
            script.hangs = false;
        }
        script.changed.notify_all();
    }
    template <typename Member>
    Member look(Member Script::*member)
    {
        const std::lock_guard<std::mutex> lock(script.mutex);
        return script.*member;
    }
    template <typename Member>
    void change(Member Script::*member, const Member& value)
    {
        const std::lock_guard<std::mutex> lock(script.mutex);
        script.*member = value;
    }
    bool isRunning() const { return camera->status().state == CameraState::Running; }
    QStringList said() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_said;
    }
    int answers() const { return said().filter(QRegularExpression("^\\d")).size(); }

private:
    void add(const QString& text)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_said.append(text);
    }
    mutable std::mutex m_mutex;
    QStringList m_said;
};

QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray all;
    for (const int value : values)
        all += char(value);
    return all;
}

} // namespace

class DeviceCameraTest : public QObject
{
    Q_OBJECT

private slots:
    void eachEndOfACaptureIsAnsweredOnceAndALostCameraComesBack_data()
    {
        Table::of<int, QString, int>({{"whole", int(End::Image), "1: image", 1},
                                      {"incomplete", int(End::Incomplete), "1: end 1", 1},
                                      {"unusable", int(End::Unusable), "1: end 2", 1},
                                      {"late", int(End::Late), "1: end 3", 1},
                                      {"lost", int(End::Lost), "1: end 4", 2}});
    }
    void eachEndOfACaptureIsAnsweredOnceAndALostCameraComesBack()
    {
        const auto [end, said, opened] = Table::row<int, QString, int>();
        Rig rig;
        QTRY_VERIFY(rig.isRunning());
        rig.change(&Script::ends, {End(end)});
        rig.camera->trigger(1);
        QTRY_COMPARE(rig.answers(), 1);
        QCOMPARE(rig.said().first(), said);
        QTRY_COMPARE(rig.look(&Script::opened), opened);
        QTRY_VERIFY(rig.isRunning());
        rig.camera->trigger(2);
        QTRY_COMPARE(rig.said().last(), "2: image");
        const CameraStatistics counts = rig.camera->statistics();
        QCOMPARE(counts.reopened, quint64(opened - 1));
        QCOMPARE(counts.incomplete, quint64(End(end) == End::Incomplete));
        QVERIFY(rig.camera->status().message.isEmpty());
    }

    void deviceThatHangsIsAnsweredForAndItsLateImageIsNobodys()
    {
        Rig rig({{"timeout_ms", 50}});
        QTRY_VERIFY(rig.isRunning());
        rig.hang();
        for (quint64 number = 1; number <= 3; ++number)
            rig.camera->trigger(number);
        QTRY_COMPARE(rig.answers(), 3); // while the device still hangs
        for (const QString& answer : rig.said())
            QVERIFY2(!answer.contains("image"), qPrintable(answer));
        rig.camera->trigger(4);
        QCOMPARE(rig.answers(), 4); // at once
        QCOMPARE(rig.look(&Script::captures), 1);
        rig.release();
        QTRY_COMPARE(rig.look(&Script::opened), 2);
        QTRY_VERIFY(rig.isRunning());
        rig.camera->trigger(5);
        QTRY_COMPARE(rig.said().last(), "5: image");
        QCOMPARE(rig.answers(), 5);
    }

    void cameraThatIsNotThereIsTriedAgainUntilItIs()
    {
        Rig rig({{"timeout_ms", 60000}, {"features", QVariantMap{{"Gamma", 0.5}}}}, false);
        rig.script.openProblems = QStringList{"no cable", "no cable", "still no cable"};
        rig.camera->trigger(1); // waits for the first opening
        rig.camera->open();
        QTRY_COMPARE(rig.said().value(0), "1: no cable");
        QTRY_VERIFY(rig.isRunning());
        QCOMPARE(rig.look(&Script::featuresAtOpening).value("Gamma"), QVariant(0.5));
        rig.change(&Script::checkProblem, QStringLiteral("gone while idle"));
        QTRY_COMPARE(rig.said().filter("note"), QStringList({"note cameraBack", "note cameraLost", "note cameraBack"}));
        QCOMPARE(rig.look(&Script::opened), 2);
    }

    void allThatWaitsIsAnsweredWhenTheCameraCloses()
    {
        Rig rig;
        QTRY_VERIFY(rig.isRunning());
        rig.hang();
        for (quint64 number = 1; number <= 20; ++number)
            rig.camera->trigger(number);
        QTRY_COMPARE(rig.look(&Script::captures), 1);
        const int dropped = rig.answers();
        QVERIFY2(dropped == 3 || dropped == 4, "one may be in hand already when the last comes");
        int previews = 0, lists = 0;
        while (rig.camera->preview([&](const QImage&, const QString& error) { previews += error.isEmpty() ? 9 : 1; })) {
        }
        rig.camera->device()->readFeatures([&](const auto& all, const QString&) { lists += all.isEmpty() ? 1 : 9; });
        rig.camera->close(); // while the device still hangs
        QCOMPARE(rig.answers(), 20);
        QCOMPARE(previews, int(DeviceCamera::maxPreviews));
        QCOMPARE(lists, 1);
        rig.camera->trigger(21);
        QCOMPARE(rig.answers(), 21);
        QCOMPARE(rig.camera->status().state, CameraState::Closed);
    }

    void featuresAreReadBetweenCapturesAndWrittenOnesAreKept()
    {
        Rig rig;
        QTRY_VERIFY(rig.isRunning());
        std::atomic<int> read{0}, refused{0}, taken{0};
        DeviceAccess* device = rig.camera->device();
        device->readFeatures([&](const QVector<CameraFeature>& all, const QString&) { read = all.size(); });
        device->writeFeature("bad", 1, [&](const QString& error) { refused += error == "no" ? 1 : 9; });
        device->writeFeature("Gamma", 0.5, [&](const QString& error) { taken += error.isEmpty() ? 1 : 9; });
        device->writeFeature("Reset", {}, [&](const QString& error) { taken += error.isEmpty() ? 1 : 9; });
        QTRY_COMPARE(taken.load(), 2);
        QCOMPARE(read.load(), 3);
        QCOMPARE(refused.load(), 1);
        QCOMPARE(device->features(), QVariantMap({{"Gamma", 0.5}}));
    }

    void wrongSettingKeepsTheCameraShutUntilItIsRight()
    {
        Rig rig({{"timeout_ms", 1}});
        QCOMPARE(rig.camera->status().state, CameraState::Uninitialized);
        rig.camera->trigger(1);
        QVERIFY2(rig.said().value(0).contains("timeout_ms"), qPrintable(rig.said().value(0)));
        rig.camera->apply({{"timeout_ms", 500}});
        QTRY_VERIFY(rig.isRunning());
    }

    void pixelFormatsBecomeImages_data()
    {
        const auto gray = QImage::Format_Grayscale8;
        const auto red = qRgb(255, 0, 0);
        const auto grayOf = [](int value) { return qRgb(value, value, value); };
        // Two lines of two pixels, or four where a line has to be longer; the last pixel is looked at.
        const QByteArray wide10 = bytes({0, 0, 0, 0, 0, 0, 0xFF, 0x03});
        Table::of<uint, int, QByteArray, QImage::Format, QRgb>(
            {{"Mono8", 0x01080001u, 2, bytes({1, 2, 3, 200}), gray, grayOf(200)},
             {"Mono10", 0x01100003u, 2, wide10, gray, grayOf(255)},
             {"Mono12", 0x01100005u, 2, bytes({0, 0, 0, 0, 0, 0, 0x40, 0x06}), gray, grayOf(100)},
             {"Mono16", 0x01100007u, 2, bytes({0, 0, 0, 0, 0, 0, 0xFF, 0x80}), gray, grayOf(128)},
             {"Mono12Packed", 0x010C0006u, 2, bytes({1, 0, 2, 3, 0xFF, 77}), gray, grayOf(77)},
             {"Mono10Packed", 0x010C0004u, 2, bytes({1, 0, 2, 3, 0xFF, 78}), gray, grayOf(78)},
             {"Mono12p", 0x010C0047u, 2, bytes({0, 0, 0, 0, 0xF0, 0x64}), gray, grayOf(0x64)},
             {"Mono10p", 0x010A0046u, 2, bytes({0, 0, 0, 0, 0x64}), gray, grayOf(0x64)},
             {"RGB8", 0x02180014u, 2, bytes({0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0}), QImage::Format_RGB888, red},
             {"BGR8", 0x02180015u, 2, bytes({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255}), QImage::Format_BGR888, red},
             {"YUV422 UYVY", 0x0210001Fu, 2, bytes({128, 16, 128, 16, 128, 235, 128, 235}), QImage::Format_RGB888,
              grayOf(255)},
             {"YUV422 YUYV", 0x02100032u, 2, bytes({16, 128, 16, 128, 235, 128, 235, 128}), QImage::Format_RGB888,
              grayOf(255)},
             {"too short", 0x01080001u, 2, bytes({1, 2, 3}), QImage::Format_Invalid, 0},
             {"unknown", 0x01080002u, 2, bytes({1, 2, 3, 4}), QImage::Format_Invalid, 0},
             {"endless", 0x01080001u, 1 << 30, bytes({1, 2, 3, 4}), QImage::Format_Invalid, 0}});
    }
    void pixelFormatsBecomeImages()
    {
        const auto [code, width, data, format, last] = Table::row<uint, int, QByteArray, QImage::Format, QRgb>();
        const RawImage raw{reinterpret_cast<const uchar*>(data.constData()), size_t(data.size()), width, 2, code, 0};
        const QImage image = PixelConversion::convert(raw);
        QCOMPARE(image.format(), format);
        if (!image.isNull())
            QCOMPARE(image.pixel(1, 1), last);
    }

    /// A sensor that sees nothing but red, behind each order of its filters, at each depth.
    void colourFiltersAreTakenInTheirOrder_data()
    {
        const auto rows = [](const char* order, int redAt, std::initializer_list<uint> codes) {
            for (const uint code : codes)
                QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(order, PixelConversion::name(code))))
                    << code << redAt;
        };
        Table::columns<uint, int>();
        rows("red first", 0, {0x01080009, 0x0110000D, 0x01100011, 0x010C0027, 0x010C002B, 0x010A0058, 0x010C0059});
        rows("red second", 1, {0x01080008, 0x0110000C, 0x01100010, 0x010C0026, 0x010C002A, 0x010A0056, 0x010C0057});
        rows("red third", 2, {0x0108000A, 0x0110000E, 0x01100012, 0x010C0028, 0x010C002C, 0x010A0054, 0x010C0055});
        rows("red last", 3, {0x0108000B, 0x0110000F, 0x01100013, 0x010C0029, 0x010C002D, 0x010A0052, 0x010C0053});
    }
    void colourFiltersAreTakenInTheirOrder()
    {
        const auto [code, redAt] = Table::row<uint, int>();
        constexpr int side = 8;
        RawImage raw{nullptr, 0, side, side, code, 0};
        QByteArray data(int(PixelConversion::bytesNeeded(raw)), '\0');
        const int bits = 8 * data.size() / (side * side);
        const bool packed = PixelConversion::name(code).endsWith("Packed");
        for (int i = 0; i < side * side; ++i) {
            const bool red = i / side % 2 * 2 + i % 2 == redAt;
            for (int bit = 0; red && bit < bits; ++bit) {
                const int at = packed ? 8 * (i / 2 * 3 + i % 2 * 2) + bit % 8 : i * bits + bit;
                data[at / 8] = char(data[at / 8] | 1 << at % 8);
            }
            if (red && bits == 16) // the upper bits of a word are not the camera's
                data[2 * i + 1] = char(PixelConversion::name(code).contains("10") ? 0x03 : 0x0F);
        }
        raw.data = reinterpret_cast<const uchar*>(data.constData());
        raw.size = size_t(data.size());
        const QImage image = PixelConversion::convert(raw);
        QCOMPARE(image.pixel(side / 2, side / 2), qRgb(255, 0, 0));
    }
};

QTEST_GUILESS_MAIN(DeviceCameraTest)
#include "tst_devicecamera.moc"
