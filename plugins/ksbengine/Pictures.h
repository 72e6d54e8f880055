#pragma once

#include "finder/FindResult.h"
#include "finder/places/HoleFit.h"
#include "finder/places/Views.h"

#include <QImage>
#include <QPointF>
#include <QVector>

/// The image in gray with hub centre, hole and angle drawn in colour, at full size so that its coordinates stay those
/// of the camera. Gray values and drawing share one byte a pixel (an indexed image), which costs a plain copy; the four
/// brightest gray values make room for the colours. Null for an empty image. Any thread.
QImage drawResult(const cv::Mat& gray, const finder::FindResult& found);

/// The unwrapped ring as a person reads it: four strips of a quarter turn each, one below the other, with the angles as
/// the engine gives them, outside up, in the image's own gray values. Any thread, like all here.
class RingPicture
{
public:
    /// `hub` is what the ring was unwrapped around.
    RingPicture(const finder::RingMap& ring, const finder::Outline& hub);

    QImage image() const { return m_image; }
    /// Where a point of the camera's image lies in the picture; on the first strip that shows it.
    QPointF placeOf(const QPointF& point) const;

private:
    void drawStrip(int strip);
    int stripTop(int strip) const;

    finder::RingMap m_ring;
    finder::Outline m_hub;
    QImage m_image;
    double m_columnsPerDegree = 1;
};

/// A small part of an image, magnified.
class Magnifier
{
public:
    /// The part around `center` that reaches `reach` pixels each way; the image's border goes on outside of it.
    Magnifier(const cv::Mat& gray, const cv::Point2d& center, double reach);

    QImage image() const { return m_image; }
    /// Picture pixels per pixel.
    double factor() const { return m_factor; }
    QPointF placeOf(const QPointF& point) const;

private:
    QImage m_image;
    QPointF m_corner;
    double m_factor = 1;
};

/// How far edge points lie from their outline, over the direction. Points that the fit left out are part of the image,
/// those it used are given as places in it.
class ResidualChart
{
public:
    explicit ResidualChart(const std::vector<finder::EdgePoint>& points);

    QImage image() const { return m_image; }
    QVector<QPointF> used() const { return m_used; }

private:
    void drawAxes(cv::Mat& canvas) const;
    cv::Point2d placeOf(const finder::EdgePoint& point) const;

    double m_range = 1; ///< pixels up and down
    QImage m_image;
    QVector<QPointF> m_used;
};
