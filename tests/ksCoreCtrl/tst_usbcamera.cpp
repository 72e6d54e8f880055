#include "FakeV4l2.h"
#include "device/v4l2/V4l2Device.h"
#include "support/Table.h"

#include <QBuffer>
#include <QtTest>

namespace {

using Clock = std::chrono::steady_clock;
using End = DeviceShot::End;
using namespace std::chrono_literals;

/// A camera of the kernel's, and the device that drives it.
struct Bench
{
    FakeV4l2 kernel;
    V4l2Device device{kernel};
    QVariantMap settings{{"device", "S1"}, {"exposure_ms", 2.0}, {"gain_percent", 50.0}, {"pixel_format", "auto"}};
    std::atomic<bool> cancelled{false};
    Clock::time_point asked = Clock::now();

    Bench()
    {
        kernel.add(V4L2_CID_USER_CLASS, V4L2_CTRL_TYPE_CTRL_CLASS, "User Controls", 0, 0, 0);
        kernel.add(V4L2_CID_GAIN, V4L2_CTRL_TYPE_INTEGER, "Gain", 100, 300, 100);
        kernel.add(V4L2_CID_CAMERA_CLASS, V4L2_CTRL_TYPE_CTRL_CLASS, "Camera Controls", 0, 0, 0);
        kernel.add(V4L2_CID_EXPOSURE_AUTO, V4L2_CTRL_TYPE_MENU, "Auto Exposure", 0, 3, 3, 0,
                   {"", "Manual Mode", "", "Aperture Priority Mode"});
        kernel.add(V4L2_CID_EXPOSURE_ABSOLUTE, V4L2_CTRL_TYPE_INTEGER, "Exposure Time, Absolute", 3, 500, 100);
        kernel.add(V4L2_CID_EXPOSURE_AUTO_PRIORITY, V4L2_CTRL_TYPE_BOOLEAN, "Exposure, Dynamic Framerate", 0, 1, 1);
    }

    QString open()
    {
        device.close();
        return device.open(settings, {});
    }
    DeviceShot capture() { return device.capture({asked, 30ms, cancelled}); }
    qint32 value(quint32 id) { return kernel.find(id)->value; }

    /// A whole frame all of one level, stamped some milliseconds after the capture was asked for.
    FakeV4l2::Frame frame(std::chrono::milliseconds after, char level, quint32 sequence = 0) const
    {
        const QByteArray data(int(kernel.format.bytesperline * kernel.format.height), level);
        return {asked + after, data, sequence, 0, 0};
    }
};

QByteArray jpeg(int level)
{
    QImage image(32, 16, QImage::Format_Grayscale8);
    image.fill(level);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    image.save(&file, "JPEG");
    return file.data();
}

} // namespace

class UsbCameraTest : public QObject
{
    Q_OBJECT

private slots:
    void firstFrameThatBeganAfterTheTriggerIsTaken_data()
    {
        constexpr int own = V4L2_BUF_FLAG_TIMESTAMP_MONOTONIC;
        // Exposure 2 ms, period 10 ms; the frames are stamped at -100, 1, 5, and 20 ms.
        Table::of<int, int>({{"stamped at the beginning", own | V4L2_BUF_FLAG_TSTAMP_SRC_SOE, 5},
                             {"stamped at the end", own | V4L2_BUF_FLAG_TSTAMP_SRC_EOF, 20}});
    }
    void firstFrameThatBeganAfterTheTriggerIsTaken()
    {
        const auto [flags, taken] = Table::row<int, int>();
        Bench bench;
        bench.kernel.stampFlags = quint32(flags);
        QCOMPARE(bench.open(), QString());
        quint32 number = 0xFFFFFFFE; // it wraps
        for (const auto after : {-100ms, 1ms, 5ms, 20ms})
            bench.kernel.frames.push_back(bench.frame(after, char(after.count()), number++));
        const DeviceShot shot = bench.capture();
        QVERIFY2(shot.end == End::Image, qPrintable(shot.problem));
        QCOMPARE(qGray(shot.image.pixel(0, 0)), taken);
        QCOMPARE(shot.image.size(), QSize(32, 16));
        QCOMPARE(shot.frame, taken == 5 ? quint64(0x100000000) : quint64(0x100000001));
        QCOMPARE(bench.kernel.queue.size(), size_t(4));
    }

    void framesWithoutTimeCountFromTheTriggerOn()
    {
        Bench bench;
        bench.kernel.stampFlags = 0;
        bench.kernel.find(V4L2_CID_EXPOSURE_ABSOLUTE)->query.maximum = 3;
        bench.open();
        for (char old = 1; old <= 4; ++old)
            bench.kernel.frames.push_back(bench.frame(0ms, old));
        QCOMPARE(int(bench.capture().end), int(End::Late));
        bench.asked = Clock::now() - 50ms;
        bench.kernel.frames.assign(4, bench.frame(0ms, 1)); // what waits in the buffers
        bench.kernel.frames.push_back(bench.frame(0ms, 9));
        QCOMPARE(qGray(bench.capture().image.pixel(3, 3)), 9);
    }

    void damagedFrameIsPassedOverOrReported_data()
    {
        Table::of<int, QString, bool>({{"flagged by the driver", int(V4L2_BUF_FLAG_ERROR), "auto", false},
                                       {"too short", 0, "auto", true},
                                       {"JPEG without its end", 0, "MJPG", true},
                                       {"empty", 0, "MJPG", false}});
    }
    void damagedFrameIsPassedOverOrReported()
    {
        const auto [flags, format, isShort] = Table::row<int, QString, bool>();
        Bench bench;
        bench.settings["pixel_format"] = format;
        QCOMPARE(bench.open(), QString());
        auto good = bench.frame(20ms, 77);
        if (format == "MJPG")
            good.data = jpeg(77) + QByteArray(5, '\0');
        auto bad = good;
        bad.flags = quint32(flags);
        bad.data.resize(isShort ? bad.data.size() - 30 : flags ? bad.data.size() : 0);
        bench.kernel.frames = {bad};
        QCOMPARE(int(bench.capture().end), int(End::Incomplete));
        bench.kernel.frames = {bad, good};
        const DeviceShot shot = bench.capture();
        QVERIFY2(shot.end == End::Image && qAbs(qGray(shot.image.pixel(5, 5)) - 77) < 3, qPrintable(shot.problem));
        QCOMPARE(bench.device.lostPackets(), quint64(2));
    }

    void errorIsSaidWithItsRemedyAndNothingStaysOpen_data()
    {
        Table::of<int, int, QString>({{"other program", int(VIDIOC_S_FMT), EBUSY, "其他程序"},
                                      {"buffers of another", int(VIDIOC_REQBUFS), EBUSY, "其他程序"},
                                      {"no bandwidth", int(VIDIOC_STREAMON), ENOSPC, "带宽"},
                                      {"no memory", int(VIDIOC_REQBUFS), ENOMEM, "内存"},
                                      {"no camera", int(VIDIOC_QUERYCAP), ENOTTY, "S1"},
                                      {"control does not answer", int(VIDIOC_S_CTRL), EIO, "传输"},
                                      {"unexpected", int(VIDIOC_QUERYBUF), EINVAL, "VIDIOC_QUERYBUF"},
                                      {"no right", 0, EACCES, "video 组"}});
    }
    void errorIsSaidWithItsRemedyAndNothingStaysOpen()
    {
        const auto [request, error, said] = Table::row<int, int, QString>();
        Bench bench;
        if (request)
            bench.kernel.errors[quint32(request)] = error;
        else
            bench.kernel.openError = error;
        const QString problem = bench.open();
        QVERIFY2(problem.contains(said), qPrintable(problem));
        QVERIFY(bench.kernel.opened == 0 && bench.kernel.mapped == 0);
        bench.kernel.errors.clear();
        bench.kernel.openError = 0;
        QCOMPARE(bench.open(), QString());
    }

    void cameraThatGoesWhileItStreamsIsFoundAgainElsewhere_data()
    {
        Table::of<QString>({{"by serial number", "S1"}, {"by path", "/dev/video0"}});
    }
    void cameraThatGoesWhileItStreamsIsFoundAgainElsewhere()
    {
        const auto [name] = Table::row<QString>();
        Bench bench;
        bench.settings["device"] = name;
        QCOMPARE(bench.open(), QString());
        bench.kernel.there = false;
        QVERIFY(bench.device.check().contains("检查插头"));
        const DeviceShot shot = bench.capture();
        QVERIFY(shot.end == End::Lost && shot.problem.contains("检查插头"));
        QVERIFY(!bench.open().isEmpty());
        QVERIFY(bench.kernel.opened == 0 && bench.kernel.mapped == 0);
        bench.kernel.there = true;
        bench.kernel.node.path = "/dev/video4";
        bench.kernel.others = {{"/dev/video0", "Vendor", "Webcam", "S2"}}; // another came in its place
        QCOMPARE(bench.open(), QString());
        QCOMPARE(bench.device.identity().address, "/dev/video4");
        bench.kernel.frames = {{bench.asked, {}, 0, 0, EIO}};
        QCOMPARE(int(bench.capture().end), int(End::Lost));
    }

    void cameraIsNamedSoThatNobodyTakesAnother()
    {
        Bench bench;
        bench.kernel.others = {{"/dev/video2", "Vendor", "Webcam", "S1"}, {"/dev/video3", "Vendor", "Webcam", "S3"}};
        const QString problem = bench.open();
        QVERIFY2(problem.contains("2 台") && problem.contains("usb-1-20"), qPrintable(problem));
        QStringList names;
        for (const FoundCamera& camera : V4l2Bus(bench.kernel).cameras())
            names << camera.settings["device"].toString() + '=' + camera.address;
        QCOMPARE(names.join(' '), "usb-1-10=/dev/video0 usb-1-20=/dev/video2 S3=/dev/video3");
        bench.settings["device"] = "usb-1-20";
        QCOMPARE(bench.open(), QString());
        QCOMPARE(bench.device.identity().address, "/dev/video2");
        bench.settings["device"] = "S9";
        QVERIFY(bench.device.apply(bench.settings).contains("S9"));
    }

    void settingsComeIntoForceAsFarAsTheCameraCan()
    {
        Bench bench;
        bench.settings["exposure_ms"] = 500.0;
        bench.settings["pixel_format"] = "Y12";
        bench.settings["width"] = bench.settings["height"] = 4000;
        QCOMPARE(bench.open(), QString());
        QCOMPARE(bench.value(V4L2_CID_EXPOSURE_AUTO), int(V4L2_EXPOSURE_MANUAL));
        QCOMPARE(bench.value(V4L2_CID_EXPOSURE_AUTO_PRIORITY), 0);
        QCOMPARE(bench.value(V4L2_CID_EXPOSURE_ABSOLUTE), 500); // 50 ms
        QCOMPARE(bench.value(V4L2_CID_GAIN), 200);
        for (const char* said : {"Y12", "32 × 16", "500 毫秒", "0.3 到 50"})
            QVERIFY2(bench.device.warning().contains(said), qPrintable(bench.device.warning()));
        bench.settings = {{"device", "S1"}, {"exposure_ms", 2.0}, {"pixel_format", "YUYV"}, {"gain_percent", 0.0}};
        QCOMPARE(bench.device.apply(bench.settings), QString());
        QCOMPARE(bench.kernel.format.pixelformat, quint32(V4L2_PIX_FMT_YUYV));
        QCOMPARE(bench.device.warning(), QString());
        bench.kernel.frames = {bench.frame(500ms, char(128))};
        QVERIFY(qAbs(qGray(bench.capture().image.pixel(1, 1)) - 128) < 8);

        bench.kernel.controls.remove(4);
        bench.kernel.controls.remove(1);
        QCOMPARE(bench.open(), QString());
        QCOMPARE(bench.device.missingSettings().keys().join(' '), "exposure_ms gain_percent");
        bench.kernel.forcedFormat = v4l2_fourcc('H', '2', '6', '4');
        QVERIFY(bench.open().contains("H264"));
    }

    void frameFromBeforeAChangeIsNotTaken()
    {
        Bench bench;
        bench.open();
        bench.settings["exposure_ms"] = 1.0;
        bench.asked = Clock::now();
        QCOMPARE(bench.device.apply(bench.settings), QString());
        bench.kernel.frames = {bench.frame(5ms, 1), bench.frame(1000ms, 2)};
        QCOMPARE(qGray(bench.capture().image.pixel(0, 0)), 2);
        bench.cancelled = true;
        QCOMPARE(int(bench.capture().end), int(End::Late));
    }

    void controlsAreFeatures()
    {
        Bench bench;
        bench.kernel.controls[1].query.flags = V4L2_CTRL_FLAG_INACTIVE;
        bench.kernel.add(V4L2_CID_PAN_RESET, V4L2_CTRL_TYPE_BUTTON, "Pan, Reset", 0, 0, 0, V4L2_CTRL_FLAG_WRITE_ONLY);
        bench.kernel.add(V4L2_CID_PRIVACY, V4L2_CTRL_TYPE_BOOLEAN, "Privacy", 0, 1, 1, V4L2_CTRL_FLAG_READ_ONLY);
        bench.kernel.add(V4L2_CID_ZOOM_ABSOLUTE, V4L2_CTRL_TYPE_INTEGER, "Zoom", 0, 1, 1, V4L2_CTRL_FLAG_DISABLED);
        QCOMPARE(bench.device.open(bench.settings, {{"auto_exposure", "Aperture Priority Mode"}, {"iris", 3}}),
                 QString());
        QCOMPARE(bench.value(V4L2_CID_EXPOSURE_AUTO), 3);
        QVERIFY(bench.device.warning().contains("iris"));
        QStringList seen;
        for (const QString& name : bench.device.featureNames()) {
            const CameraFeature one = bench.device.feature(name);
            seen << QStringList{one.category.left(4), name, one.value.toString(), one.choices.join('+'), one.locked}
                        .join('|');
        }
        QCOMPARE(seen.join('\n'), QString("User|gain|200||现在不起作用：先关闭相应的自动功能\n"
                                          "Came|auto_exposure|Aperture Priority Mode|"
                                          "Manual Mode+Aperture Priority Mode|\n"
                                          "Came|exposure_time_absolute|20||\n"
                                          "Came|exposure_dynamic_framerate|false||\n"
                                          "Came|pan_reset|||\n"
                                          "Came|privacy|true||只读"));
        QCOMPARE(bench.device.writeFeature("auto_exposure", "Manual Mode"), QString());
        QCOMPARE(bench.value(V4L2_CID_EXPOSURE_AUTO), 1);
        QVERIFY(bench.device.writeFeature("exposure_time_absolute", 501).contains("3 到 500"));
        QVERIFY(bench.device.writeFeature("auto_exposure", "Laser").contains("Laser"));
        QVERIFY(bench.device.writeFeature("privacy", false).contains("只读"));
        bench.kernel.errors[VIDIOC_S_CTRL] = EBUSY;
        QVERIFY(bench.device.writeFeature("gain", 150).contains("取像时"));
    }
};

QTEST_MAIN(UsbCameraTest)
#include "tst_usbcamera.moc"
