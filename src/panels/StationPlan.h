#pragma once

#include <QRect>

/// Where what a station shows lies, so that its picture, which keeps its shape, is as large as the room allows and what
/// is beside the picture is used. Pixels. What there is no room for has an empty place.
struct StationPlan
{
    static constexpr int gap = 6;

    QRect station;
    QRect model;
    QRect band;
    QRect picture;
    QRect strip;
    QRect angle;
    QRect x;
    QRect y;
    QRect failures;
    QRect found;
    QRect notFound;
    QRect refused;
    QRect yield;
    QRect shift;
    QRect hours;

    /// What the first line takes of the room.
    struct Header
    {
        int height;
        int stationWidth;
    };

    /// `aspect`: width to height of the picture.
    static StationPlan of(const QRect& room, double aspect, Header header);
    /// With nothing but the picture below the first line.
    static StationPlan ofPicture(const QRect& room, double aspect, Header header);
};
