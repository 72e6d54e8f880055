#include "Pictures.h"

#include "finder/ImageConversion.h"

#include <QVector>

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace {

constexpr int brightestGray = 251;

enum Ink : int { Green = 252, Red = 253, Yellow = 254, Cyan = 255 };

const QVector<QRgb>& palette()
{
    static const QVector<QRgb> colours = [] {
        QVector<QRgb> table;
        for (int i = 0; i <= brightestGray; ++i)
            table.append(qRgb(i, i, i));
        table << qRgb(0, 230, 60) << qRgb(255, 40, 40) << qRgb(255, 215, 0) << qRgb(0, 200, 255);
        return table;
    }();
    return colours;
}

cv::Point rounded(const cv::Point2d& point)
{
    return {cvRound(point.x), cvRound(point.y)};
}

class Pen
{
public:
    explicit Pen(cv::Mat& canvas)
        : m_canvas(canvas)
        , m_width(std::max(1, std::min(canvas.rows, canvas.cols) / 600))
    {
    }

    void circle(const cv::Point2d& center, double radius, Ink ink)
    {
        cv::circle(m_canvas, rounded(center), std::max(1, cvRound(radius)), cv::Scalar(ink), m_width);
    }

    void cross(const cv::Point2d& center, Ink ink)
    {
        const double arm = 12 * m_width;
        line(center - cv::Point2d(arm, 0), center + cv::Point2d(arm, 0), ink);
        line(center - cv::Point2d(0, arm), center + cv::Point2d(0, arm), ink);
    }

    void line(const cv::Point2d& from, const cv::Point2d& to, Ink ink)
    {
        cv::line(m_canvas, rounded(from), rounded(to), cv::Scalar(ink), m_width);
    }

    void text(const QString& text, Ink ink)
    {
        const double size = 0.6 * m_width;
        cv::putText(m_canvas, text.toStdString(), {10 * m_width, 20 * m_width}, cv::FONT_HERSHEY_SIMPLEX, size,
                    cv::Scalar(ink), m_width);
    }

private:
    cv::Mat& m_canvas;
    int m_width;
};

void drawAngle(Pen& pen, const finder::FindResult& found)
{
    pen.line(found.hub.center, found.hub.center + cv::Point2d(found.hub.radius, 0), Cyan);
    pen.line(found.hub.center, found.hole, Yellow);
    pen.cross(found.hole, Green);
    pen.circle(found.hole, found.holeRadius * 1.6, Green);
    pen.text(QString::number(found.angle, 'f', 3) + QStringLiteral(" deg"), Green);
}

constexpr int strips = 4;
constexpr double degreesOfStrip = 360.0 / strips;
constexpr double overlap = 6; // degrees that a strip goes on, so that a hole at its end is seen whole
constexpr int gutter = 18;    // rows above a strip, for its angles
constexpr int magnified = 480;
const cv::Size chartSize(760, 300);
constexpr int chartMargin = 44;
constexpr double leastRange = 0.5; // pixels; smaller residuals look small

void write(cv::Mat& canvas, const std::string& text, const cv::Point& at, int gray)
{
    cv::putText(canvas, text, at, cv::FONT_HERSHEY_SIMPLEX, 0.4, cv::Scalar(gray), 1, cv::LINE_AA);
}

/// The ring holds 16 times the square root of the gray value.
const cv::Mat& grayOfRing()
{
    static const cv::Mat table = [] {
        cv::Mat values(1, 256, CV_8UC1);
        for (int i = 0; i < 256; ++i)
            values.at<uchar>(i) = cv::saturate_cast<uchar>(i * i / 256.0);
        return values;
    }();
    return table;
}

cv::Mat canvasOf(QImage& image)
{
    return {image.height(), image.width(), CV_8UC1, image.bits(), static_cast<size_t>(image.bytesPerLine())};
}

} // namespace

QImage drawResult(const cv::Mat& gray, const finder::FindResult& found)
{
    if (gray.empty())
        return {};
    QImage image(gray.cols, gray.rows, QImage::Format_Indexed8);
    if (image.isNull())
        return {};
    image.setColorTable(palette());
    cv::Mat canvas(gray.rows, gray.cols, CV_8UC1, image.bits(), static_cast<size_t>(image.bytesPerLine()));
    cv::min(gray, brightestGray, canvas);
    Pen pen(canvas);
    if (found.hub.radius > 0) {
        pen.circle(found.hub.center, found.hub.radius, Cyan);
        pen.cross(found.hub.center, Cyan);
    }
    if (found.found())
        drawAngle(pen, found);
    else
        pen.text(QStringLiteral("NG %1").arg(static_cast<int>(found.error)), Red);
    return image;
}

RingPicture::RingPicture(const finder::RingMap& ring, const finder::Outline& hub)
    : m_ring(ring)
    , m_hub(hub)
    , m_columnsPerDegree(ring.turn() / 360.0)
{
    const int width = cvCeil((degreesOfStrip + 2 * overlap) * m_columnsPerDegree);
    m_image = QImage(width, strips * (gutter + ring.map().cols), QImage::Format_Grayscale8);
    if (m_image.isNull())
        return;
    m_image.fill(30);
    for (int strip = 0; strip < strips; ++strip)
        drawStrip(strip);
}

int RingPicture::stripTop(int strip) const
{
    return strip * (gutter + m_ring.map().cols) + gutter;
}

void RingPicture::drawStrip(int strip)
{
    cv::Mat canvas = canvasOf(m_image);
    const cv::Mat& map = m_ring.map();
    const double first = strip * degreesOfStrip - overlap;
    const int top = stripTop(strip);
    for (int x = 0; x < canvas.cols; ++x) {
        // The map runs clockwise, the engine's angles run the other way.
        const double turn = std::fmod(720 - first - x / m_columnsPerDegree, 360.0);
        const uchar* row = map.ptr(m_ring.padding() + cvRound(turn * m_columnsPerDegree) % m_ring.turn());
        for (int column = 0; column < map.cols; ++column)
            canvas.at<uchar>(top + map.cols - 1 - column, x) = grayOfRing().at<uchar>(row[column]);
    }
    for (int degree = cvRound(strip * degreesOfStrip); degree <= (strip + 1) * degreesOfStrip; degree += 10) {
        const int x = cvRound((degree - first) * m_columnsPerDegree);
        cv::line(canvas, {x, top - 4}, {x, top - 1}, cv::Scalar(200));
        write(canvas, std::to_string(degree), {x - 8, top - 6}, 200);
    }
}

QPointF RingPicture::placeOf(const QPointF& point) const
{
    const cv::Point2d place(point.x(), point.y());
    const cv::Point2d arm = place - m_hub.center;
    const double degrees = finder::screenAngle(m_hub.center, place);
    const double radius = cv::norm(arm) * m_hub.radius / m_hub.radiusAt(std::atan2(arm.y, arm.x));
    const double column = (radius - m_ring.radiusOfColumn(0)) / m_ring.step();
    const int strip = std::min(strips - 1, static_cast<int>(degrees / degreesOfStrip));
    return {(degrees - strip * degreesOfStrip + overlap) * m_columnsPerDegree,
            stripTop(strip) + m_ring.map().cols - 1 - column};
}

Magnifier::Magnifier(const cv::Mat& gray, const cv::Point2d& center, double reach)
{
    const int side = std::max(1, cvCeil(2 * reach));
    m_factor = static_cast<double>(magnified) / side;
    cv::Mat part;
    cv::getRectSubPix(gray, {side, side}, cv::Point2f(center), part);
    cv::resize(part, part, {magnified, magnified}, 0, 0, cv::INTER_CUBIC);
    m_image = finder::toImage(part);
    m_corner = QPointF(center.x, center.y) - QPointF(0.5, 0.5) * (side - 1);
}

QPointF Magnifier::placeOf(const QPointF& point) const
{
    return (point - m_corner + QPointF(0.5, 0.5)) * m_factor - QPointF(0.5, 0.5);
}

ResidualChart::ResidualChart(const std::vector<finder::EdgePoint>& points)
    : m_image(chartSize.width, chartSize.height, QImage::Format_Grayscale8)
{
    m_image.fill(24);
    m_range = leastRange;
    for (const finder::EdgePoint& point : points) {
        if (point.used)
            m_range = std::max(m_range, 1.2 * std::abs(point.residual));
    }
    cv::Mat canvas = canvasOf(m_image);
    drawAxes(canvas);
    for (const finder::EdgePoint& point : points) {
        const cv::Point2d place = placeOf(point);
        if (point.used)
            m_used.append({place.x, place.y});
        else
            cv::circle(canvas, cv::Point(place), 3, cv::Scalar(130), 1, cv::LINE_AA);
    }
}

cv::Point2d ResidualChart::placeOf(const finder::EdgePoint& point) const
{
    const double degrees = std::fmod(720 - point.angle * 180 / CV_PI, 360.0);
    const double share = std::clamp(point.residual / m_range, -1.0, 1.0);
    return {chartMargin + degrees / 360 * (chartSize.width - 2 * chartMargin),
            chartSize.height / 2.0 - share * (chartSize.height / 2.0 - chartMargin)};
}

void ResidualChart::drawAxes(cv::Mat& canvas) const
{
    for (int degrees = 0; degrees <= 360; degrees += 45) {
        const int x = chartMargin + degrees * (chartSize.width - 2 * chartMargin) / 360;
        cv::line(canvas, {x, chartMargin}, {x, chartSize.height - chartMargin}, cv::Scalar(60));
        write(canvas, std::to_string(degrees), {x - 10, chartSize.height - chartMargin + 18}, 170);
    }
    for (int i = -2; i <= 2; ++i) {
        const int y = chartSize.height / 2 - i * (chartSize.height / 2 - chartMargin) / 2;
        cv::line(canvas, {chartMargin, y}, {chartSize.width - chartMargin, y}, cv::Scalar(i == 0 ? 150 : 60));
        write(canvas, cv::format("%+.2f", i * m_range / 2), {2, y + 4}, 170);
    }
}
