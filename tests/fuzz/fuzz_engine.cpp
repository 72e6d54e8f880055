#include "ModelTeacher.h"
#include "ModelTrials.h"
#include "Task.h"
#include "finder/ImageConversion.h"

#include <valvecell/ResultKeys.h>

#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fuzzer/FuzzedDataProvider.h>

// Feeds the engine images of any size, format, stride and content, with parameters of any kind, and checks what holds
// for every answer.

namespace {

constexpr int longestSide = 300; // pixels; larger images only slow the search down
constexpr int longestThin = 4000;

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::abort();
}

void disc(FuzzedDataProvider& data, cv::Mat& image, const cv::Point& center, double radius, int gray)
{
    // Not exactly as wished for.
    const double size = radius * data.ConsumeFloatingPointInRange(0.9, 1.1);
    cv::circle(image, center, std::max(0, cvRound(size)), cv::Scalar(gray), cv::FILLED, cv::LINE_AA);
}

/// Something like a wheel, so that the later stages are reached.
void drawWheel(FuzzedDataProvider& data, cv::Mat& image)
{
    const double side = std::min(image.rows, image.cols);
    const double angle = data.ConsumeFloatingPointInRange(0.0, 2 * CV_PI);
    const cv::Point middle(image.cols / 2 + data.ConsumeIntegralInRange(-20, 20),
                           image.rows / 2 + data.ConsumeIntegralInRange(-20, 20));
    const cv::Point hole(middle + cv::Point(cv::Point2d(std::cos(angle), std::sin(angle)) * 0.37 * side));
    const int metal = data.ConsumeIntegralInRange(60, 255);
    disc(data, image, middle, 0.43 * side, metal);
    disc(data, image, middle, 0.31 * side, 20);
    disc(data, image, middle, 0.15 * side, metal);
    disc(data, image, hole, data.ConsumeIntegralInRange(2, 24), data.ConsumeIntegralInRange(0, 60));
}

cv::Mat drawing(FuzzedDataProvider& data, int width, int height)
{
    cv::Mat image(height, width, CV_8UC1, cv::Scalar(data.ConsumeIntegral<uchar>()));
    if (data.ConsumeIntegralInRange(0, 3) > 0)
        drawWheel(data, image);
    for (int spots = data.ConsumeIntegralInRange(0, 6); spots > 0; --spots) {
        const cv::Point at(data.ConsumeIntegralInRange(0, width), data.ConsumeIntegralInRange(0, height));
        disc(data, image, at, data.ConsumeIntegralInRange(0, 200), data.ConsumeIntegral<uchar>());
    }
    return image;
}

void scribble(FuzzedDataProvider& data, QImage& image)
{
    for (int writes = data.ConsumeIntegralInRange(0, 8); writes > 0 && image.sizeInBytes() > 0; --writes) {
        const auto at = data.ConsumeIntegralInRange<qsizetype>(0, image.sizeInBytes() - 1);
        const std::string bytes = data.ConsumeRandomLengthString(64);
        const auto count = std::min(static_cast<qsizetype>(bytes.size()), image.sizeInBytes() - at);
        std::memcpy(image.bits() + at, bytes.data(), static_cast<size_t>(count));
    }
}

/// A part of a larger image, as cameras with a region of interest deliver it: its rows are not side by side, and begin
/// anywhere.
QImage partOf(const QImage& image, int left)
{
    if (image.width() <= left || image.height() < 2)
        return image;
    return QImage(
        image.constBits() + left, image.width() - left, image.height() - 1, image.bytesPerLine(), image.format(),
        [](void* whole) { delete static_cast<QImage*>(whole); }, new QImage(image));
}

QImage imageOf(FuzzedDataProvider& data)
{
    const bool thin = data.ConsumeIntegralInRange(0, 15) == 0;
    int width = data.ConsumeIntegralInRange(0, thin ? longestThin : longestSide);
    int height = data.ConsumeIntegralInRange(0, thin ? 70 : longestSide);
    if (thin && data.ConsumeBool())
        std::swap(width, height);
    if (width == 0 || height == 0)
        return {};
    QImage image = finder::toImage(drawing(data, width, height));
    image = image.convertToFormat(
        static_cast<QImage::Format>(data.ConsumeIntegralInRange<int>(QImage::Format_Mono, QImage::NImageFormats - 1)));
    scribble(data, image);
    if (image.colorCount() > 0 && data.ConsumeBool())
        image.setColorCount(data.ConsumeIntegralInRange(0, 256));
    const int left = data.ConsumeIntegralInRange(0, 7);
    return image.depth() == 8 ? partOf(image, left) : image;
}

QVariant valueOf(FuzzedDataProvider& data)
{
    switch (data.ConsumeIntegralInRange(0, 7)) {
    case 0:
        return QString::fromStdString(data.ConsumeRandomLengthString(8));
    case 1:
        return data.ConsumeBool();
    case 2:
        return data.ConsumeIntegral<qint64>();
    case 3:
        return data.ConsumeFloatingPoint<double>();
    case 4:
        return QVariantList{1, 2};
    case 5:
        return data.PickValueInArray({qQNaN(), qInf(), 0.0, -0.0, 1e308, 50000.0, 0.1, 60.0});
    default:
        return data.ConsumeFloatingPointInRange(0.0, 300.0);
    }
}

QVariantMap parametersOf(FuzzedDataProvider& data)
{
    QVariantMap map;
    for (const char* name : {"rim_radius", "rim_radius_tol", "ring_radius", "ring_radius_tol", "hole_radius",
                             "hole_radius_tol", "score_limit", "taught"}) {
        if (data.ConsumeBool())
            map.insert(QLatin1String(name), valueOf(data));
    }
    return map;
}

bool isFinite(const QPointF& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

void checkAnswer(const QVariantMap& result, const QSize& size)
{
    const QVariantMap answer = result.value(QString::fromLatin1(ResultKeys::algoResult)).toMap();
    const auto number = [&answer](const char* key) { return answer.value(QString::fromLatin1(key)).toDouble(); };
    const bool found = number(ResultKeys::error) == 0;
    const QPointF center = answer.value(QString::fromLatin1(ResultKeys::centerPoint)).toPointF();
    require(found ? number(ResultKeys::angle) >= 0 && number(ResultKeys::angle) < 360
                  : number(ResultKeys::angle) == 361,
            "angles lie in a turn, or say that there is none");
    require(isFinite(center), "the hole's centre is finite");
    require(!found || QRectF(-0.5, -0.5, size.width(), size.height()).contains(center), "the hole lies in the image");
    require(number(ResultKeys::score) >= 0 && number(ResultKeys::score) <= 1, "scores lie between 0 and 1");
    require(std::isfinite(number(ResultKeys::residual)) && std::isfinite(number(ResultKeys::hubRadius)),
            "what the answer rests on is finite");
    require(!answer.value(QString::fromLatin1(ResultKeys::resultTip)).toString().isEmpty(), "each outcome has its tip");
}

void checkTask(const QImage& image, const QVariantMap& parameters)
{
    Task task;
    task.input = {{QString::fromLatin1(ResultKeys::originImage), image}};
    task.known = true;
    const bool usable = finder::applyParameters(parameters, &task.parameters, &task.refusal);
    require(usable == task.refusal.isEmpty(), "refused parameters have their reason");
    finder::Finder finder;
    finder::FindResult found;
    checkAnswer(runTask(task, finder, &found), image.size());
    if (usable)
        trialStages(finder::toGray(image).gray, finder, found, task.parameters);
}

void checkTeaching(const QImage& image, const QPointF& rim, const QPointF& hole)
{
    ModelTeacher teacher;
    QString error;
    const QVariantMap proposed = teacher.propose(image, rim, hole, &error);
    require(proposed.isEmpty() != error.isEmpty(), "teaching proposes or says why not");
    finder::HoleModel model;
    require(finder::applyParameters(proposed, &model, &error), "what is proposed can be stored");
}

void beQuiet(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count)
{
    qInstallMessageHandler(beQuiet);
    FuzzedDataProvider data(bytes, count);
    const bool teach = data.ConsumeIntegralInRange(0, 7) == 0;
    const QVariantMap parameters = parametersOf(data);
    const QPointF rim(data.ConsumeFloatingPointInRange(-20.0, 320.0), data.ConsumeFloatingPointInRange(-20.0, 320.0));
    const QPointF hole(data.ConsumeFloatingPointInRange(-20.0, 320.0), data.ConsumeFloatingPointInRange(-20.0, 320.0));
    const QImage image = imageOf(data);
    if (teach)
        checkTeaching(image, rim, hole);
    else
        checkTask(image, parameters);
    return 0;
}
