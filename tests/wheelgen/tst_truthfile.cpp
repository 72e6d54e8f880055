#include "sets/TruthFile.h"
#include "sets/WheelSet.h"
#include "support/Table.h"

#include <valvecell/HomeFiles.h>

namespace {

const QByteArray foreign = R"([
  {"image": "a.png", "wheel": false, "valve": false, "cx": null, "vr": null, "tags": ["nowheel"], "design": null},
  {"image": "b.png", "wheel": true, "valve": true, "cx": 500.5, "cy": 400, "vx": 700, "vy": 380.25, "vr": 12,
   "angle": 5.65, "tags": ["noise", "stem"], "design": "mesh", "edge": "ring", "rim_r": 240, "pitch_r": 200.5,
   "distance_mm": 1500, "pp_x": 512.5, "mm_per_px": 0.5, "depth_mm": 31.5},
  {"image": "c.png", "wheel": true, "valve": false, "vr": null, "tags": [], "rim_r": 300, "pitch_r": 260}])";

/// A folder with these files; empty ones are left out.
class Folder
{
public:
    Folder(const QByteArray& truth, const QByteArray& params)
    {
        if (!truth.isEmpty())
            HomeFiles::writeFile(path() + "/truth.json", truth, nullptr);
        if (!params.isEmpty())
            HomeFiles::writeFile(path() + "/params.json", params, nullptr);
    }

    QString path() const { return m_dir.path() + QStringLiteral("/图"); }

private:
    QTemporaryDir m_dir;
};

double parameter(const KnownPicture& picture, const char* name)
{
    return picture.parameters[QLatin1String(name)].toDouble();
}

} // namespace

class TruthFileTest : public QObject
{
    Q_OBJECT

private slots:
    void ownSetIsReadAsItWasWritten()
    {
        const QTemporaryDir dir;
        WheelSetPlan plan;
        plan.count = 8;
        plan.withoutHole = 0.25;
        plan.size = {160, 120};
        QString error;
        QVERIFY(WheelSet::write(dir.path(), plan, &error));
        TruthFile truth;
        QVERIFY2(truth.read(dir.path(), &error), qPrintable(error));
        const auto planned = WheelSet::wheels(plan);
        QCOMPARE(truth.pictures().size(), planned.size());
        for (int i = 0; i < planned.size(); ++i) {
            const KnownPicture& picture = truth.pictures()[i];
            const wheel::WheelTruth known = wheel::truthOf(planned[i].spec);
            QCOMPARE(picture.file, planned[i].file);
            QCOMPARE(picture.hole, known.hole);
            QCOMPARE(picture.rimRadius, known.rimRadius);
            QCOMPARE(picture.parameters,
                     WheelSet::modelParameters(wheel::nominalOf(planned[i].spec), 10).toVariantMap());
            if (!known.hole)
                continue;
            QCOMPARE(picture.x, known.holeCenter.x);
            QCOMPARE(picture.y, known.holeCenter.y);
            QCOMPARE(picture.angle, known.angle);
            QCOMPARE(picture.holeRadius, known.holeRadius);
            QCOMPARE(picture.causes.size(), 3);
        }
    }

    void foreignListIsReadWithTheRecipeOfEachWheel()
    {
        const Folder folder(foreign, {});
        TruthFile truth;
        QString error;
        QVERIFY2(truth.read(folder.path(), &error), qPrintable(error));
        const auto& pictures = truth.pictures();
        QCOMPARE(pictures.size(), 3);
        QVERIFY(!pictures[0].wheel && !pictures[0].hole && pictures[1].hole && !pictures[2].hole);
        QCOMPARE(told(pictures[1].x, pictures[1].y, pictures[1].angle), "700|380.25|5.65");
        QCOMPARE(pictures[1].causes, (QStringList{"noise", "stem", "edge: ring", "design: mesh"}));
        for (const auto& [name, length, most] :
             {std::tuple("rim_radius", 240.0, 0.02), std::tuple("ring_radius", 200.5, 0.01),
              std::tuple("hole_radius", 12.0, 0.10)})
            QVERIFY2(std::fabs(parameter(pictures[1], name) - length) <= most * length + 0.05, name);
        // Without a hole, as large as the holes of its kin; without a wheel, the model that is in use.
        QVERIFY(std::fabs(parameter(pictures[2], "hole_radius") - 15) <= 1.55);
        QCOMPARE(pictures[0].parameters, pictures[1].parameters);
        QVERIFY(!pictures[1].parameters.contains("rim_radius_tol"));
        const KnownDepth& depth = truth.pictures()[1].depth;
        QCOMPARE(told(depth.hole, depth.distance, depth.principalX, depth.pixelSize), "31.5|1500|512.5|0.5");
        QCOMPARE(truth.pictures()[2].depth.distance, 0.0);
    }

    void parametersBesideTheTruthCountMore()
    {
        const Folder folder(foreign, R"({"b.png": {"rim_radius": 777}})");
        TruthFile truth;
        QString error;
        QVERIFY2(truth.read(folder.path(), &error), qPrintable(error));
        QCOMPARE(truth.pictures()[1].parameters, (QVariantMap{{"rim_radius", 777.0}}));
        QCOMPARE(truth.pictures()[0].parameters, truth.pictures()[1].parameters);
        QVERIFY(parameter(truth.pictures()[2], "rim_radius") < 320);
    }

    void whatCannotBeUsedIsNamed_data()
    {
        const QByteArray own = R"({"images": [{"file": "1.bmp", "hole": false, "model": "m", "rim_radius": 10, )";
        QByteArray twice = foreign, textual = foreign, noRim = foreign;
        Table::of<QByteArray, QByteArray, QStringList>(
            {{"no file", {}, {}, {"truth.json"}},
             {"no JSON", "[\n{\"image\": ]", {}, {"truth.json, line 2"}},
             {"other object", "{\"pictures\": []}", {}, {"truth.json", "images"}},
             {"twice the same", twice.replace("c.png", "b.png"), {}, {"picture 3", "b.png", "twice"}},
             {"text for a number", textual.replace("380.25", "\"top\""), {}, {"picture 2", "\"vy\""}},
             {"key missing", noRim.replace("rim_r", "rim"), {}, {"picture 2", "\"rim_r\""}},
             {"own, key missing", own + R"("x": 5}]})", {}, {"picture 1", "\"ring_radius\""}},
             {"parameters no JSON", foreign, "{", {"params.json, line 1"}},
             {"parameters of no kind", foreign, R"({"b.png": 5})", {"params.json", "b.png"}}});
    }
    void whatCannotBeUsedIsNamed()
    {
        const auto [text, params, named] = Table::row<QByteArray, QByteArray, QStringList>();
        const Folder folder(text, params);
        TruthFile truth;
        QString error;
        QVERIFY(!truth.read(folder.path(), &error));
        for (const QString& part : named)
            QVERIFY2(error.contains(part), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TruthFileTest)
#include "tst_truthfile.moc"
