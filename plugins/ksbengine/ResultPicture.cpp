#include "ResultPicture.h"

#include <QVector>

#include <opencv2/imgproc.hpp>

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
