#include "graphics/ImagePyramid.h"
#include "graphics/SmoothScaler.h"
#include "graphics/ViewOverlay.h"
#include "support/Table.h"

#include <QPainter>

namespace {

QImage noise(int width, int height, QImage::Format format = QImage::Format_Grayscale8)
{
    QImage image(width, height, format);
    unsigned state = 12345;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width * image.depth() / 8; ++x) {
            state = state * 1664525u + 1013904223u;
            image.scanLine(y)[x] = static_cast<uchar>(state >> 24);
        }
    }
    return image;
}

/// Bilinear in floating point, straight from the definition.
double expected(const QImage& image, int channel, double u, double v)
{
    u = qBound(0.0, u, image.width() - 1.0);
    v = qBound(0.0, v, image.height() - 1.0);
    const int x = static_cast<int>(u);
    const int y = static_cast<int>(v);
    const auto at = [&](int px, int py) {
        const int column = std::min(px, image.width() - 1) * image.depth() / 8 + channel;
        return image.constScanLine(std::min(py, image.height() - 1))[column];
    };
    const double upper = at(x, y) * (1 - (u - x)) + at(x + 1, y) * (u - x);
    const double lower = at(x, y + 1) * (1 - (u - x)) + at(x + 1, y + 1) * (u - x);
    return upper * (1 - (v - y)) + lower * (v - y);
}

} // namespace

class GraphicsTest : public QObject
{
    Q_OBJECT

private slots:
    void imageIsScaledBilinearAndWithoutSeams_data()
    {
        Table::columns<QImage::Format, QSize, QTransform>();
        for (const auto format : {QImage::Format_Grayscale8, QImage::Format_RGB32}) {
            const auto row = [&](const char* name, const QSize& size, const QTransform& toDevice) {
                QTest::addRow("%s, format %d", name, format) << format << size << toDevice;
            };
            row("fit", QSize(203, 151), QTransform(0.527, 0, 0, 0.527, 3.25, -7.5));
            row("small", QSize(203, 151), QTransform(0.21, 0, 0, 0.21, 10, 10));
            row("almost 1:1", QSize(64, 64), QTransform(0.999, 0, 0, 0.999, 0, 0));
            row("one pixel", QSize(1, 1), QTransform(0.9, 0, 0, 0.9, 5, 5));
            row("flat", QSize(2000, 2), QTransform(0.05, 0, 0, 0.05, 0, 4));
        }
    }

    void imageIsScaledBilinearAndWithoutSeams()
    {
        const auto [format, size, toDevice] = Table::row<QImage::Format, QSize, QTransform>();
        const QImage image = noise(size.width(), size.height(), format);
        const QRect target = toDevice.mapRect(QRectF(QPointF(), QSizeF(size))).toAlignedRect();
        QImage whole(target.size(), QImage::Format_RGB32);
        SmoothScaler(image, toDevice, target, SmoothScaler::Portable).render(whole, 0);
        QImage same(target.size(), QImage::Format_RGB32);
        SmoothScaler(image, toDevice, target).render(same, 0);
        QCOMPARE(same, whole);
        for (int y = 0; y < target.height(); ++y) {
            for (int x = 0; x < target.width(); ++x) {
                const double u = (target.x() + x + 0.5 - toDevice.dx()) / toDevice.m11() - 0.5;
                const double v = (target.y() + y + 0.5 - toDevice.dy()) / toDevice.m22() - 0.5;
                for (int i = 0; i < 3; ++i) {
                    const int got = whole.constScanLine(y)[4 * x + i];
                    const double wanted = expected(image, image.depth() == 8 ? 0 : i, u, v);
                    QVERIFY2(qAbs(got - wanted) <= 2.5, qPrintable(QString("%1 for %2").arg(got).arg(wanted)));
                }
                QCOMPARE(qAlpha(whole.pixel(x, y)), 255);
            }
        }
        const int third = target.height() / 3;
        const QRect right = target.adjusted(target.width() / 2, 0, 0, 0);
        QImage part(right.width(), target.height() - third, QImage::Format_RGB32);
        SmoothScaler(image, toDevice, right).render(part, third);
        QCOMPARE(part, whole.copy(target.width() / 2, third, part.width(), part.height()));
    }

    void levelIsTheMeanOfFourPixelsOfTheOneBefore_data()
    {
        Table::of<QImage::Format>({{"gray", QImage::Format_Grayscale8}, {"color", QImage::Format_RGB32}});
    }

    void levelIsTheMeanOfFourPixelsOfTheOneBefore()
    {
        const auto [format] = Table::row<QImage::Format>();
        QImage image(3, 3, format); // odd both ways
        for (int i = 0; i < 9; ++i)
            image.setPixelColor(i % 3, i / 3, QColor(20 * i, 20 * i, 20 * i));
        ImagePyramid pyramid;
        pyramid.setImage(image);
        QTRY_COMPARE(pyramid.levelFor(0.5), 1);
        const QImage half = pyramid.level(1);
        QCOMPARE(half.size(), QSize(2, 2));
        QCOMPARE(half.pixelColor(0, 0).green(), 40);  // 0 20 60 80
        QCOMPARE(half.pixelColor(1, 0).green(), 70);  // 40 100
        QCOMPARE(half.pixelColor(0, 1).green(), 130); // 120 140
        QCOMPARE(half.pixelColor(1, 1).green(), 160);
    }

    void pyramidGrowsOnDemandAndForgetsTheOldImage()
    {
        ImagePyramid pyramid;
        QSignalSpy refined(&pyramid, &ImagePyramid::refined);
        const QImage first = noise(640, 480);
        pyramid.setImage(first);
        QCOMPARE(pyramid.levelFor(0.6), 0); // nothing smaller is needed
        QCOMPARE(pyramid.levelFor(0.2), 0); // not made yet
        pyramid.setImage(noise(320, 240));  // a live picture: the old one is not worked on
        QCOMPARE(pyramid.levelFor(0.2), 0);
        QTRY_VERIFY(!refined.isEmpty());
        QCOMPARE(pyramid.levelFor(0.2), 2);
        QCOMPARE(pyramid.level(2).size(), QSize(80, 60));
        QCOMPARE(told(pyramid.levelFor(0.25), pyramid.levelFor(0.26)), "2|1");
        QCOMPARE(pyramid.levelFor(0.0001), ImagePyramid::levels - 1);
    }

    void scaleBarIsARoundLength()
    {
        const QMap<double, double> lengths{{1, 1}, {1.99, 1}, {37, 20}, {50, 50}, {0.08, 0.05}, {1000, 1000}};
        for (const double length : lengths.keys())
            QCOMPARE(ScaleBarOverlay::roundLength(length), lengths[length]);
    }

    void scaleBarIsAsLongAsItSays()
    {
        QImage screen(400, 200, QImage::Format_RGB32);
        screen.fill(Qt::darkGray);
        QPainter painter(&screen);
        // 0.25 mm a pixel, seen at 2:1: 8 screen pixels a millimetre, 160 of them 20 mm
        ScaleBarOverlay(0.25).draw(&painter, screen.rect(), 2.0);
        painter.end();
        int white = 0;
        for (int x = 0; x < screen.width(); ++x)
            white += qGray(screen.pixel(x, 200 - 16)) > 200;
        QVERIFY2(qAbs(white - 160) <= 4, QByteArray::number(white));
    }
};

QTEST_MAIN(GraphicsTest)
#include "tst_graphics.moc"
