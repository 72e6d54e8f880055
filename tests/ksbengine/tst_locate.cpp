#include "Wheels.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <opencv2/imgproc.hpp>

namespace {

struct Answer
{
    int code = -1;
    QList<QJsonObject> lines;
    QByteArray messages;
};

Answer locate(const QStringList& arguments)
{
    QProcess program;
    program.start(QStringLiteral(VALVECELL_BIN_DIR "/locate"), arguments);
    if (!program.waitForFinished(60000))
        return {};
    Answer answer;
    answer.code = program.exitCode();
    answer.messages = program.readAllStandardError();
    for (const QByteArray& line : program.readAllStandardOutput().split('\n')) {
        if (!line.isEmpty())
            answer.lines.append(QJsonDocument::fromJson(line).object());
    }
    return answer;
}

/// A day of the archive: wheels with a hole and one without, in folders below folders.
struct Archive
{
    Archive()
    {
        save(QStringLiteral("Station1/a.png"), 1, true);
        save(QStringLiteral("Station1/b.png"), 2, false);
        save(QStringLiteral("Station2/=c.png"), 3, true);
    }

    void save(const QString& name, quint64 seed, bool hole) const
    {
        const QString path = day() + QLatin1Char('/') + name;
        QDir().mkpath(QFileInfo(path).path());
        static std::map<std::pair<quint64, bool>, QImage> rendered;
        QImage& image = rendered[{seed, hole}];
        if (image.isNull())
            image = finder::toImage(Wheels::image(Wheels::spec("five", seed, hole)));
        QVERIFY(image.save(path));
    }

    QString day() const { return home.path(QStringLiteral("/DBFiles/SrcImages/2024-05-06")); }

    TempHome home;
};

constexpr double holeDepth = 40;

/// A wheel around `rim` whose inside lies holeDepth mm behind the rim's edge, seen by a camera 1000 mm above
/// `principal`.
void saveDeep(const QString& path, const cv::Point2d& rim, const cv::Point2d& principal)
{
    wheel::WheelSpec spec = Wheels::spec("five", 11);
    spec.hub = rim;
    const cv::Mat image = Wheels::image(spec);
    spec.hub += (principal - rim) * (holeDepth / (1000 + holeDepth));
    cv::Mat inside(image.size(), CV_8U, cv::Scalar(0));
    cv::circle(inside, {int(spec.hub.x), int(spec.hub.y)}, int(0.94 * spec.rimRadius), cv::Scalar(255), cv::FILLED);
    Wheels::image(spec).copyTo(image, inside);
    QDir().mkpath(QFileInfo(path).path());
    QVERIFY(finder::toImage(image).save(path));
}

QStringList valuesOf(const Answer& answer, const char* key)
{
    QStringList values;
    for (const QJsonObject& line : answer.lines)
        values.append(line.value(QLatin1String(key)).toVariant().toString());
    return values;
}

} // namespace

class LocateTest : public QObject
{
    Q_OBJECT

private slots:
    void dayOfTheArchiveIsRunWithPresentAndEditedParameters()
    {
        const Archive archive;
        archive.home.write(QStringLiteral("/edited.json"), R"({"hole_radius": 100, "taught": true})");
        const QString csv = archive.home.path(QStringLiteral("/复检.csv"));
        const Answer answer =
            locate({QStringLiteral("--against"), archive.home.path(QStringLiteral("/edited.json")),
                    QStringLiteral("--csv"), csv, QStringLiteral("--jobs"), QStringLiteral("3"), archive.day()});
        QVERIFY2(answer.code == 0, answer.messages);
        QCOMPARE(valuesOf(answer, "name"), QStringList({"a.png", "b.png", "=c.png"}));
        QCOMPARE(valuesOf(answer, "image")[2], archive.day() + "/Station2/=c.png");
        QCOMPARE(valuesOf(answer, "status"), QStringList({"found", "nothing", "found"}));
        QCOMPARE(valuesOf(answer, "found"), QStringList({"true", "false", "true"}));
        const QString tip = answer.lines[1].value("tip").toString();
        QVERIFY2(tip.startsWith("未找到气门孔：") && !answer.lines[0].value("tip").toString().contains("："),
                 qPrintable(tip));
        QCOMPARE(valuesOf(answer, "change"), QStringList({"lost", "missed", "lost"}));
        QVERIFY2(answer.messages.contains("3 images, found 2 -> 0, gained 0, lost 2"), answer.messages);
        archive.home.write(QStringLiteral("/params.json"),
                           R"({"a.png": {"rim_radius": -5}, "b.png": 7, "=c.png": {"score_limit": 0.4}})");
        const Answer byImage =
            locate({QStringLiteral("--params"), archive.home.path(QStringLiteral("/params.json")), archive.day()});
        QCOMPARE(valuesOf(byImage, "error"), QStringList({"9", "9", "0"}));
        QCOMPARE(valuesOf(byImage, "status"), QStringList({"error", "error", "found"}));
        QVERIFY(byImage.code == 1 && byImage.lines[0].value("problem").toString().contains("rim_radius"));
        QVERIFY2(byImage.messages.contains("rim_radius") && byImage.messages.contains("b.png"), byImage.messages);
        QFile table(csv);
        QVERIFY(table.open(QIODevice::ReadOnly));
        const QList<QByteArray> rows = table.readAll().split('\n');
        QVERIFY(rows.size() == 5 && rows[0].startsWith("\xEF\xBB\xBFimage,found,angle"));
        QCOMPARE(rows[3].count(','), rows[0].count(','));
    }

    void folderOfAPlantTeachesAModel()
    {
        const Archive plant;
        const QString model = QStringLiteral("五辐17");
        const QStringList target{QStringLiteral("--home"), plant.home.path(), QStringLiteral("--model"), model};
        const auto show = [&](const char* option, quint64 seed, const QString& place) {
            const QString name = QStringLiteral("../教/%1.png").arg(seed);
            plant.save(name, seed, true);
            return locate(target + QStringList{QLatin1String(option), plant.day() + '/' + name, "--hole", place});
        };
        const auto holeOf = [](quint64 seed) {
            const wheel::WheelTruth truth = wheel::truthOf(Wheels::spec("five", seed));
            return QStringLiteral("%1,%2").arg(truth.holeCenter.x + 3).arg(truth.holeCenter.y - 4);
        };
        QCOMPARE(told(show("--reject", 11, holeOf(11)).code, show("--teach", 11, QStringLiteral("3,4")).code), "1|1");
        const Answer first = show("--teach", 11, holeOf(11));
        QVERIFY2(first.code == 0, first.messages);
        QCOMPARE(first.lines[0].value("created"), QJsonValue(true));
        QCOMPARE(first.lines[0].value("proposed"), QJsonValue());
        QCOMPARE(locate(target + QStringList{"--propose"}).code, 1);
        QCOMPARE(show("--teach", 12, holeOf(12)).code, 0);
        const Answer third = show("--teach", 13, holeOf(13));
        QCOMPARE(valuesOf(third, "created") + valuesOf(third, "holes"), QStringList({"false", "3"}));
        const Answer rejected = show("--reject", 14, QStringLiteral("%1,%2").arg(700).arg(500));
        QCOMPARE(valuesOf(rejected, "holes") + valuesOf(rejected, "rejected"), QStringList({"3", "1"}));
        const Answer proposed = locate(target + QStringList{"--propose"});
        QCOMPARE(QJsonValue(proposed.lines.value(0)), third.lines.value(0).value("proposed"));
        plant.home.write(QStringLiteral("/proposed.json"), QJsonDocument(proposed.lines[0]).toJson());
        const Answer checked =
            locate(target + QStringList{"--against", plant.home.path("/proposed.json"), plant.day() + "/../教"});
        QCOMPARE(valuesOf(checked, "change"), QStringList({"same", "same", "same", "same"}));
        QCOMPARE(valuesOf(checked, "found"), QStringList({"true", "true", "true", "true"}));
    }

    void depthOfTheHoleIsTaughtFromPlacesOfOneWheel()
    {
        const Archive plant;
        const QStringList target{"--home", plant.home.path(), "--model", "五辐17"};
        const wheel::WheelTruth truth = wheel::truthOf(Wheels::spec("five", 11));
        const cv::Point2d outward = (truth.holeCenter - truth.hub) / cv::norm(truth.holeCenter - truth.hub);
        const cv::Point2d middle(815.5, 682.5);
        const QString there = plant.day() + "/深/0.png";
        QStringList teach = target + QStringList{"--teach-depth", there};
        saveDeep(there, middle, middle);
        for (const double aside : {-140, 140}) {
            teach += plant.day() + QStringLiteral("/深/%1.png").arg(aside);
            saveDeep(teach.last(), middle + aside * outward, middle);
        }
        plant.save("../教/11.png", 11, true);
        const QString hole = QString("%1,%2").arg(truth.holeCenter.x).arg(truth.holeCenter.y);
        QCOMPARE(locate(target + QStringList{"--teach", plant.day() + "/../教/11.png", "--hole", hole}).code, 0);
        const Answer unknown = locate(teach);
        QVERIFY2(unknown.code == 1 && unknown.messages.contains("camera"), unknown.messages);
        plant.home.write("/user/solutions/default/solution.json",
                         R"({"name": "default", "result": "hole", "camera": {"distance_mm": 1000}})");
        const Answer same = locate(target + QStringList{"--teach-depth", there, there});
        QVERIFY2(same.code == 1 && same.messages.contains("farther apart"), same.messages);
        const Answer taught = locate(teach);
        QVERIFY2(taught.code == 0, taught.messages);
        const double depth = taught.lines[0].value("hole_depth").toDouble();
        QVERIFY2(std::abs(depth - holeDepth) < 5, qPrintable(QString::number(depth)));
        QVERIFY(plant.home.read("/user/solutions/default/五辐17.model.json").contains("\"hole_depth\""));
    }

    /// A script has to tell a folder without images, and a file that is none, from a wheel without a hole.
    void whatCouldNotBeJudgedIsNoMissingHole()
    {
        const TempHome home;
        home.write("/text.png", "no image");
        home.write("/empty/readme.txt", "no image either");
        const Answer damaged = locate({home.path("/text.png")});
        QCOMPARE(damaged.code, 1);
        QCOMPARE(valuesOf(damaged, "status"), QStringList("error"));
        QVERIFY(damaged.lines[0].value("problem").toString().contains("no image"));
        const Answer empty = locate({home.path("/empty")});
        QVERIFY2(empty.code == 3 && empty.messages.contains("/empty: no image in this folder"), empty.messages);
    }

    void wrongUseIsRefused_data()
    {
        Table::of<QString, int>({{"no image", "", 2},
                                 {"no number", "--jobs many x.png", 2},
                                 {"model without solution", "--model W18 x.png", 2},
                                 {"missing parameters", "--against nowhere.json x.png", 2},
                                 {"place is none", "--teach x.png --model W18 --hole 3;4", 2},
                                 {"built-in model", "--teach x.png --hole 3,4", 2},
                                 {"two at a time", "--reject x.png y.png --model W18 --hole 3,4", 2},
                                 {"depth of one image", "--teach-depth x.png --model W18", 2},
                                 {"missing image", "nowhere.png", 1}});
    }
    void wrongUseIsRefused()
    {
        const auto [arguments, code] = Table::row<QString, int>();
        const Answer answer = locate(arguments.split(' ', Qt::SkipEmptyParts));
        QCOMPARE(answer.code, code);
        QCOMPARE(answer.lines.size(), answer.code == 1 ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(LocateTest)
#include "tst_locate.moc"
