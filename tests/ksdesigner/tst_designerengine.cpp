#include "Bench.h"
#include "Engine.h"
#include "ksbengine/Wheels.h"
#include "panels/BatchPanel.h"
#include "support/English.h"
#include "support/Look.h"
#include "support/TempHome.h"

#include <valvecell/Extension.h>

#include <QTabWidget>
#include <QTableView>

namespace {

const QString solution = QStringLiteral("工位1");
const QString newModel = QStringLiteral("新轮18寸");

/// The designer with the engine that the cell runs, and wheels as a camera sees them.
struct EngineBench : Bench
{
    TempHome home;
    Engine cell{home.path(QStringLiteral("/user/solutions"))};

    EngineBench()
    {
        cell.initialise();
        store()->addSolution(solution, nullptr);
        open(&cell);
    }

    QString saveWheel(const wheel::WheelSpec& spec, const QString& name) const
    {
        const QString path = home.path(QStringLiteral("/images/") + name);
        QDir().mkpath(QFileInfo(path).path());
        return finder::toImage(Wheels::image(spec)).save(path) ? path : QString();
    }

    void openImage(const QString& path) const { get<TryPanel>("TryPanel")->openImage(path); }

    /// Adds a model and teaches it on a wheel by the clicks of a person: five presses and a name.
    void teach(const wheel::WheelSpec& spec) const
    {
        const wheel::WheelTruth truth = wheel::truthOf(spec);
        openImage(saveWheel(spec, QStringLiteral("good.png")));
        QTRY_VERIFY(canPress("runButton"));
        press("addButton");
        accept(QStringLiteral("ModelPanel"), newModel);
        QTRY_VERIFY(canPress("teachButton"));
        press("teachButton");
        clickImage({truth.hub.x, truth.hub.y - truth.rimRadius});
        clickImage({truth.holeCenter.x, truth.holeCenter.y});
        QTRY_VERIFY(canPress("saveButton"));
        press("saveButton");
    }

    ISolutionStore* store() { return extensionOf<ISolutionStore>(static_cast<IEngine*>(&cell)); }
    QVariantMap stored() { return store()->parameters(solution, newModel); }
};

} // namespace

class DesignerEngineTest : public QObject
{
    Q_OBJECT

    /// In both languages; only the model's name stays.
    static void looksRight(EngineBench& bench, int tab)
    {
        QWidget& window = *bench.designer.window();
        QCOMPARE(Look::clipped(window) + Look::overlapping(window), QStringList());
        const English english;
        QTRY_COMPARE(window.windowTitle(), "Task Designer[*]");
        QTest::qWait(0);
        const QStringList chinese = Look::chinese(window);
        QCOMPARE(chinese.filter(QRegularExpression("^(?!.*新轮18寸)")), QStringList());
        QCOMPARE(Look::clipped(window) + Look::overlapping(window), QStringList());
        Look::shoot(window, QStringLiteral("designer-tab%1-English").arg(tab));
    }

private slots:
    void newWheelIsTaughtAndEveryStageShown()
    {
        EngineBench bench;
        const wheel::WheelSpec spec = Wheels::spec("seven", 77);
        bench.teach(spec);
        QVERIFY(bench.stored().value("taught").toBool());
        QTRY_VERIFY(bench.text("score").startsWith("0.9") || bench.text("score").startsWith("1.0"));
        QVERIFY(Wheels::turnBetween(bench.text("angle").chopped(1).toDouble(), wheel::truthOf(spec).angle) < 0.1);
        auto* stages = bench.get<QComboBox>("stageBox");
        QTRY_COMPARE(stages->count(), 8);
        for (int i = 0; i < stages->count(); ++i) {
            stages->setCurrentIndex(i);
            QTest::qWait(0);
            QVERIFY(i < 2 || !bench.text("stageNote").isEmpty());
            QVERIFY(i != 4 || !bench.get<ImageView>("view")->overlay()->circles().isEmpty()); // the candidates
            QVERIFY(!bench.get<ImageView>("view")->grab().isNull());
            QCOMPARE(Look::clipped(*bench.designer.window()), QStringList());
        }
        looksRight(bench, 0);
        bench.openImage(bench.saveWheel(Wheels::spec("seven", 78, false), QStringLiteral("none.png")));
        QTRY_VERIFY(bench.text("verdict").contains("错误码 1"));
        QCOMPARE(bench.get<QComboBox>("stageBox")->currentIndex(), 0); // another one, the language changed
    }

    void confirmedPartsSuggestSizes()
    {
        EngineBench bench;
        bench.teach(Wheels::spec("five", 31));
        QTRY_COMPARE(bench.get<QListWidget>("holeList")->count(), 1);
        for (quint64 seed = 1; seed <= 4; ++seed)
            bench.saveWheel(Wheels::spec("five", seed), QStringLiteral("day/%1 五辐.png").arg(seed));
        bench.get<QTabWidget>("tabs")->setCurrentIndex(1);
        bench.get<BatchPanel>("BatchPanel")->setFolder(bench.home.path("/images/day"));
        bench.press("startButton");
        QTRY_VERIFY(bench.canPress("exportButton"));
        auto* table = bench.get<QTableView>("table");
        table->selectRow(0);
        for (const char* answer : {"holeButton", "holeButton", "rejectButton"})
            bench.press(answer);
        QTRY_COMPARE(bench.get<QListWidget>("rejectedList")->count(), 1);
        QCOMPARE(bench.get<QListWidget>("holeList")->count(), 3);
        QVERIFY2(bench.text("proposal").contains("±"), qPrintable(bench.text("proposal")));
        QTRY_VERIFY(bench.get<QLabel>("picture")->pixmap(Qt::ReturnByValue).width() > 0);
        looksRight(bench, 1);
        const QVariantMap before = bench.stored();
        bench.press("applyButton");
        QCOMPARE(bench.stored(), before);
        bench.press("saveButton");
        QVERIFY(bench.stored() != before);
    }
};

QTEST_MAIN(DesignerEngineTest)
#include "tst_designerengine.moc"
