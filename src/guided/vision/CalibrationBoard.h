#pragma once

#include <QPointF>
#include <QVector>

#include <opencv2/core.hpp>

/// A flat board with a grid of points at equal distances.
struct CalibrationBoard
{
    enum class Kind {
        Chessboard, ///< its points are the inner corners
        Circles     ///< discs or rings in rows and columns, dark on light or light on dark; their centres
    };

    Kind kind = Kind::Chessboard;
    int columns = 9;   ///< points in a row, at least 3
    int rows = 6;      ///< at least 3
    double pitch = 10; ///< millimetres from point to point

    /// The board's own coordinates of its points, row by row: (0, 0) is the first, x along the row. Millimetres.
    QVector<QPointF> points() const;

    /// The points in the picture in the same order, to parts of a pixel, the middle of the top-left pixel being (0, 0).
    /// The first lies at the upper left, and the order goes round as in the picture. Empty when the board is not seen
    /// whole. `gray` is 8-bit. Any thread; some hundred milliseconds.
    QVector<QPointF> find(const cv::Mat& gray) const;
};
