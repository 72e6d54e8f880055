#include "CameraCell.h"
#include "sim/GigeSim.h"
#include "support/Table.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <cstring>

namespace {

using Clock = std::chrono::steady_clock;

/// How often a fault comes in the tests of endurance; more for figures.
int rounds()
{
    const int wanted = qEnvironmentVariableIntValue("VALVECELL_CAMERA_ROUNDS");
    return wanted > 0 ? wanted : 4;
}

/// An address that no other test program on this machine uses at the same time.
QHostAddress address(int number)
{
    const auto process = quint32(QCoreApplication::applicationPid()) & 0x3FFF;
    return QHostAddress(quint32(127u << 24 | (process + 256) << 8 | quint32(number)));
}

constexpr QSize sensor(64, 48);

/// The picture says when it was exposed.
QImage timed(quint64 exposedAtNs)
{
    QImage image(sensor, QImage::Format_Grayscale8);
    image.fill(Qt::black);
    std::memcpy(image.bits(), &exposedAtNs, sizeof exposedAtNs);
    return image;
}

Clock::time_point exposedAt(const QImage& image)
{
    quint64 at = 0;
    std::memcpy(&at, image.constBits(), sizeof at);
    return Clock::time_point(std::chrono::nanoseconds(at));
}

/// Simulated cameras and a cell that uses them: "cam1" by the address of the first.
class Network : public CameraCell
{
public:
    std::vector<std::unique_ptr<GigeSim>> sims;

    explicit Network(int cameras = 1)
    {
        for (int i = 1; i <= cameras; ++i) {
            sims.push_back(std::make_unique<GigeSim>(GigeSim::Identity{address(i), "SIM-" + QByteArray::number(i),
                                                                       "name" + QByteArray::number(i), sensor, 0},
                                                     timed));
            QString error;
            if (!sims.back()->start(&error))
                qFatal("%s", qPrintable(error));
        }
    }
    ~Network() { stop(); }

    /// Single quotes stand for double ones.
    static QByteArray entry(const QString& device, const QByteArray& settings = {}, const QByteArray& key = "cam1")
    {
        return "{'key':'" + key + "','type':120,'device':'" + device.toUtf8() + "','exposure_ms':1" +
               (settings.contains("timeout_ms") ? "" : ",'timeout_ms':60000") + (settings.isEmpty() ? "" : ",") +
               settings + "}";
    }
    void begin(const QByteArray& entries) { start(QByteArray("{'cameras':[" + entries + "]}").replace('\'', '"')); }
    void begin() { begin(entry(address(1).toString())); }

    CameraStatus status(const QString& key = "cam1") const { return settings()->status(key); }
    bool isRunning(const QString& key = "cam1") const { return status(key).state == CameraState::Running; }
    ICameraFeatures* features() const { return extensionOf<ICameraFeatures>(core.get()); }

    /// Captures, waits for the answer and judges it: never without an answer, never a picture that is older.
    Captured shoot(const QString& key = "cam1")
    {
        const int before = outcomes().size();
        const auto asked = Clock::now();
        capture(key, ++m_number);
        if (!QTest::qWaitFor([&] { return outcomes().size() > before; }, patienceMs))
            qFatal("capture %llu stayed without an answer", m_number);
        const Captured got = outcomes().last();
        longestAnswer = std::max(longestAnswer, std::chrono::duration<double>(got.at - asked).count());
        const std::chrono::microseconds clocks(500); // what two clocks can be compared to
        const bool old = !got.outcome.image.isNull() && exposedAt(got.outcome.image) + clocks < asked;
        wrong += old || got.outcome.number != m_number || got.outcome.problem.isEmpty() == got.outcome.image.isNull();
        return got;
    }
    /// Captures until there is an image again; seconds.
    double secondsToImage()
    {
        const auto begun = Clock::now();
        while (shoot().outcome.image.isNull()) {
            QTest::qWait(10);
            if (Clock::now() - begun > std::chrono::seconds(60))
                qFatal("the camera does not come back: %s", qPrintable(status().message));
        }
        return std::chrono::duration<double>(Clock::now() - begun).count();
    }

    double longestAnswer = 0; ///< seconds
    int wrong = 0;            ///< answers with an older picture, another number, or both or none of image and problem

private:
    quint64 m_number = 0;
};

} // namespace

class NetworkCameraTest : public QObject
{
    Q_OBJECT

private slots:
    void cameraIsOpenedByAddressSerialNumberOrName_data()
    {
        Table::of<QString, bool, QString>({{"address", address(2).toString(), true, {}},
                                           {"serial number", "SIM-2", true, {}},
                                           {"name", "name2", true, {}},
                                           {"nobody there", address(9).toString(), false, address(9).toString()},
                                           {"unknown", "SIM-9", false, "SIM-2"}});
    }
    void cameraIsOpenedByAddressSerialNumberOrName()
    {
        const auto [device, found, said] = Table::row<QString, bool, QString>();
        Network net(2);
        net.begin(Network::entry(device));
        if (found) {
            QTRY_VERIFY2(net.isRunning(), qPrintable(net.status().message));
            QCOMPARE(net.status().message, QString());
            const auto outcome = net.shoot().outcome;
            QVERIFY2(!outcome.image.isNull(), qPrintable(outcome.problem));
            QCOMPARE(net.sims[1]->counts().frames, 1u);
        } else {
            QTRY_VERIFY2(net.status().message.contains(said), qPrintable(net.status().message));
            QVERIFY(!net.shoot().outcome.problem.isEmpty());
        }
        QCOMPARE(net.wrong, 0);
    }

    void imagesComeInTheirFormatAndRegion_data()
    {
        Table::of<QByteArray, QString, QSize, QString>(
            {{"gray", "", "Mono8", sensor, ""},
             {"packed", "", "Mono12Packed", sensor, ""},
             {"colour filters", "", "BayerRG8", sensor, ""},
             {"colour", "", "RGB8", sensor, ""},
             {"region", "'region_x':8,'region_y':4,'region_width':32,'region_height':20", "Mono8", QSize(32, 20), ""},
             {"steps", "'region_x':9,'region_width':35", "Mono8", QSize(32, 48), "32 × 48"},
             {"not supported", "", "Mono8s", QSize(0, 0), "Mono8, Mono12Packed, BayerRG8, RGB8"},
             {"exposure beyond range", "'gain_db':40", "Mono8", sensor, "gain_db"},
             {"no such line", "'trigger_source':'Line5'", "Mono8", QSize(0, 0), "Line0, Line1"}});
    }
    void imagesComeInTheirFormatAndRegion()
    {
        const auto [settings, format, size, said] = Table::row<QByteArray, QString, QSize, QString>();
        Network net;
        const QByteArray features = "'features':{'PixelFormat':'" + format.toUtf8() + "'}";
        net.begin(Network::entry(address(1).toString(), settings + (settings.isEmpty() ? "" : ",") + features));
        QTRY_VERIFY2(net.isRunning(), qPrintable(net.status().message));
        const auto outcome = net.shoot().outcome;
        QCOMPARE(outcome.image.size(), size);
        QVERIFY2((outcome.problem + net.status().message).contains(said), qPrintable(net.status().message));
        QCOMPARE(net.status().message.isEmpty(), said.isEmpty());
    }

    void twoStationsHaveTwoCamerasAndOneCameraHasOneMaster()
    {
        Network net(2);
        net.begin(Network::entry("SIM-1") + "," + Network::entry("SIM-2", {}, "cam2"));
        QTRY_VERIFY(net.isRunning() && net.isRunning("cam2"));
        QVERIFY(!net.shoot("cam1").outcome.image.isNull() && !net.shoot("cam2").outcome.image.isNull());

        Network other(0);
        other.begin(Network::entry(address(1).toString()));
        QTRY_VERIFY2(other.status().message.contains(QStringLiteral("另一个程序")), qPrintable(other.status().message));
        QVERIFY(other.shoot().outcome.problem.contains(QStringLiteral("另一个程序")));
        auto* search = extensionOf<ICameraDiscovery>(other.core.get());
        search->discover();
        QTRY_VERIFY(!search->isDiscovering());
        QMap<QString, FoundCamera> found;
        for (const FoundCamera& camera : search->found())
            found.insert(camera.serial, camera);
        QCOMPARE(found["SIM-1"].configuredAs, "cam1");
        QCOMPARE(found["SIM-2"].userName, "name2");
        QCOMPARE(found["SIM-2"].settings, QVariantMap({{"device", "SIM-2"}}));
        QVERIFY(!found["SIM-2"].problem.isEmpty());
        net.stop();
        QTRY_VERIFY(other.isRunning()); // by itself, once it is free
    }

    void hardwareTriggerGivesTheFirstPictureAfterTheRequest()
    {
        Network net;
        net.begin(Network::entry(address(1).toString(), "'trigger_source':'Line0','timeout_ms':60000"));
        QTRY_VERIFY(net.isRunning());
        quint64 fired = 0;
        const auto fire = [&] {
            net.sims[0]->fireLine();
            ++fired;
        };
        while (fired < 20) // before anybody asks
            fire();
        QTRY_COMPARE(net.sims[0]->counts().frames, 20u);
        const auto asked = Clock::now();
        net.capture("cam1", 7);
        net.core->trigger({"cam1"});
        QTRY_COMPARE_WITH_TIMEOUT((fire(), net.outcomes().size()), 1, patienceMs);
        QVERIFY(exposedAt(net.outcomes().last().outcome.image) >= asked);
        QTRY_COMPARE_WITH_TIMEOUT((fire(), net.images("cam1").size()), 1, patienceMs);
        QVERIFY(exposedAt(net.images("cam1")[0]) > exposedAt(net.outcomes().last().outcome.image));
        QTRY_COMPARE(net.sims[0]->counts().frames, fired);
        QVERIFY(net.settings()->applySettings("cam1", {{"timeout_ms", 50}}, nullptr));
        const QString problem = net.shoot().outcome.problem;
        QVERIFY2(problem.contains("Line0"), qPrintable(problem));
        QVERIFY(net.isRunning());
    }

    void unaskedFramesNeitherPileUpNorAreTaken()
    {
        Network net;
        net.begin();
        QTRY_VERIFY(net.isRunning());
        GigeSim::Faults faults;
        faults.unasked = 400;
        net.sims[0]->setFaults(faults);
        for (int i = 0; i < 20; ++i)
            QVERIFY2(!net.shoot().outcome.image.isNull(), qPrintable(net.status().message));
        QCOMPARE(net.wrong, 0);
    }

    void networkThatCarriesNoLargePacketsGetsSmallerOnes_data()
    {
        Table::of<QByteArray, QString>({{"automatic", "'packet_size':0", ""}, {"jumbo", "'packet_size':9000", "9000"}});
    }
    void networkThatCarriesNoLargePacketsGetsSmallerOnes()
    {
        const auto [settings, said] = Table::row<QByteArray, QString>();
        Network net;
        GigeSim::Faults faults;
        faults.largestPacket = 1500;
        net.sims[0]->setFaults(faults);
        net.begin(Network::entry(address(1).toString(), settings));
        QTRY_VERIFY(net.isRunning());
        QVERIFY(!net.shoot().outcome.image.isNull());
        QVERIFY2(net.status().message.contains(said), qPrintable(net.status().message));
        QCOMPARE(net.status().message.isEmpty(), said.isEmpty());
    }

    void featuresAreTheCamerasOwnAndLast()
    {
        Network net;
        net.begin();
        QTRY_VERIFY(net.isRunning());
        std::mutex mutex;
        QMap<QString, CameraFeature> all;
        QStringList said;
        net.features()->readFeatures("cam1", [&](const QVector<CameraFeature>& features, const QString&) {
            const std::lock_guard<std::mutex> lock(mutex);
            for (const CameraFeature& feature : features)
                all.insert(feature.name, feature);
        });
        const auto count = [&](auto& list) {
            const std::lock_guard<std::mutex> lock(mutex);
            return list.size();
        };
        QTRY_VERIFY(count(all) > 15);
        const CameraFeature black = all["BlackLevel"];
        QVERIFY(black.kind == CameraFeature::Kind::Whole && black.maximum == 255 && black.caption == "Black Level" &&
                black.category == "Analog Control" && black.tip.contains("pixel") && black.locked.isEmpty());
        QVERIFY(all["ReverseX"].kind == CameraFeature::Kind::Switch && all["ReverseX"].value == QVariant(false));
        QCOMPARE(all["PixelFormat"].choices.first(), "Mono8");
        QCOMPARE(all["AcquisitionFrameRate"].unit, "Hz");
        QVERIFY(!all["DeviceTemperature"].locked.isEmpty() && all["DeviceTemperature"].value.toDouble() == 42.5);
        QVERIFY2(all["ExposureTime"].locked.contains("exposure_ms"), "a setting has it");
        const auto note = [&](const QString& error) {
            const std::lock_guard<std::mutex> lock(mutex);
            said.append(error);
        };
        net.features()->writeFeature("cam1", "BlackLevel", 300, note);
        net.features()->writeFeature("cam1", "DeviceTemperature", 1.0, note);
        net.features()->writeFeature("cam1", "BlackLevel", 30, note);
        net.features()->writeFeature("cam1", "UserSetLoad", QVariant(), note);
        net.features()->writeFeature("nobody", "BlackLevel", 30, note);
        QTRY_COMPARE(count(said), 5);
        QCOMPARE(said.filter(QRegularExpression("^$")).size(), 2);
        QCOMPARE(net.stored()["cameras"].toArray()[0].toObject()["features"].toObject(),
                 QJsonObject({{"BlackLevel", 30}}));
        net.sims[0]->powerCycle();
        QTRY_COMPARE(net.features()->statistics("cam1").reopened, 1u);
        std::atomic<double> again{-1};
        net.features()->readFeatures("cam1", [&](const QVector<CameraFeature>& features, const QString&) {
            for (const CameraFeature& feature : features)
                again = feature.name == "BlackLevel" ? feature.value.toDouble() : again.load();
        });
        QTRY_COMPARE(again.load(), 30.0);
    }

    /// Each time the camera has just given a picture, and afterwards gives one again. Figures for many rounds:
    /// VALVECELL_CAMERA_ROUNDS=500 build/dev/tests/tst_networkcamera faultsAreAnsweredAndEnd
    void faultsAreAnsweredAndEnd_data()
    {
        Table::of<QString>(
            {{"power cut", "cut"}, {"cable out", "silent"}, {"stall", "stalled"}, {"incomplete", "drop"}});
    }
    void faultsAreAnsweredAndEnd()
    {
        const auto [fault] = Table::row<QString>();
        Network net;
        net.begin(Network::entry(address(1).toString(), "'timeout_ms':800"));
        QTRY_VERIFY(net.isRunning());
        double longestReturn = 0;
        for (int round = 0; round < rounds(); ++round) {
            net.secondsToImage();
            GigeSim::Faults faults;
            faults.silent = fault == "silent" || fault == "cut";
            faults.stalled = fault == "stalled";
            faults.dropEvery = fault == "drop" ? 1 : 0;
            net.sims[0]->setFaults(faults);
            if (fault == "cut")
                net.sims[0]->powerCycle();
            const auto missed = net.shoot().outcome;
            QVERIFY2(!missed.problem.isEmpty(), "no picture can have come");
            if (fault != "drop")
                net.shoot();
            net.sims[0]->setFaults({});
            longestReturn = std::max(longestReturn, net.secondsToImage());
        }
        QCOMPARE(net.wrong, 0);
        const auto counts = net.features()->statistics("cam1");
        QCOMPARE(counts.reopened > 0, fault != "drop");
        QCOMPARE(counts.incomplete > 0, fault == "drop");
        qInfo("%d times: longest answer %.3f s, longest return %.3f s, wrong answers %d", rounds(), net.longestAnswer,
              longestReturn, net.wrong);
    }

    void everyNumberIsAnsweredOnceWhateverHappensToItsCamera()
    {
        Network net;
        net.saveImage("/images/a.png", 5);
        const QByteArray slow = ",{'key':'slow','type':100,'folder':'images','exposure_ms':10000}";
        net.begin(Network::entry(address(1).toString()) + slow + ",{'key':'none','type':140}");
        QTRY_VERIFY(net.isRunning());
        quint64 number = 0;
        for (int i = 0; i < 30; ++i) {
            for (const char* key : {"cam1", "slow", "none", "stranger"})
                net.capture(key, ++number);
        }
        QVERIFY(net.list()->changeCameras({}, {"cam1"}, nullptr));
        net.capture("cam1", ++number);
        net.core->stop();
        QMap<quint64, int> answers;
        for (const auto& captured : net.outcomes())
            ++answers[captured.outcome.number];
        QCOMPARE(answers.size(), int(number));
        QCOMPARE(net.outcomes().size(), int(number));
        QCOMPARE(net.images("slow").size() + net.notes().size(), 0);
    }
};

QTEST_GUILESS_MAIN(NetworkCameraTest)
#include "tst_networkcamera.moc"
