#include "Resources.h"
#include "graphics/ImageItem.h"
#include "support/Mouse.h"
#include "support/Table.h"
#include "viewer/ImageExport.h"
#include "viewer/QTipWidget.h"
#include "viewer/ResultOverlay.h"
#include "viewer/ksImgViewer.h"

#include <QLabel>

Q_DECLARE_METATYPE(QImage::Format)

namespace {

/// A viewer of 400 x 300 pixels on the screen.
struct Station
{
    explicit Station(const QImage& image)
    {
        viewer.resize(400, 300);
        viewer.show();
        viewer.setReadoutLabel(&readout);
        viewer.setImage(image);
    }

    /// Where the middle of a pixel is seen.
    QPoint seenAt(const QPoint& pixel) const
    {
        const auto* item = qgraphicsitem_cast<QGraphicsPixmapItem*>(viewer.scene()->items().constLast());
        const QPointF inItem = item->offset() + pixel + QPointF(0.5, 0.5);
        return viewer.mapFromScene(item->mapToScene(inItem));
    }

    QRgb screenColor(const QPoint& at) { return viewer.viewport()->grab().toImage().pixel(at); }

    AwesomeImgViewer viewer;
    QLabel readout;
    Mouse mouse{viewer};
};

QImage filled(int width, int height, const QColor& color, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    return image.convertToFormat(format);
}

QImage checkerBoard(int width, int height)
{
    QImage image(width, height, QImage::Format_Grayscale8);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.scanLine(y)[x] = (x + y) % 2 ? 255 : 0;
    }
    return image;
}

} // namespace

class ViewerTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void imageLiesAroundTheItemsOrigin()
    {
        Station station(filled(120, 80, Qt::red));
        const auto* item = qgraphicsitem_cast<QGraphicsPixmapItem*>(station.viewer.scene()->items().constFirst());
        QVERIFY(item);
        QCOMPARE(item->offset(), QPointF(-60, -40));
        QCOMPARE(item->pos(), QPointF(60, 40));
        QCOMPARE(station.viewer.scene()->sceneRect(), QRectF(0, 0, 120, 80));
        QCOMPARE(station.viewer.scene()->backgroundBrush().color(), QColor(Qt::darkGray));
        station.viewer.setImage(filled(60, 40, Qt::blue)); // another camera: the item stays, the whole image is reached
        QCOMPARE(item->offset(), QPointF(-30, -20));
        QCOMPARE(item->pos(), QPointF(60, 40));
        QCOMPARE(station.viewer.scene()->sceneRect(), QRectF(0, 0, 60, 40));
        QCOMPARE(station.viewer.sceneRect(), item->sceneBoundingRect());
        QCOMPARE(station.viewer.scene()->items().size(), 1);
    }

    void wheelNotchesChangeTheScale_data()
    {
        Table::of<QVector<int>, double, int>({{"two notches nearer", QVector<int>{240}, 1.21, 1},
                                              {"one notch away", QVector<int>{-120}, 0.9, 1},
                                              {"part of a notch", QVector<int>{119, -119}, 1.0, 0},
                                              {"a notch and a part", QVector<int>{200}, 1.1, 1},
                                              {"there and back", QVector<int>{120, -120}, 0.99, 2}});
    }

    void wheelNotchesChangeTheScale()
    {
        const auto [angles, scale, reports] = Table::row<QVector<int>, double, int>();
        Station station(filled(1000, 1000, Qt::red));
        QSignalSpy spy(&station.viewer, &AwesomeImgViewer::sgImageScale);
        for (int angle : angles)
            station.mouse.wheel(angle);
        QCOMPARE(station.viewer.imageScale(), scale);
        QVERIFY(qFuzzyCompare(station.viewer.transform(), QTransform::fromScale(scale, scale)));
        QCOMPARE(spy.size(), reports);
        if (reports > 0)
            QCOMPARE(spy.constLast().constFirst().toDouble(), scale);
    }

    void zoomingOutStopsBeforeOnePercent()
    {
        Station station(filled(1000, 1000, Qt::red));
        QSignalSpy spy(&station.viewer, &AwesomeImgViewer::sgImageScale);
        for (int i = 0; i < 60; ++i)
            station.mouse.wheel(-120);
        // 0.9^43 = 0.01078, 0.9^44 = 0.00970
        QCOMPARE(station.viewer.imageScale(), std::pow(0.9, 43));
        QCOMPARE(spy.size(), 43);
        QVERIFY(!station.viewer.setImageScale(qQNaN()) && !station.viewer.setImageScale(1e9));
        QCOMPARE(station.viewer.imageScale(), std::pow(0.9, 43));
    }

    void zoomKeepsThePointInTheMiddleAndRestoringBringsItBack()
    {
        Station station(filled(3000, 3000, Qt::red));
        const auto middle = [&] { return station.viewer.mapToScene(station.viewer.viewport()->rect().center()); };
        station.viewer.centerOn(700, 900);
        const QPointF before = middle();
        station.mouse.wheel(480);
        QVERIFY((middle() - before).manhattanLength() <= 2.0);
        station.viewer.restoreView(QTransform::fromScale(2.0, 2.0), {1200, 800});
        QCOMPARE(station.viewer.viewScale(), 2.0);
        QVERIFY((middle() - QPointF(1200, 800)).manhattanLength() < 2.0);
    }

    void secondModeShrinksTheImageInstead()
    {
        Station station(filled(1000, 800, Qt::red));
        station.viewer.setSecondMode(true, 0.3);
        QSignalSpy spy(&station.viewer, &AwesomeImgViewer::sgImageScale);
        station.mouse.wheel(240);
        QCOMPARE(station.viewer.secondModeFactor(), 1.0);
        station.mouse.wheel(-240);
        QCOMPARE(station.viewer.secondModeFactor(), 0.64);
        QCOMPARE(station.viewer.pixelAt(station.seenAt({700, 250})), QPoint(700, 250));
        station.mouse.wheel(-1200);
        QCOMPARE(told(station.viewer.secondModeFactor(), station.viewer.imageScale(), spy.size()), "0.3|1|0");
    }

    void readoutShowsPixelAndColor_data()
    {
        const auto plain = [](const QColor& color, QImage::Format format = QImage::Format_RGB32) {
            return filled(40, 30, color, format);
        };
        const QImage orange = plain({255, 128, 0});
        const QString at = "Position:[3, 4]  Color(RGB):";
        const QString tail = "Color(RGB):[255, 128, 0] (HSV):[15, 255, 255]";
        const QString zero = "Color(RGB):[0, 0, 0] (HSV):[0, 0, 0]";
        Table::of<QImage, QPoint, QString>(
            {{"first", orange, QPoint(0, 0), "Position:[0, 0]  " + tail},
             {"no image", QImage(), QPoint(9, 9), ""},
             {"one past the right edge", orange, QPoint(40, 7), "Position:[40, 7]  " + zero},
             {"two past the lower edge", orange, QPoint(7, 31), "out of image..."},
             {"before", orange, QPoint(-1, 7), "out of image..."},
             {"gray has no hue",
              plain({90, 90, 90}, QImage::Format_Grayscale8),
              {3, 4},
              at + "[90, 90, 90] (HSV):[0, 0, 90]"},
             {"last hue", plain(QColor::fromHsv(359, 255, 255)), {3, 4}, at + "[255, 0, 4] (HSV):[179, 255, 255]"},
             {"indexed", plain({0, 0, 255}, QImage::Format_Indexed8), {3, 4}, at + "[0, 0, 255] (HSV):[120, 255, 255]"},
             {"odd size", filled(41, 31, QColor(255, 128, 0)), QPoint(40, 30), "Position:[40, 30]  " + tail}});
    }

    void readoutShowsPixelAndColor()
    {
        const auto [image, pixel, text] = Table::row<QImage, QPoint, QString>();
        Station station(image);
        station.viewer.setImageScale(4.0);
        station.mouse.move(station.seenAt(pixel));
        QCOMPARE(station.readout.text(), text);
    }

    void everyKindOfImageIsDrawn_data()
    {
        Table::columns<QImage::Format, QSize, double>();
        const QSize camera(600, 500);
        for (double scale : {0.05, 0.3, 1.0, 30.0}) {
            const QByteArray at = " at " + QByteArray::number(scale);
            QTest::newRow("gray" + at) << QImage::Format_Grayscale8 << camera << scale;
            QTest::newRow("color" + at) << QImage::Format_RGB32 << camera << scale;
        }
        QTest::newRow("16 bit") << QImage::Format_Grayscale16 << camera << 0.4;
        QTest::newRow("indexed") << QImage::Format_Indexed8 << camera << 0.4;
        QTest::newRow("alpha") << QImage::Format_ARGB32 << camera << 0.4;
        QTest::newRow("one pixel") << QImage::Format_Grayscale8 << QSize(1, 1) << 200.0;
        QTest::newRow("long and flat") << QImage::Format_RGB32 << QSize(20000, 2) << 0.2;
    }

    void everyKindOfImageIsDrawn()
    {
        const auto [format, size, scale] = Table::row<QImage::Format, QSize, double>();
        Station station(filled(size.width(), size.height(), QColor(100, 100, 100), format));
        QVERIFY(station.viewer.setImageScale(scale));
        station.viewer.centerOn(size.width() / 2.0, size.height() / 2.0);
        const QPoint middle = station.viewer.mapFromScene(QPointF(size.width() / 2.0, size.height() / 2.0));
        const QPoint inPixel = scale > 16 ? middle + QPoint(10, 10) : middle; // not on a grid line
        const int inside = qGray(station.screenColor(inPixel));
        const bool thin = size.height() * scale < 1.0; // less than a screen pixel
        const int off = qAbs(inside - 100);            // an index has no place for every color
        QVERIFY2(thin ? inside > 0 : off <= (format == QImage::Format_Indexed8 ? 2 : 0), QByteArray::number(inside));
        if (scale < 0.1)
            QCOMPARE(QColor(station.screenColor({2, 2})), QColor(Qt::darkGray));
    }

    void smallCopiesMakeFinePatternsSmooth()
    {
        Station station(checkerBoard(800, 600));
        station.viewer.setImageScale(0.25);
        const QPoint center = station.viewer.viewport()->rect().center();
        QTRY_VERIFY(qAbs(qGray(station.screenColor(center)) - 128) <= 1);
        const QImage screen = station.viewer.viewport()->grab().toImage();
        for (int x = 110; x < 290; ++x)
            QVERIFY2(qAbs(qGray(screen.pixel(x, center.y())) - 128) <= 1, QByteArray::number(x));
    }

    void pixelsAreSharpWhenEnlargedAndPartedByAGrid()
    {
        Station station(checkerBoard(200, 200));
        station.viewer.setImageScale(16.0);
        QPoint corner = station.seenAt({100, 100}) - QPoint(8, 8);
        for (int i : {0, 1, 14, 15})
            QCOMPARE(qGray(station.screenColor(corner + QPoint(i, 8))), 0);
        QCOMPARE(qGray(station.screenColor(corner + QPoint(16, 8))), 255);
        station.viewer.setImageScale(20.0);
        corner = station.seenAt({100, 100}) - QPoint(10, 10);
        QCOMPARE(qGray(station.screenColor(corner + QPoint(10, 10))), 0);
        int gray = 0;
        for (int i : {-1, 0, 1}) // the line lies on the border, give or take a pixel
            gray += qGray(station.screenColor(corner + QPoint(10, i))) % 255 != 0;
        QVERIFY(gray >= 1);
    }

    void mousePansClicksAndFits()
    {
        Station station(filled(2000, 2000, Qt::red));
        QSignalSpy clicks(&station.viewer, &AwesomeImgViewer::pixelClicked);
        station.viewer.centerOn(1000, 1000);
        const QPoint before = station.viewer.pixelAt({100, 100});
        station.mouse.drag({100, 100}, {160, 70});
        QCOMPARE(station.viewer.pixelAt({160, 70}), before);
        QCOMPARE(clicks.size(), 0);
        station.mouse.click({160, 70});
        QCOMPARE(clicks.size(), 1);
        QCOMPARE(clicks.constFirst().constFirst().toPoint(), before);
        QSignalSpy scales(&station.viewer, &AwesomeImgViewer::sgImageScale);
        station.mouse.doubleClick({200, 150});
        QCOMPARE(station.viewer.imageScale(), 300.0 / 2000.0);
        QCOMPARE(scales.size(), 1);
        for (const auto& [key, scale] : {std::pair(Qt::Key_0, 1.0), {Qt::Key_Plus, 1.1}, {Qt::Key_F, 0.15}}) {
            QTest::keyClick(&station.viewer, key);
            QCOMPARE(station.viewer.imageScale(), scale);
        }
        QCOMPARE(scales.size(), 4);
        station.mouse.click({2, 2}); // beside the image
        QCOMPARE(clicks.size(), 2);  // the double click began with one
    }

    void pinchZooms()
    {
        Station station(filled(1000, 600, Qt::red));
        QTouchDevice* screen = QTest::createTouchDevice();
        QWidget* view = station.viewer.viewport();
        QTest::touchEvent(view, screen).press(0, QPoint(180, 150), view).press(1, QPoint(220, 150), view);
        for (int i = 1; i <= 8; ++i)
            QTest::touchEvent(view, screen)
                .move(0, QPoint(180 - 5 * i, 150), view)
                .move(1, QPoint(220 + 5 * i, 150), view);
        QTest::touchEvent(view, screen).release(0, QPoint(140, 150), view).release(1, QPoint(260, 150), view);
        const double scale = station.viewer.imageScale();
        QVERIFY2(scale > 2.0 && scale < 4.0, QByteArray::number(scale));
    }

    void pickingReportsPixelsAndEndsWithEscape()
    {
        Station station(filled(1000, 1000, Qt::red));
        QSignalSpy toggled(&station.viewer, &AwesomeImgViewer::toggledPick);
        QSignalSpy clicks(&station.viewer, &AwesomeImgViewer::pixelClicked);
        station.viewer.setPicking(true);
        QCOMPARE(station.viewer.viewport()->cursor().shape(), Qt::BitmapCursor);
        const QPoint before = station.viewer.pixelAt({100, 100});
        station.mouse.drag({100, 100}, {140, 140}); // no panning: the pixel below the release counts
        QCOMPARE(station.viewer.pixelAt({100, 100}), before);
        QCOMPARE(clicks.size(), 1);
        QTest::keyClick(&station.viewer, Qt::Key_Escape);
        QCOMPARE(toggled.size(), 2);
        QVERIFY(!station.viewer.isPicking());
    }

    void stationViewFitsUntilTheOperatorZooms()
    {
        ksImgViewer viewer;
        viewer.resize(400, 300);
        viewer.show();
        QSignalSpy scales(&viewer, &AwesomeImgViewer::sgImageScale);
        viewer.setImage(filled(1000, 600, Qt::red));
        QCOMPARE(viewer.imageScale(), 0.4);
        viewer.resize(800, 600);
        QCOMPARE(told(viewer.imageScale(), scales.size()), "0.8|0");
        Mouse(viewer).wheel(120);
        viewer.resize(400, 300);
        viewer.setImage(filled(500, 300, Qt::blue));
        QCOMPARE(viewer.imageScale(), 0.88);
        QTest::keyClick(&viewer, Qt::Key_F);
        viewer.resize(200, 150);
        QCOMPARE(viewer.imageScale(), 0.4);
    }

    void resultIsDrawnOverItsImageAndGoesWithIt()
    {
        ksImgViewer viewer;
        viewer.resize(400, 400);
        viewer.show();
        viewer.showResult({{10, 10}, 5, {20, 20}, 10, 0}); // nothing to draw on yet
        viewer.setImage(filled(400, 400, Qt::black));
        const auto brightest = [&](const QRect& part) {
            const QImage gray = viewer.viewport()->grab(part).toImage().convertToFormat(QImage::Format_Grayscale8);
            return int(*std::max_element(gray.constBits(), gray.constBits() + gray.sizeInBytes()));
        };
        viewer.showResult({{299.5, 199.5}, 12, {199.5, 199.5}, 150, 0});
        QVERIFY(brightest({298, 198, 4, 4}) > 80); // the hole's centre
        QVERIFY(brightest({310, 198, 4, 4}) > 80); // its edge
        QVERIFY(brightest({48, 198, 4, 4}) > 80);  // the rim
        QVERIFY(brightest({250, 198, 4, 4}) > 80); // the way from hub to hole
        QCOMPARE(brightest({230, 300, 20, 20}), 0);
        viewer.setImage(filled(400, 400, Qt::black));
        QCOMPARE(brightest({0, 0, 400, 400}), 0);
    }

    void imageIsSavedWholeOrTheReasonIsReported_data()
    {
        Table::of<QString, QString>({{"png", "轮毂.png", "轮毂.png"},
                                     {"no suffix", "轮毂", "轮毂.png"},
                                     {"no picture format", "a.txt", QString()}});
    }

    void imageIsSavedWholeOrTheReasonIsReported()
    {
        const auto [name, file] = Table::row<QString, QString>();
        QTemporaryDir dir;
        QWidget window;
        ImageExport out(&window);
        QSignalSpy saved(&out, &ImageExport::saved);
        out.save(filled(30, 20, Qt::green), dir.filePath(name));
        QTRY_COMPARE(saved.size(), 1);
        const QString error = saved.constFirst().at(1).toString();
        QCOMPARE(error.isEmpty(), !file.isEmpty());
        if (file.isEmpty())
            QVERIFY(error.contains(name) && !QFile::exists(dir.filePath(name)));
        else
            QCOMPARE(QImage(dir.filePath(file)).pixelColor(29, 19), QColor(Qt::green));
        QVERIFY(window.findChild<QTipWidget*>());
    }

    void tipGivesWayAndGoes()
    {
        QWidget window;
        window.resize(300, 200);
        QPointer<QTipWidget> first = QTipWidget::showText(&window, QStringLiteral("一"), 60000);
        QPointer<QTipWidget> second = QTipWidget::showText(&window, QStringLiteral("二"), 50);
        QTRY_VERIFY(!first);
        QTRY_VERIFY(!second);
    }
};

QTEST_MAIN(ViewerTest)
#include "tst_viewer.moc"
