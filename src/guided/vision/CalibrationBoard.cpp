#include "guided/vision/CalibrationBoard.h"

#include "guided/vision/PointSnap.h"

#include <opencv2/calib3d.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace {

constexpr int searchSide = 1600; // pixels of the longer side in which the board is looked for first

using Points = std::vector<cv::Point2f>;

cv::Mat reduced(const cv::Mat& gray, double* scale)
{
    *scale = std::max(1.0, double(std::max(gray.cols, gray.rows)) / searchSide);
    if (*scale <= 1)
        return gray;
    cv::Mat small;
    cv::resize(gray, small, {}, 1 / *scale, 1 / *scale, cv::INTER_AREA);
    return small;
}

/// From pixels of the reduced picture; the middles of the pixels are the whole numbers in both.
void enlarge(Points* points, double scale)
{
    for (cv::Point2f& point : *points)
        point = {float((point.x + 0.5) * scale - 0.5), float((point.y + 0.5) * scale - 0.5)};
}

double spacing(const Points& points, int columns)
{
    double least = 1e9;
    for (size_t i = 0; i + 1 < points.size(); ++i) {
        if (int(i + 1) % columns != 0)
            least = std::min(least, cv::norm(points[i + 1] - points[i]));
    }
    return least;
}

Points chessboardCorners(const cv::Mat& gray, const cv::Mat& small, double scale, cv::Size size)
{
    Points corners;
    const int flags = cv::CALIB_CB_ADAPTIVE_THRESH | cv::CALIB_CB_NORMALIZE_IMAGE | cv::CALIB_CB_FAST_CHECK;
    if (!cv::findChessboardCorners(small, size, corners, flags))
        return {};
    enlarge(&corners, scale);
    const int half = std::clamp(int(spacing(corners, size.width) / 4), 3, 20);
    cv::cornerSubPix(gray, corners, {half, half}, {-1, -1},
                     {cv::TermCriteria::COUNT + cv::TermCriteria::EPS, 60, 0.001});
    return corners;
}

Points circleCenters(const cv::Mat& gray, const cv::Mat& small, double scale, cv::Size size)
{
    Points centers;
    cv::Mat inverse;
    cv::bitwise_not(small, inverse);
    const int flags = cv::CALIB_CB_SYMMETRIC_GRID | cv::CALIB_CB_CLUSTERING;
    const bool seen = cv::findCirclesGrid(small, size, centers, flags) ||
                      cv::findCirclesGrid(inverse, size, centers, flags) ||
                      cv::findCirclesGrid(small, size, centers, cv::CALIB_CB_SYMMETRIC_GRID) ||
                      cv::findCirclesGrid(inverse, size, centers, cv::CALIB_CB_SYMMETRIC_GRID);
    if (!seen)
        return {};
    enlarge(&centers, scale);
    const double reach = spacing(centers, size.width) / 2;
    for (cv::Point2f& center : centers) {
        const SnappedPoint snapped = snapToHole(gray, {center.x, center.y}, reach);
        if (snapped.kind == SnappedPoint::Kind::Hole)
            center = {float(snapped.point.x()), float(snapped.point.y())};
    }
    return centers;
}

/// A grid of points row by row, turned as a person would read it off the picture.
class Grid
{
public:
    Grid(const Points& points, int columns)
        : m_points(points)
        , m_columns(columns)
    {
    }

    Points read()
    {
        if (rowWay().cross(columnWay()) < 0)
            reverseRows();
        const bool square = m_columns == rows();
        Grid best = *this;
        for (int turn = 0; turn < 3; ++turn) {
            if (square)
                turnQuarter();
            else
                std::reverse(m_points.begin(), m_points.end());
            if (uprightness() > best.uprightness())
                best = *this;
        }
        return best.m_points;
    }

private:
    int rows() const { return int(m_points.size()) / m_columns; }
    cv::Point2f rowWay() const { return m_points[m_columns - 1] - m_points[0]; }
    cv::Point2f columnWay() const { return m_points[size_t(rows() - 1) * m_columns] - m_points[0]; }
    double uprightness() const { return rowWay().x / cv::norm(rowWay()) + columnWay().y / cv::norm(columnWay()); }
    void reverseRows()
    {
        for (int i = 0; i < rows() / 2; ++i)
            std::swap_ranges(m_points.begin() + i * m_columns, m_points.begin() + (i + 1) * m_columns,
                             m_points.begin() + (rows() - 1 - i) * m_columns);
    }
    void turnQuarter()
    {
        const Points before = m_points;
        for (int row = 0; row < m_columns; ++row) {
            for (int column = 0; column < m_columns; ++column)
                m_points[size_t(row) * m_columns + column] = before[size_t(m_columns - 1 - column) * m_columns + row];
        }
    }

    Points m_points;
    int m_columns;
};

} // namespace

QVector<QPointF> CalibrationBoard::points() const
{
    QVector<QPointF> all;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            all.append({column * pitch, row * pitch});
    }
    return all;
}

QVector<QPointF> CalibrationBoard::find(const cv::Mat& gray) const
{
    if (gray.empty() || columns < 3 || rows < 3)
        return {};
    double scale = 1;
    const cv::Mat small = reduced(gray, &scale);
    const cv::Size size(columns, rows);
    Points found = kind == Kind::Chessboard ? chessboardCorners(gray, small, scale, size)
                                            : circleCenters(gray, small, scale, size);
    if (int(found.size()) != columns * rows)
        return {};
    QVector<QPointF> all;
    for (const cv::Point2f& point : Grid(found, columns).read())
        all.append({point.x, point.y});
    return all;
}
