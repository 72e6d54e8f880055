#include "sets/DemoHome.h"
#include "sets/WheelSet.h"
#include "support/Table.h"

#include <valvecell/HomeFiles.h>

#include <opencv2/imgcodecs.hpp>

namespace {

struct Outcome
{
    int code;
    QString complaint;
};

Outcome wheelgen(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral(VALVECELL_BIN_DIR "/wheelgen"), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
}

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject json(const QString& path)
{
    return HomeFiles::readJson(path).object;
}

QJsonArray truthOf(const QString& folder)
{
    return json(folder + QStringLiteral("/truth.json"))["images"].toArray();
}

cv::Mat image(const QString& path)
{
    const QByteArray bytes = content(path);
    return cv::imdecode(std::vector<uchar>(bytes.begin(), bytes.end()), cv::IMREAD_UNCHANGED);
}

QStringList modelNames(const QJsonArray& indexTable)
{
    QStringList names;
    for (const QJsonValue& entry : indexTable)
        names.append(entry["Name"].toString());
    return names;
}

/// Small images keep the tests quick; nothing else depends on their size.
DemoPlan smallDemo(const QTemporaryDir& dir)
{
    DemoPlan plan;
    plan.home = dir.path() + QStringLiteral("/演示");
    plan.size = {240, 200};
    return plan;
}

bool make(const DemoPlan& plan, QStringList* made = nullptr)
{
    QStringList files;
    QString error;
    const bool good = DemoHome::make(plan, made ? made : &files, &error);
    if (!good)
        qWarning("%s", qUtf8Printable(error));
    return good;
}

} // namespace

class WheelgenTest : public QObject
{
    Q_OBJECT

private slots:
    void folderWithChineseNameGetsImagesAndTruth()
    {
        const QString format = QStringLiteral("png");
        const QTemporaryDir dir;
        const QString folder = dir.path() + QStringLiteral("/轮毂 样品/一");
        const Outcome outcome = wheelgen({"--out", folder, "--count", "10", "--without-hole", "0.2", "--size",
                                          "151x133", "--format", format, "--seed", "3"});
        QCOMPARE(outcome.code, 0);
        const QJsonArray truth = truthOf(folder);
        QCOMPARE(truth.size(), 10);
        int holes = 0;
        for (const QJsonValue& entry : truth) {
            const cv::Mat picture = image(folder + '/' + entry["file"].toString());
            QCOMPARE(picture.type(), CV_8UC1);
            QCOMPARE(QSize(picture.cols, picture.rows), QSize(151, 133));
            holes += entry["hole"].toBool();
            for (const char* key : {"angle", "x", "y", "edge_radius"})
                QCOMPARE(entry[QLatin1String(key)].isDouble(), entry["hole"].toBool());
            for (const char* key : {"edge", "inside"})
                QCOMPARE(!entry[QLatin1String(key)].toString().isEmpty(), entry["hole"].toBool());
            QVERIFY(entry["hub_x"].isDouble() && entry["ring_radius"].toDouble() > 0);
            QVERIFY(json(folder + "/params.json").contains(entry["file"].toString()));
        }
        QCOMPARE(holes, 8);
        QCOMPARE(truth[0]["file"].toString(), QStringLiteral("0001.") + format);
    }

    void wheelDependsOnSeedAndNumberOnly()
    {
        const QTemporaryDir dir;
        const QStringList seed{"--size", "160x120", "--seed", "18446744073709551615"};
        const auto wheels = [&](const char* folder, const QStringList& plan) {
            const QString path = dir.filePath(folder);
            return wheelgen(QStringList{"--out", path} + plan).code == 0 ? path + '/' : QString();
        };
        const QString one = wheels("one", seed + QStringList{"--count", "4", "--jobs", "1"});
        const QString three = wheels("three", seed + QStringList{"--count", "4", "--jobs", "3"});
        const QString single = wheels("single", seed + QStringList{"--count", "1"});
        const QString other = wheels("other", {"--size", "160x120", "--seed", "1", "--count", "1"});
        for (const char* name : {"0001.bmp", "0004.bmp", "truth.json"})
            QCOMPARE(content(one + name), content(three + name));
        QCOMPARE(content(one + "0001.bmp"), content(single + "0001.bmp"));
        QCOMPARE(truthOf(one)[0], truthOf(single)[0]);
        QVERIFY(content(one + "0001.bmp") != content(other + "0001.bmp"));
    }

    void badArgumentsAreNamed_data()
    {
        Table::of<QStringList, QString>(
            {{"nothing", QStringList{}, "--out"},
             {"no wheel", QStringList{"--out", "x", "--count", "0"}, "--count"},
             {"count is a word", QStringList{"--out", "x", "--count", "many"}, "--count"},
             {"fraction", QStringList{"--out", "x", "--without-hole", "1.5"}, "--without-hole"},
             {"design", QStringList{"--out", "x", "--design", "square"}, "--design"},
             {"size too large", QStringList{"--out", "x", "--size", "20000x20000"}, "--size"},
             {"format", QStringList{"--out", "x", "--format", "gif"}, "--format"},
             {"seed of the demo", QStringList{"--demo", "x", "--seed", "1"}, "--seed"},
             {"port of a set", QStringList{"--out", "x", "--port", "COM3"}, "--port"},
             {"no such folder", QStringList{"--demo", "x", "--cameras-from", "/no/such/folder"}, "/no/such/folder"},
             {"stray word", QStringList{"--out", "x", "y"}, "\"y\""}});
    }
    void badArgumentsAreNamed()
    {
        const auto [arguments, named] = Table::row<QStringList, QString>();
        const Outcome outcome = wheelgen(arguments);
        QCOMPARE(outcome.code, 2);
        QVERIFY2(outcome.complaint.contains(named), qPrintable(outcome.complaint));
    }

    void folderThatCannotBeMadeIsNamed()
    {
        const QTemporaryDir dir;
        QVERIFY(HomeFiles::writeFile(dir.filePath("file"), "x", nullptr));
        for (const char* option : {"--out", "--demo"}) {
            const Outcome outcome = wheelgen({option, dir.filePath("file/below"), "--size", "80x80"});
            QVERIFY2(outcome.code == 1 && outcome.complaint.contains("file/below"), qPrintable(outcome.complaint));
        }
    }

    void freshHomeReplacesADemoAndNothingElse()
    {
        const QTemporaryDir dir;
        DemoPlan plan = smallDemo(dir);
        const QString config = plan.home + "/user/globalConfig.json", camera = plan.home + "/user/camera.json";
        const QString archive = dir.filePath("archive");
        QVERIFY(HomeFiles::writeFile(config, "{\"onlineMode\": false}", nullptr)); // a real cell's
        QVERIFY(make(plan));
        plan.fresh = true;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("no demo"));
        QVERIFY(!make(plan));
        QCOMPARE(content(config), QByteArray("{\"onlineMode\": false}"));
        QVERIFY(QFile::remove(camera));
        plan.fresh = false;
        QStringList made;
        QVERIFY(make(plan, &made));
        QCOMPARE(made, QStringList{"user/camera.json"});

        plan.home += "/2";
        QVERIFY(make(plan) && HomeFiles::writeFile(archive + "/kept.jpg", "x", nullptr));
        QVERIFY(QFile::link(archive, plan.home + "/DBFiles"));
        QVERIFY(HomeFiles::writeFile(plan.home + "/user/globalConfig.json", "{\"length_1\": 5}", nullptr));
        plan.fresh = true;
        QVERIFY(make(plan) && json(plan.home + "/user/globalConfig.json").contains("station_camkey_1"));
        QVERIFY(QFile::exists(archive + "/kept.jpg") && !QFile::exists(plan.home + "/DBFiles"));
        plan.fresh = false;
        const QString picture = plan.home + "/images/1/0003.bmp", stamp = plan.home + "/demo.json";
        const QByteArray whole = content(picture);
        for (const auto& [key, value] : {std::pair("complete", QJsonValue(false)), {"version", QJsonValue(0)}}) {
            QVERIFY(HomeFiles::writeFile(picture, whole.left(100), nullptr)); // as when the making was cut short
            QJsonObject changed = json(stamp);
            changed[QLatin1String(key)] = value;
            QVERIFY(HomeFiles::writeJson(stamp, changed, nullptr) && make(plan));
            QVERIFY2(content(picture) == whole && json(stamp)["complete"].toBool(), key);
        }
    }

    void demoHomeFitsTogether()
    {
        const QTemporaryDir dir;
        const DemoPlan plan = smallDemo(dir);
        QCOMPARE(wheelgen({"--demo", plan.home, "--size", "240x200"}).code, 0);
        const QJsonObject config = json(plan.home + "/user/globalConfig.json");
        const QJsonObject index = json(plan.home + "/user/plcIndex.json");
        const QJsonArray cameras = json(plan.home + "/user/camera.json")["cameras"].toArray();
        QCOMPARE(cameras.size(), 2);
        for (int station = 1; station <= 2; ++station) {
            const auto key = [&](const char* name) { return config[QString("%1_%2").arg(name).arg(station)]; };
            const QJsonObject camera = cameras[station - 1].toObject();
            QCOMPARE(camera["key"], key("station_camkey"));
            const QString folder = plan.home + '/' + camera["folder"].toString();
            const QString solution = plan.home + "/user/solutions/" + key("station_solution").toString();
            QCOMPARE(json(solution + "/solution.json")["name"], key("station_solution"));
            QCOMPARE(key("StationScale"), json(folder + "/truth.json")["mm_per_px"]);
            QStringList models = modelNames(index[key("station_solution").toString()].toArray());
            QVERIFY(models.contains(key("station_runModel").toString()) && models.removeOne("auto"));
            for (const QString& model : models)
                QCOMPARE(json(solution + '/' + model + ".model.json")["name"].toString(), model);
            checkWheels(folder, solution, index[key("station_solution").toString()].toArray());
        }
        const QSettings settings(plan.home + "/user/systemConfig.ini", QSettings::IniFormat);
        QCOMPARE(settings.value("COM/Baute").toInt(), 115200);
        QVERIFY(content(plan.home + "/user/systemConfig.ini").contains((plan.home + "/plc").toUtf8()));
        QVERIFY(truthOf(plan.home + "/images/1") != truthOf(plan.home + "/images/2"));
        for (const QString& port : {QStringLiteral("tcp:[::1]:4001"), plan.home + "/线,1"}) {
            QCOMPARE(wheelgen({"--demo", plan.home, "--size", "240x200", "--port", port}).code, 0);
            QSettings changed(plan.home + "/user/systemConfig.ini", QSettings::IniFormat);
            changed.setIniCodec("UTF-8");
            QCOMPARE(changed.value("COM/Port").toString(), port);
        }
    }

    void camerasDeliverAnotherFolderAndComeBack()
    {
        const QTemporaryDir dir;
        DemoPlan plan = smallDemo(dir);
        QVERIFY(make(plan));
        const QString own = dir.filePath("自己的"), bare = dir.filePath("bare");
        QCOMPARE(wheelgen({"--out", own, "--count", "2", "--size", "100x100"}).code, 0);
        QVERIFY(QDir().mkpath(bare));
        const auto folderOf = [&](int camera) {
            return json(plan.home + "/user/camera.json")["cameras"].toArray()[camera].toObject()["folder"].toString();
        };
        plan.camerasFrom = own;
        QVERIFY(make(plan));
        QCOMPARE(folderOf(0), own);
        QCOMPARE(folderOf(1), own);
        QCOMPARE(truthOf(plan.home + "/images/2"), truthOf(own));
        plan.camerasFrom = bare;
        QVERIFY(make(plan) && !QFile::exists(plan.home + "/images/1/truth.json"));
        plan.camerasFrom.clear();
        QVERIFY(make(plan));
        QCOMPARE(folderOf(0), QStringLiteral("images/1"));
        QCOMPARE(truthOf(plan.home + "/images/1").size(), DemoHome::imagesPerStation);
    }

private:
    /// The wheels of a station: each has a model that it fits within the tolerances, exactly one has no hole.
    static void checkWheels(const QString& folder, const QString& solution, const QJsonArray& index)
    {
        const QJsonArray truth = truthOf(folder);
        QCOMPARE(truth.size(), DemoHome::imagesPerStation);
        int holes = 0;
        for (const QJsonValue& wheel : truth) {
            const QString model = wheel["model"].toString();
            QVERIFY(index.contains(QJsonObject{{"Name", model}, {"PlcIndex", wheel["index"].toInt()}}));
            const QJsonObject taught = json(solution + '/' + model + ".model.json");
            for (const QString length : {"rim_radius", "ring_radius", "hole_radius"}) {
                const double tolerance = taught[length + "_tol"].toDouble() / 100 * taught[length].toDouble();
                QVERIFY(std::fabs(wheel[length].toDouble() - taught[length].toDouble()) < tolerance);
            }
            holes += wheel["hole"].toBool();
            QVERIFY(!image(folder + '/' + wheel["file"].toString()).empty());
        }
        QCOMPARE(holes, DemoHome::imagesPerStation - 1);
    }
};

QTEST_GUILESS_MAIN(WheelgenTest)
#include "tst_wheelgen.moc"
