#include "../Bench.h"
#include "graphics/SmoothScaler.h"

#include <QPainter>

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <functional>
#include <memory>

namespace {

const QSize screenSize(900, 700);
constexpr int bandRows = 32;

QImage picture(const QSize& size, QImage::Format format)
{
    QImage image(size, format);
    for (int y = 0; y < image.height(); ++y) {
        uchar* line = image.scanLine(y);
        for (int x = 0; x < image.bytesPerLine(); ++x)
            line[x] = static_cast<uchar>(x * 7 + y * 3 + ((x * y) >> 6));
    }
    return image;
}

QRect targetOf(const QImage& image, const QTransform& toDevice)
{
    return toDevice.mapRect(QRectF(QPointF(), image.size())).toRect() & QRect(QPoint(), screenSize);
}

/// As the viewer draws.
void drawByScaler(QPainter& painter, const QImage& image, const QTransform& toDevice)
{
    const QRect target = targetOf(image, toDevice);
    const SmoothScaler scaler(image, toDevice, target);
    QImage band(target.width(), bandRows, QImage::Format_RGB32);
    for (int top = 0; top < target.height(); top += bandRows) {
        scaler.render(band, top);
        painter.drawImage(target.left(), target.top() + top, band);
    }
}

cv::Mat matOf(const QImage& image)
{
    return {image.height(), image.width(), CV_8UC(image.depth() / 8), const_cast<uchar*>(image.constBits()),
            static_cast<std::size_t>(image.bytesPerLine())};
}

/// By the library alone, to the nearest whole pixel of the image; gray becomes colour for the screen.
void drawByResize(QPainter& painter, const QImage& image, const QTransform& toDevice, int interpolation)
{
    const QRect target = targetOf(image, toDevice);
    const QRect seen = toDevice.inverted().mapRect(QRectF(target)).toRect() & image.rect();
    const cv::Mat part = matOf(image)(cv::Rect(seen.x(), seen.y(), seen.width(), seen.height()));
    const QImage shown(target.size(), QImage::Format_RGB32);
    cv::Mat colors = matOf(shown);
    if (image.depth() == 8) {
        cv::Mat gray;
        cv::resize(part, gray, colors.size(), 0, 0, interpolation);
        cv::cvtColor(gray, colors, cv::COLOR_GRAY2BGRA);
    } else {
        cv::resize(part, colors, colors.size(), 0, 0, interpolation);
    }
    painter.drawImage(target.topLeft(), shown);
}

void drawByLinearResize(QPainter& painter, const QImage& image, const QTransform& toDevice)
{
    drawByResize(painter, image, toDevice, cv::INTER_LINEAR);
}

void drawByAreaResize(QPainter& painter, const QImage& image, const QTransform& toDevice)
{
    drawByResize(painter, image, toDevice, cv::INTER_AREA);
}

void drawByPainter(QPainter& painter, const QImage& image, const QTransform& toDevice)
{
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setTransform(toDevice);
    painter.drawImage(0, 0, image);
    painter.resetTransform();
}

QTransform placeOf(const QSize& size, double scale, double shift)
{
    return {scale,
            0,
            0,
            scale,
            (screenSize.width() - size.width() * scale) / 2 + shift,
            (screenSize.height() - size.height() * scale) / 2};
}

double fit(const QSize& size)
{
    return std::min(double(screenSize.width()) / size.width(), double(screenSize.height()) / size.height());
}

using Draw = void (*)(QPainter&, const QImage&, const QTransform&);
using Place = std::function<QTransform(const QSize& size, int step)>;

void drawOften(benchmark::State& state, Draw draw, const QImage& image, const Place& place)
{
    cv::setNumThreads(1); // as the engine's module does in the program
    QImage screen(screenSize, QImage::Format_RGB32);
    QPainter painter(&screen);
    Laps laps(state);
    int step = 0;
    for (auto _ : state) {
        const QTransform toDevice = place(image.size(), ++step);
        laps.time([&] { draw(painter, image, toDevice); });
    }
}

/// Below 1:1, where the viewer draws by its own scaler; at 1:1 and above it draws by the painter.
const std::vector<std::pair<const char*, Place>> places{
    {"fit", [](const QSize& size, int) { return placeOf(size, fit(size), 0); }},
    {"zoom", [](const QSize& size, int step) { return placeOf(size, 0.5 * std::exp2(step % 41 / 41.0), 0); }},
    {"pan", [](const QSize& size, int step) { return placeOf(size, 0.7, step % 2 ? 40 : -37); }},
    {"pan_1_to_1", [](const QSize& size, int step) { return placeOf(size, 1, step % 2 ? 40 : -37); }},
    {"pan_2_to_1", [](const QSize& size, int step) { return placeOf(size, 2, step % 2 ? 40 : -37); }},
};

const std::vector<std::pair<const char*, Draw>> ways{
    {"scaler", drawByScaler}, {"linear", drawByLinearResize}, {"area", drawByAreaResize}, {"painter", drawByPainter}};

const bool registered = [] {
    for (const auto format : {QImage::Format_Grayscale8, QImage::Format_RGB32}) {
        for (const QSize& size : {QSize(2448, 2048), QSize(5472, 3648)}) {
            const auto image = std::make_shared<const QImage>(picture(size, format));
            for (const auto& place : places) {
                for (const auto& way : ways) {
                    const QString name = QStringLiteral("draw/%1/%2/%3/%4")
                                             .arg(place.first)
                                             .arg(image->depth() == 8 ? "gray" : "rgb32")
                                             .arg(size.width())
                                             .arg(way.first);
                    const auto run = [=](benchmark::State& state) {
                        drawOften(state, way.second, *image, place.second);
                    };
                    benchmark::RegisterBenchmark(qPrintable(name), run)->UseManualTime()->Unit(benchmark::kMillisecond);
                }
            }
        }
    }
    return true;
}();

} // namespace
