#pragma once

#include <QPointF>

#include <opencv2/core.hpp>

/// What a marker was drawn to.
struct SnappedPoint
{
    enum class Kind { None, Edge, Corner, Hole };

    Kind kind = Kind::None;
    QPointF point;     ///< pixels, parts of them included; where it was asked for when there is nothing
    double radius = 0; ///< of a hole: the mean of its outline's, pixels
};

/// The feature of the picture that a marker at `near` is meant for, no farther away than `reach`: the centre of a hole
/// or disc whose outline is whole, else a corner, else the nearest point of an edge. Pixels, the middle of the top-left
/// one being (0, 0). `gray` is 8-bit. Any thread; below a millisecond for a reach of 30.
SnappedPoint snapPoint(const cv::Mat& gray, const QPointF& near, double reach);

/// The centre of the hole or disc around `near` alone.
SnappedPoint snapToHole(const cv::Mat& gray, const QPointF& near, double reach);
