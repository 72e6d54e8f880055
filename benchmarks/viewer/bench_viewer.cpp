#include "../Bench.h"
#include "Resources.h"
#include "viewer/ksImgViewer.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QtMath>

namespace {

const QSize fiveMegapixels(2448, 2048);
const QSize twentyMegapixels(5472, 3648);

QImage picture(const QSize& size, QImage::Format format, int seed)
{
    QImage image(size, format);
    for (int y = 0; y < image.height(); ++y) {
        uchar* line = image.scanLine(y);
        for (int x = 0; x < image.bytesPerLine(); ++x)
            line[x] = static_cast<uchar>(x * 7 + y * 3 + seed + ((x * y) >> 6));
    }
    return image;
}

/// A viewer that fills a full-HD screen and is painted on demand.
struct Screen
{
    Screen()
    {
        viewer.resize(1920, 1080);
        viewer.show();
        QApplication::processEvents();
    }

    void paint() { viewer.viewport()->repaint(); }

    /// Until the smaller copies of the image are made.
    void settle()
    {
        paint();
        QElapsedTimer timer;
        for (timer.start(); timer.elapsed() < 500;)
            QApplication::processEvents(QEventLoop::AllEvents, 50);
    }

    ksImgViewer viewer;
};

/// From a new image to the painted viewport.
void newImage(benchmark::State& state, const QSize& size, QImage::Format format)
{
    Screen screen;
    const QImage images[] = {picture(size, format, 0), picture(size, format, 50), picture(size, format, 100)};
    Laps laps(state);
    int i = 0;
    for (auto _ : state) {
        const QImage& image = images[++i % 3];
        laps.time([&] {
            screen.viewer.setImage(image);
            screen.paint();
        });
    }
}

/// One repaint at each of many scales from 0.05 to 16.
void zoom(benchmark::State& state, QImage::Format format)
{
    Screen screen;
    screen.viewer.setImage(picture(twentyMegapixels, format, 0));
    screen.settle();
    Laps laps(state);
    int i = 0;
    for (auto _ : state) {
        const double scale = 0.05 * qPow(320.0, (i++ % 41) / 40.0);
        laps.time([&] {
            screen.viewer.setImageScale(scale);
            screen.paint();
        });
    }
}

void pan(benchmark::State& state, QImage::Format format)
{
    Screen screen;
    screen.viewer.setImage(picture(twentyMegapixels, format, 0));
    screen.settle();
    Laps laps(state);
    int i = 0;
    for (auto _ : state) {
        if (i % 20 == 0)
            screen.viewer.setImageScale(0.05 * qPow(320.0, (i / 20 % 9) / 8.0));
        QScrollBar* bar = screen.viewer.horizontalScrollBar();
        const int step = ++i % 2 == 0 ? 40 : -37;
        laps.time([&] {
            bar->setValue(bar->value() + step);
            screen.paint();
        });
    }
}

QMouseEvent mouseAt(QEvent::Type type, const QPoint& at, Qt::MouseButtons buttons)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    return {type, at, at, at, button, buttons, Qt::NoModifier};
}

void readPixel(benchmark::State& state)
{
    Screen screen;
    screen.viewer.setImage(picture(twentyMegapixels, QImage::Format_RGB32, 0));
    screen.settle();
    Laps laps(state);
    int i = 0;
    for (auto _ : state) {
        QMouseEvent move = mouseAt(QEvent::MouseMove, {100 + i % 1500, 100 + i % 700}, Qt::NoButton);
        ++i;
        laps.time([&] { QApplication::sendEvent(screen.viewer.viewport(), &move); });
    }
}

void dragPoint(benchmark::State& state)
{
    Screen screen;
    screen.viewer.setImage(picture(twentyMegapixels, QImage::Format_Grayscale8, 0));
    for (int i = 0; i < 5; ++i)
        screen.viewer.addPointRoi({-2000.0 + 800 * i, 100.0 * i}, Qt::magenta, Qt::green, 20, QString::number(i));
    screen.viewer.showRoiHandles();
    screen.settle();
    const RoiItem* roi = screen.viewer.rois().at(2);
    QPoint at = screen.viewer.mapFromScene(roi->scenePos());
    QMouseEvent press = mouseAt(QEvent::MouseButtonPress, at, Qt::LeftButton);
    QApplication::sendEvent(screen.viewer.viewport(), &press);
    Laps laps(state);
    int i = 0;
    for (auto _ : state) {
        const double turn = 0.05 * ++i;
        QMouseEvent move = mouseAt(QEvent::MouseMove, at + QPoint(300 * qSin(turn), 200 * qCos(turn)), Qt::LeftButton);
        laps.time([&] {
            QApplication::sendEvent(screen.viewer.viewport(), &move);
            QApplication::processEvents(); // the coalesced repaint
        });
    }
    QMouseEvent release = mouseAt(QEvent::MouseButtonRelease, at, Qt::NoButton);
    QApplication::sendEvent(screen.viewer.viewport(), &release);
}

BENCHMARK_CAPTURE(newImage, gray_5MP, fiveMegapixels, QImage::Format_Grayscale8)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(newImage, rgb32_5MP, fiveMegapixels, QImage::Format_RGB32)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(newImage, gray_20MP, twentyMegapixels, QImage::Format_Grayscale8)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(newImage, rgb32_20MP, twentyMegapixels, QImage::Format_RGB32)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(zoom, gray_20MP, QImage::Format_Grayscale8)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(zoom, rgb32_20MP, QImage::Format_RGB32)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pan, gray_20MP, QImage::Format_Grayscale8)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(pan, rgb32_20MP, QImage::Format_RGB32)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(readPixel)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(dragPoint)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    initResources();
    return runBenchmarks<QApplication>(argc, argv);
}
