#include "Resources.h"
#include "config/ksGlobalConfig.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/models/ModelCell.h"
#include "graphics/ImageItem.h"
#include "guided/teaching/ArchivePictures.h"
#include "guided/teaching/TeachingGuide.h"
#include "support/FakeCameras.h"
#include "support/FakeEngine.h"
#include "support/Mouse.h"
#include "support/Table.h"
#include "viewer/ksImgViewer.h"

#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

namespace {

QImage wheel()
{
    QImage image(640, 480, QImage::Format_Grayscale8);
    image.fill(60);
    QPainter painter(&image);
    painter.setBrush(QColor(150, 150, 150));
    painter.drawEllipse(QPoint(320, 240), 200, 200);
    painter.setBrush(QColor(20, 20, 20));
    painter.drawEllipse(QPoint(320, 120), 14, 14);
    return image;
}

struct Teaching
{
    ModelCell cell;
    FakeEngine engine;
    FakeCameras cameras{{ICameraPreview::id}};
    ksGlobalConfig config;
    std::unique_ptr<TeachingGuide> guide;
    std::unique_ptr<DialogDriver> driver;
    QString changes;

    Teaching()
    {
        initResources();
        engine.hasProposer = engine.hasTrial = engine.hasExamples = true;
        engine.proposal = FakeEngine::parameters(200, 120, 14, true);
        cameras.picture = wheel();
        for (int i = 1; i <= 2; ++i) {
            config.station(i).camKey = QStringLiteral("cam%1").arg(i);
            config.station(i).solution = QStringLiteral("工位%1").arg(i);
            wheel().save(photo(QStringLiteral("2026-11-0%1").arg(i), 1, QStringLiteral("0800000%1").arg(i)));
        }
        wheel().save(photo(QStringLiteral("2026-11-02"), 2, QStringLiteral("09000000")));
    }

    /// Where the archive has a picture, its folder made.
    QString photo(const QString& day, int station, const QString& time) const
    {
        const QString folder =
            cell.home.path(QStringLiteral("/DBFiles/SrcImages/%1/Station%2/五辐").arg(day).arg(station));
        QDir().mkpath(folder);
        return QStringLiteral("%1/%2_%3.jpg").arg(folder, QString(day).replace('-', '_'), time);
    }

    void open(const QString& name = {})
    {
        guide = std::make_unique<TeachingGuide>(
            TeachingGuide::Parts{*cell.models, &engine, &cameras, config, cell.home.path()});
        QObject::connect(guide.get(), &TeachingGuide::modelsChanged, guide.get(),
                         [this](const AuditChanges& stored) { changes = listed(stored); });
        guide->beginModel(name);
        guide->show();
        driver = std::make_unique<DialogDriver>(*guide);
    }

    /// Answers what the check runs; the second picture shows another wheel.
    void answerTries()
    {
        QTRY_VERIFY(!engine.tasks.empty());
        engine.answer(FakeEngine::found(wheel(), {320, 120}, 90));
        QTRY_VERIFY(!engine.tasks.empty());
        engine.answer(FakeEngine::lost(1, QStringLiteral("未找到气门孔")));
    }
};

} // namespace

class TeachingGuideTest : public QObject
{
    Q_OBJECT

private slots:
    /// Name, picture, look, check, save: both stations have the model, with its hole as an example.
    void modelIsTaughtForBothStations()
    {
        Teaching own;
        own.open();
        QCOMPARE(own.driver->text("indexEdit"), QStringLiteral("3"));
        own.driver->act({"nameEdit=W18", "captureButton"});
        QTRY_VERIFY(own.driver->canPress("nextButton"));
        QCOMPARE(own.guide->step(), 1);
        QVERIFY(own.driver->message("factsLabel").contains("200.0"));
        own.driver->shoot("guide-teaching-proposal");
        own.driver->press("nextButton");
        own.answerTries();
        QTRY_VERIFY(own.driver->message("summaryLabel").contains("找到 1 幅"));
        QVERIFY(own.driver->get<QTableWidget>("triesTable")->item(0, 1)->text().contains("2026_11_02_08000002"));
        own.driver->get<QTableWidget>("triesTable")->selectRow(0);
        own.driver->shoot("guide-teaching-check");
        own.driver->press("nextButton");
        QCOMPARE(own.changes, QStringLiteral("model/W18:>3"));
        QCOMPARE(own.cell.stored("工位2"), QStringLiteral("W18=3 五辐=1 钢圈=2"));
        for (const char* station : {"工位1", "工位2"})
            QCOMPARE(own.engine.solutions[station]["W18"], own.engine.proposal);
        QCOMPARE(own.engine.shown["W18"].holes.size(), 2);
        QVERIFY(own.driver->message().contains("W18"));
        QCOMPARE(own.guide->step(), 0);
    }

    /// The first click says where the centre is, the second where the hole is; the engine measures after each.
    void twoClicksCorrectTheProposal()
    {
        Teaching own;
        own.engine.proposal = {};
        own.engine.refusal = QStringLiteral("没有看到轮毂：请点击轮毂的中心");
        own.open(QStringLiteral("五辐")); // known and not taught: the same name and index
        own.driver->press("captureButton");
        QTRY_COMPARE(own.driver->message(), own.engine.refusal);
        QVERIFY(!own.driver->canPress("nextButton"));
        auto* viewer = own.guide->findChild<ksImgViewer*>("picture");
        own.engine.proposal = FakeEngine::parameters(200, 120, 14, true);
        for (const QPointF& pixel : {QPointF(320, 240), QPointF(330, 118)}) {
            const QPointF scene = viewer->imageItem()->mapToScene(viewer->imageItem()->fromImage(pixel));
            Mouse(*viewer).click(viewer->mapFromScene(scene));
            QTRY_VERIFY(own.driver->canPress("nextButton"));
        }
        QVERIFY(QLineF(*own.engine.hinted.center, QPointF(320, 240)).length() < 2);
        QVERIFY(QLineF(*own.engine.hinted.hole, QPointF(330, 118)).length() < 2);
        own.driver->press("nextButton");
        own.engine.refusal.clear();
        own.driver->act({"station2Box", "nextButton"});
        QCOMPARE(own.changes, QStringLiteral("model/五辐/taught:>工位1"));
        QVERIFY(!own.engine.solutions["工位2"].contains("五辐"));
    }

    /// What cannot be stored is stored nowhere, and stays to be tried again.
    void failureStoresNothing()
    {
        Teaching own;
        own.engine.unwritable = QStringLiteral("工位2");
        own.open();
        own.driver->act({"nameEdit=W18", "captureButton"});
        QTRY_VERIFY(own.driver->canPress("nextButton"));
        own.driver->act({"nextButton", "nextButton"});
        QVERIFY(own.driver->message().contains("no space left"));
        QCOMPARE(own.guide->step(), 2);
        QVERIFY(!own.engine.solutions["工位1"].contains("W18"));
        QVERIFY(!own.cell.models->contains("W18"));
    }

    void engineWithoutProposalsLeadsToTheDesigner()
    {
        Teaching own;
        own.engine.hasProposer = false;
        own.open();
        own.driver->act({"nameEdit=W18", "archiveButton"});
        QTRY_VERIFY(own.driver->get<ksImgViewer>("picture")->imageSize() == QSize(640, 480));
        QVERIFY(own.driver->text<QLabel>("state").contains("任务设计器"));
        bool wanted = false;
        connect(own.guide.get(), &TeachingGuide::designerWanted, this, [&wanted] { wanted = true; });
        own.driver->press("designerButton");
        QVERIFY(wanted);
    }

    void latestPicturesComeFirst()
    {
        const Teaching own;
        const QStringList latest = ArchivePictures::latest(own.cell.home.path(), 1, 8);
        QCOMPARE(latest.size(), 2);
        QVERIFY(latest[0].endsWith("2026_11_02_08000002.jpg"));
        QCOMPARE(ArchivePictures::latest(own.cell.home.path(), 1, 1).size(), 1);
        QVERIFY(ArchivePictures::latest("/nowhere", 1, 8).isEmpty());
    }

    void fitsTheSmallestScreen_data() { Table::of<bool>({{"Chinese", false}, {"English", true}}); }
    void fitsTheSmallestScreen()
    {
        const auto [english] = Table::row<bool>();
        std::unique_ptr<English> language(english ? new English : nullptr);
        Teaching own;
        own.open();
        own.guide->resize(1000, 700);
        own.driver->type("nameEdit", "W18");
        for (int step = 0; step < 3; ++step) {
            if (step == 1)
                own.driver->press("captureButton");
            if (step == 2)
                own.guide->next();
            QTRY_VERIFY(step == 0 || own.driver->canPress("nextButton"));
            if (step == 2)
                own.answerTries();
            QTest::qWait(0);
            QCOMPARE(own.driver->clipped(), QStringList());
            if (english)
                QCOMPARE(own.driver->chinese()
                             .join(' ')
                             .remove(QRegularExpression("工位\\d"))
                             .contains(QRegularExpression("\\p{Han}")),
                         false);
            own.driver->shoot(QStringLiteral("guide-teaching-%1-%2").arg(step + 1).arg(english ? "en" : "zh"));
        }
    }
};

QTEST_MAIN(TeachingGuideTest)
#include "tst_teachingguide.moc"
