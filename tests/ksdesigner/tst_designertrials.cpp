#include "Bench.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IImageWatch.h>

namespace {

const QPointF hole(420, 130);

QImage drawing()
{
    QImage image(640, 480, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    return image;
}

QRgb shownPixel(const Bench& bench)
{
    auto* view = bench.get<ImageView>("view");
    return view->grab().toImage().pixel(view->viewPointOf({100, 100}));
}

} // namespace

class DesignerTrialsTest : public QObject
{
    Q_OBJECT

private slots:
    void imageIsTriedWithTheStoredModel()
    {
        Bench bench;
        bench.openAt(1);
        bench.type("hole_radius", "15");
        QVERIFY(bench.tries("轮毂.png"));
        QCOMPARE(bench.engine.tasks[0].model, "轮毂17寸");
        QCOMPARE(bench.engine.tasks[0].image.size(), QSize(640, 480));
        QVERIFY2(bench.text("note").contains("不含未保存"), "the engine cannot try what is not stored");
        bench.engine.answer(FakeEngine::found(drawing(), hole));
        QTRY_COMPARE(bench.text("angle"), "123.456°");
        QCOMPARE(told(bench.text("center"), bench.text("score"), bench.text("time")),
                 "420.00, 130.00 px|0.912（次高 0.310）|5.5 ms");
        QCOMPARE(QColor(shownPixel(bench)), QColor(Qt::darkGreen));
    }

    void refusedImageShowsItsReasonAndNoAngle_data()
    {
        Table::of<QVariantMap, QString>(
            {{"no hole", FakeEngine::lost(1, "未找到气门孔"), "未找到气门孔（错误码 1）"},
             {"unknown model", QVariantMap{{ResultKeys::taskTime, 0.1}}, "任务未能运行：方案或型号不存在"}});
    }
    void refusedImageShowsItsReasonAndNoAngle()
    {
        const auto [result, verdict] = Table::row<QVariantMap, QString>();
        Bench bench;
        bench.open();
        QVERIFY(bench.tries("a.png"));
        bench.engine.answer(result);
        QTRY_COMPARE(bench.text("verdict"), verdict);
        QCOMPARE(bench.text("angle"), "—");
        bench.press("runButton");
        bench.choose(1);
        bench.engine.answer(FakeEngine::found(drawing(), hole, 11.0)); // of the former model
        bench.engine.answer(FakeEngine::found(drawing(), hole, 22.0));
        QTRY_COMPARE(bench.text("angle"), "22.000°");
        QFile file(bench.dir.filePath("bad.bmp"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        bench.get<TryPanel>("TryPanel")->openImage(file.fileName());
        QTRY_VERIFY(bench.text("status").contains("bad.bmp"));
        QVERIFY2(bench.text("fileLabel").contains("a.png"), "the former one stays");
    }

    void engineAnswersAfterTheModuleWasUnloaded()
    {
        FakeEngine engine;
        Bench files;
        {
            QLibrary library(QStringLiteral(VALVECELL_BIN_DIR "/ksdesigner"));
            const auto init = reinterpret_cast<DesignerInitFunction>(library.resolve("Lib_Designer_Init"));
            QVERIFY2(init, qPrintable(library.errorString()));
            const std::unique_ptr<IDesigner> designer(init(nullptr));
            QWidget parent;
            designer->attachEngine(&engine);
            designer->openDesigner(&parent);
            QWidget* window = parent.findChild<QWidget*>("DesignerWindow");
            QVERIFY(window && window->isWindow());
            QVERIFY(QMetaObject::invokeMethod(window->findChild<QWidget*>("TryPanel"), "openImage",
                                              Q_ARG(QString, files.image("a.png"))));
            QTRY_COMPARE(engine.tasks.size(), size_t(1));
        }
        engine.answer(FakeEngine::found(drawing(), hole));
        QVERIFY(engine.tasks.empty());
    }

    void editIsTriedWithoutSaving()
    {
        Bench bench;
        bench.engine.hasTrial = true;
        bench.openAt(1);
        QVERIFY(bench.tries("a.png"));
        bench.type("hole_radius", "15");
        bench.engine.answer(FakeEngine::lost(1, "未找到"));
        QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
        QCOMPARE(bench.engine.tasks[0].parameters["hole_radius"].toDouble(), 15.0);
        bench.engine.answer(FakeEngine::found(drawing(), hole));
        QTRY_COMPARE(bench.text("angle"), "123.456°");
        QCOMPARE(bench.engine.solutions["工位1"]["轮毂17寸"]["hole_radius"].toDouble(), 14.25);
        bench.type("hole_radius", "15x");
        QVERIFY(bench.text("note").contains("参数有误"));
        bench.press("runButton");
        QVERIFY(bench.engine.tasks.empty());
    }

    void recordedPartIsRunOnItsModel()
    {
        Bench bench;
        bench.designer.attachEngine(&bench.engine);
        auto* results = extensionOf<IDesignerImage>(static_cast<IDesigner*>(&bench.designer));
        QVERIFY(results);
        const QString picture = bench.image("part.png");
        results->openImage(nullptr, "工位1", "轮毂17寸", picture);
        QTRY_COMPARE(bench.engine.tasks.size(), size_t(1));
        QCOMPARE(bench.text("fileLabel"), "part.png（640 × 480）");
        QCOMPARE(bench.engine.tasks[0].solution + bench.engine.tasks[0].model, "工位1轮毂17寸");
        bench.engine.answer(FakeEngine::found({}, hole));
        QTRY_COMPARE(bench.text("angle"), "123.456°");
        bench.choose(0);
        bench.engine.tasks.clear();
        results->openImage(nullptr, "工位1", "别的型号", bench.image("other.png"));
        QTRY_COMPARE(bench.text("fileLabel"), "other.png（640 × 480）");
        QCOMPARE(bench.get<QListWidget>("modelList")->currentRow(), 0);
        results->openImage(nullptr, {}, {}, bench.dir.filePath("cleaned.png"));
        QTRY_VERIFY2(bench.text("status").contains("cleaned.png"), qPrintable(bench.text("status")));
    }

    void nextPartOfTheFollowedCameraIsTried()
    {
        Bench bench;
        bench.open();
        auto* watch = extensionOf<IImageWatch>(static_cast<IDesigner*>(&bench.designer));
        QVERIFY(watch);
        watch->imageCaptured("cam1", drawing());
        QVERIFY2(bench.engine.tasks.empty(), "nobody asked for it");
        auto* cameras = bench.get<QComboBox>("cameraBox");
        QVERIFY(cameras->isVisible());
        cameras->setCurrentText("cam1");
        watch->imageCaptured("cam2", drawing());
        QVERIFY(bench.engine.tasks.empty());
        watch->imageCaptured("cam1", drawing());
        watch->imageCaptured("cam1", drawing());
        QCOMPARE(bench.engine.tasks.size(), size_t(1));
        QVERIFY(bench.text("fileLabel").contains("cam1"));
        bench.engine.answer(FakeEngine::found({}, hole));
        QTRY_COMPARE(bench.text("angle"), "123.456°");
        bench.designer.window()->close();
        watch->imageCaptured("cam1", drawing());
        QVERIFY(bench.engine.tasks.empty());
    }

    void teachingThatFailsOrIsGivenUpChangesNothing()
    {
        Bench bench;
        bench.engine.hasTeacher = true;
        bench.engine.refusal = "此处没有轮缘";
        bench.openAt(1);
        bench.get<TryPanel>("TryPanel")->openImage(bench.image("a.png"));
        QTRY_VERIFY(bench.canPress("teachButton"));
        bench.press("teachButton");
        bench.clickImage({520, 240});
        bench.clickImage(hole);
        QTRY_VERIFY(bench.text("status").contains("此处没有轮缘"));
        bench.press("teachButton");
        bench.clickImage({520, 240});
        bench.press("cancelTeachButton");
        bench.clickImage(hole);
        QVERIFY(bench.get<QWidget>("teachBar")->isHidden());
        bench.press("teachButton");
        bench.clickImage({520, 240});
        bench.choose(2);
        QVERIFY2(bench.get<QWidget>("teachBar")->isHidden(), "the points belong to the other model");
        bench.choose(0);
        QVERIFY2(!bench.canPress("teachButton"), "a built-in model cannot be taught");
        QVERIFY(!bench.designer.window()->isWindowModified());
    }

    void pointsAreExactWhenZoomed()
    {
        Bench bench;
        bench.open();
        bench.get<TryPanel>("TryPanel")->openImage(bench.image("a.png"));
        auto* view = bench.get<ImageView>("view");
        QTRY_VERIFY(view->hasImage());
        QSignalSpy clicks(view, &ImageView::clicked);
        const QPoint at = view->viewPointOf(hole);
        for (int i = 0; i < 12; ++i) {
            QWheelEvent wheel(at, view->viewport()->mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(view->viewport(), &wheel);
        }
        bench.clickImage(hole);
        QCOMPARE(clicks.size(), 1);
        QVERIFY((clicks[0][0].toPointF() - hole).manhattanLength() < 0.3);
        QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
        QVERIFY2(view->viewport()->rect().contains(view->viewPointOf({639, 479})), "fits again");
    }
};

QTEST_MAIN(DesignerTrialsTest)
#include "tst_designertrials.moc"
