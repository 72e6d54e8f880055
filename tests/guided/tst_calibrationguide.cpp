#include "dialogs/calibration/CalibrationBench.h"
#include "guided/calibration/CalibrationGuide.h"
#include "support/FakeCameras.h"
#include "support/Table.h"

#include <QComboBox>
#include <QMenu>
#include <QSettings>
#include <QSignalSpy>
#include <QTableWidget>
#include <QToolButton>

namespace {

/// Dark holes on a bright plate.
QImage plate(const QVector<QPointF>& holes)
{
    QImage image(640, 480, QImage::Format_Grayscale8);
    image.fill(190);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(50, 50, 50));
    for (const QPointF& hole : holes)
        painter.drawEllipse(hole + QPointF(0.5, 0.5), 12, 12);
    return image;
}

/// 9 x 6 inner corners, 50 pixels apart.
QImage chessboard()
{
    QImage image(640, 480, QImage::Format_Grayscale8);
    image.fill(220);
    for (int y = 0; y < 7; ++y) {
        for (int x = 0; x < 10; ++x) {
            for (int i = 0; (x + y) % 2 == 0 && i < 50; ++i)
                memset(image.scanLine(60 + 50 * y + i) + 70 + 50 * x, 40, 50);
        }
    }
    return image;
}

const QVector<QPointF> holes{{80.5, 90.5}, {540.5, 100.5}, {100.5, 400.5}, {550.5, 390.5}};

struct Guide
{
    explicit Guide(const QImage& picture)
        : cameras({ICameraPreview::id})
    {
        initResources();
        cameras.picture = picture;
        bench.config()->stations[0].camKey = "cam1";
        bench.config()->use4pointstand = true;
    }

    void open()
    {
        guide = std::make_unique<CalibrationGuide>(
            CalibrationGuide::Parts{*bench.config(), &cameras, bench.home.path(), [] { return QString("张工"); }});
        guide->show();
        driver = std::make_unique<DialogDriver>(*guide);
        viewer = guide->findChild<ksImgViewer*>("picture");
    }

    void capture() const
    {
        driver->press("captureButton");
        QTRY_VERIFY(viewer->image() == cameras.picture);
    }

    void click(const QPointF& pixel) const
    {
        const QPointF place = viewer->imageItem()->fromImage(pixel + QPointF(0.5, 0.5));
        Mouse(*viewer).click(viewer->mapFromScene(viewer->imageItem()->mapToScene(place)));
        QTest::qWait(0);
    }

    CalibrationBench bench;
    FakeCameras cameras;
    std::unique_ptr<CalibrationGuide> guide;
    std::unique_ptr<DialogDriver> driver;
    ksImgViewer* viewer = nullptr;
};

} // namespace

class CalibrationGuideTest : public QObject
{
    Q_OBJECT

private slots:
    /// Twelve clicks and eight numbers; a click beside a hole marks its centre.
    void fourHolesMakeAMap()
    {
        Guide own(plate(holes));
        own.open();
        own.capture();
        own.driver->press("nextButton");
        for (const QPointF& hole : holes)
            own.click(hole + QPointF(6, -5));
        own.driver->shoot("guide-calibration-mark");
        own.driver->press("nextButton");
        for (int i = 0; i < 4; ++i) {
            own.driver->type(qPrintable(QStringLiteral("real%1X").arg(i + 1)), QString::number(holes[i].x() / 4));
            own.driver->type(qPrintable(QStringLiteral("real%1Y").arg(i + 1)), QString::number(holes[i].y() / 5));
        }
        own.driver->shoot("guide-calibration-real");
        own.driver->press("nextButton");
        own.driver->shoot("guide-calibration-residual");
        own.driver->press("nextButton");
        own.driver->shoot("guide-calibration-compare");
        QSignalSpy applied(own.guide.get(), &CalibrationGuide::calibrationApplied);
        own.driver->press("nextButton");
        QCOMPARE(own.driver->message(), QStringLiteral("参数已生效"));
        QCOMPARE(applied.size(), 1);
        own.bench.restart();
        const StationConfig& station = own.bench.config()->station(1);
        const QPointF there = station.fourPointCalibration().toMachine({300, 200});
        QVERIFY2(QLineF(there, QPointF(75, 40)).length() < 0.05, qPrintable(told(there.x(), there.y())));
        QCOMPARE(station.fourPoint.realPoints[3], QPointF(137.625, 78.1));
        QVERIFY(own.driver->text<QLabel>("state").contains("生效中"));
    }

    /// A board needs its pitch alone, and the stored points carry the same map; what was before comes back.
    void boardMakesAMap_data()
    {
        Table::of<bool>({{"four-point calibration", true}, {"two-point calibration", false}});
    }
    void boardMakesAMap()
    {
        const auto [fourPoint] = Table::row<bool>();
        Guide own(chessboard());
        own.bench.config()->use4pointstand = fourPoint;
        own.bench.config()->stations[0].fourPoint.map = {1, 0, 0, 0, 1, 0};
        own.open();
        own.capture();
        own.driver->press("nextButton");
        auto* method = own.driver->get<QComboBox>("methodBox");
        method->setCurrentIndex(1);
        emit method->activated(1);
        QTRY_VERIFY(own.driver->canPress("nextButton"));
        own.driver->shoot("guide-calibration-board");
        own.driver->press("nextButton");
        own.driver->type("pitchEdit", "12.5");
        own.driver->press("nextButton");
        QVERIFY(own.driver->text<QLabel>("factsLabel").contains("畸变"));
        own.driver->act({"nextButton", "nextButton"});
        QCOMPARE(
            QSettings(own.bench.home.path("/user/board.ini"), QSettings::IniFormat).value("Board/Pitch").toDouble(),
            12.5);
        const StationConfig& station = own.bench.config()->station(1);
        const Calibration made = own.bench.config()->calibration(1);
        QVERIFY2(std::abs(made.mmPerPixel() - 0.25) < 1e-4, qPrintable(QString::number(made.mmPerPixel())));
        if (fourPoint)
            QVERIFY(QLineF(made.toMachine(station.fourPoint.pixelPoints[2]), station.fourPoint.realPoints[2]).length() <
                    1e-6);
        auto* menu = own.driver->get<QPushButton>("earlierButton")->menu();
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 2);
        menu->actions()[1]->trigger();
        QVERIFY(std::abs(own.bench.config()->calibration(1).mmPerPixel() - 1) < 1e-12);
    }

    /// What is missing is said, and nothing goes on or is stored before it is there.
    void whatIsMissingIsSaid()
    {
        Guide own({});
        QFile::remove(own.bench.home.path("/user/StandImage_1.jpg"));
        own.open();
        QVERIFY(!own.driver->canPress("nextButton"));
        own.driver->press("captureButton");
        QTRY_VERIFY(own.driver->message().contains("cam1"));
        own.cameras.picture = plate(holes);
        own.capture();
        own.driver->press("nextButton");
        QCOMPARE(own.driver->message(), QStringLiteral("P1 与 P2 重合"));
        QVERIFY(!own.driver->canPress("nextButton"));
        auto* method = own.driver->get<QComboBox>("methodBox");
        method->setCurrentIndex(2);
        emit method->activated(2);
        QTRY_VERIFY(own.driver->text<QLabel>("foundLabel").contains("没有找到"));
        QVERIFY(own.driver->text<QLabel>("state").contains("未生效"));
        QVERIFY(own.bench.stored().isEmpty());
    }

    /// A picture that was asked for earlier and comes later is not taken: it may be that of the other station.
    void anEarlierPictureIsDropped()
    {
        Guide own(plate(holes));
        own.open();
        own.cameras.holding = true;
        own.driver->press("captureButton");
        own.cameras.holding = false;
        own.capture();
        const QImage late = chessboard();
        own.cameras.held.takeFirst()(late, {});
        QTest::qWait(0);
        QVERIFY(own.viewer->image() == own.cameras.picture);
        own.cameras.holding = true;
        own.driver->press("captureButton");
        own.guide->beginStation(2);
        own.cameras.held.takeFirst()(late, {});
        QTest::qWait(0);
        QVERIFY(own.viewer->image() != late);
    }

    /// At the smallest screen, in both languages, on all pages.
    void fitsTheSmallestScreen_data() { Table::of<bool>({{"Chinese", false}, {"English", true}}); }
    void fitsTheSmallestScreen()
    {
        const auto [english] = Table::row<bool>();
        std::unique_ptr<English> language(english ? new English : nullptr);
        Guide own(chessboard());
        for (int i = 0; i < 4; ++i) {
            own.bench.config()->stations[0].fourPoint.pixelPoints[i] = holes[i].toPoint();
            own.bench.config()->stations[0].fourPoint.realPoints[i] = holes[i] / 4;
        }
        own.open();
        own.guide->resize(1000, 700);
        own.capture();
        for (int step = 0; step < 5; ++step) {
            QTest::qWait(0);
            QCOMPARE(own.driver->clipped(), QStringList());
            QCOMPARE(own.guide->width(), 1000);
            if (english)
                QCOMPARE(own.driver->chinese().join(" "), QString());
            own.driver->shoot(QStringLiteral("guide-calibration-%1-%2").arg(step + 1).arg(english ? "en" : "zh"));
            own.guide->next();
        }
        for (const QPushButton* button : own.guide->findChildren<QPushButton*>())
            QVERIFY2(!button->isVisible() || button->height() >= 40, qPrintable(button->objectName()));
    }
};

QTEST_MAIN(CalibrationGuideTest)
#include "tst_calibrationguide.moc"
