#pragma once

#include <QGraphicsItem>
#include <QPen>
#include <QVector>

class QPainterPath;

/// A line drawing over an image that the operator looks at and does not touch. A child of the image item, so its
/// coordinates are relative to the image's centre, in image pixels. Its lines keep their width at any zoom.
class OverlayItem : public QGraphicsItem
{
public:
    explicit OverlayItem(QGraphicsItem* parent);

    void setPen(const QPen& pen);

    QRectF boundingRect() const override;
    QPainterPath shape() const override; ///< empty: the mouse passes through
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    /// \param pixel the length of a screen pixel in item coordinates, for parts that keep their screen size
    virtual QPainterPath outline(double pixel) const = 0;

    const QPen& pen() const { return m_pen; }

private:
    QPen m_pen;
};

/// Any number of points, each a small cross of fixed screen size.
class PointsItem : public OverlayItem
{
public:
    using OverlayItem::OverlayItem;
    void setPoints(const QVector<QPointF>& points);

protected:
    QPainterPath outline(double pixel) const override;

private:
    QVector<QPointF> m_points;
};

/// Straight lines from corner to corner, closed or open.
class PolygonItem : public OverlayItem
{
public:
    using OverlayItem::OverlayItem;
    void setPolygon(const QPolygonF& polygon, bool closed);

protected:
    QPainterPath outline(double pixel) const override;

private:
    QPolygonF m_polygon;
    bool m_closed = true;
};

/// Part of a circle. Angles in degrees, 0 along +x, counter-clockwise as seen on the screen.
class ArcItem : public OverlayItem
{
public:
    using OverlayItem::OverlayItem;
    void setArc(const QPointF& center, double radius, double startAngle = 0, double spanAngle = 360);

protected:
    QPainterPath outline(double pixel) const override;

private:
    QPointF m_center;
    double m_radius = 0;
    double m_startAngle = 0;
    double m_spanAngle = 360;
};

/// A text of fixed screen size, its lower left corner a little above and to the right of its point.
class TextItem : public OverlayItem
{
public:
    using OverlayItem::OverlayItem;
    void setText(const QPointF& at, const QString& text);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    QPainterPath outline(double) const override;

private:
    QPointF m_at;
    QString m_text;
};
