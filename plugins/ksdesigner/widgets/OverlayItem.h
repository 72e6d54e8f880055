#pragma once

#include <valvecell/IModelTrial.h>

#include <QGraphicsItem>

/// Circles, points and numbered marks over an image, with lines and texts of the same size at any zoom.
class OverlayItem : public QGraphicsItem
{
public:
    struct Mark
    {
        QPointF point;
        QString label;
    };

    /// The image's area, in its pixels.
    void setArea(const QRectF& area);
    /// What a stage of the engine found.
    void setShapes(const QVector<TrialCircle>& circles, const QVector<QPointF>& points);
    /// What a person pointed out.
    void setMarks(const QVector<Mark>& marks);
    const QVector<TrialCircle>& circles() const { return m_circles; }
    const QVector<Mark>& marks() const { return m_marks; }

    QRectF boundingRect() const override { return m_area; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void paintCircles(QPainter* painter, const QTransform& toView) const;
    void paintPoints(QPainter* painter, const QTransform& toView) const;
    void paintMarks(QPainter* painter, const QTransform& toView) const;

    QRectF m_area;
    QVector<TrialCircle> m_circles;
    QVector<QPointF> m_points;
    QVector<Mark> m_marks;
};
