#pragma once

#include <QGraphicsView>

#include <memory>
#include <vector>

class ViewOverlay;

/// A view that the operator zooms with wheel, keys (+, -, 0, F), double click and pinch, and pans by dragging what no
/// item takes. The transform is a pure scale. The scroll bars stay hidden, so that the picture keeps its place when it
/// grows past the view.
class ZoomView : public QGraphicsView
{
    Q_OBJECT

public:
    static constexpr double minScale = 0.01;
    static constexpr double maxScale = 1000.0; ///< keeps the scroll range of a 20-megapixel picture within an int

    explicit ZoomView(QWidget* parent = nullptr);
    ~ZoomView() override;

    /// View pixels for one scene pixel.
    double viewScale() const { return transform().m11(); }

    /// Scales both axes and keeps the scene point at the middle of the widget there. Below `minScale`, above `maxScale`
    /// or not a number: nothing changes and false is returned.
    bool applyScale(double scale);

    /// Resets the transform, sets the given one and centres on `center` (scene).
    void restoreView(const QTransform& transform, const QPointF& center);

    /// Shows the whole content, as large as it goes. False while there is no content.
    bool fitContent();

    /// What is drawn over the scene at fixed places of the screen; replaces what was.
    void setOverlays(std::vector<std::unique_ptr<ViewOverlay>> overlays);

signals:
    /// A left click without dragging; viewport position.
    void clicked(const QPoint& position);

protected:
    /// What fitContent() shows, in scene coordinates.
    virtual QRectF contentRect() const { return sceneRect(); }
    /// The operator turned the wheel or pressed + or - by so many steps, positive to come nearer.
    virtual void zoomSteps(int steps) = 0;
    /// The operator set the scale by fit, 1:1 or pinch (not by zoomSteps()); already applied.
    virtual void scaledByOperator() {}
    /// A drag of the left button pans unless this says otherwise.
    virtual bool panAllowed() const { return true; }

    virtual void fitByOperator();
    void scaleByOperator(double scale);

    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void drawForeground(QPainter* painter, const QRectF& rect) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    enum class Drag { None, Pressed, Panning };

    void pan(const QPoint& by);
    /// Two fingers scale about the point between them, and pan along with it.
    bool pinch(const class QGestureEvent& event);

    Drag m_drag = Drag::None;
    QPoint m_pressedAt;
    QPoint m_panAt;
    std::vector<std::unique_ptr<ViewOverlay>> m_overlays;
};
