#pragma once

#include "graphics/ZoomView.h"
#include "viewer/AwesomeRoiInfo.h"

#include <QImage>
#include <QPointer>

class ImageExport;
class ImageItem;
class QLabel;
class QMenu;

/// Shows one camera or reference image, zooms it, and shows the pixel under the cursor. GUI thread.
class AwesomeImgViewer : public ZoomView
{
    Q_OBJECT

public:
    explicit AwesomeImgViewer(QWidget* parent = nullptr);
    ~AwesomeImgViewer() override;

    /// Shows an image of any format; the data is shared, not copied. An empty image shows a place-holder.
    virtual void setImage(const QImage& image);
    const QImage& image() const;
    QSize imageSize() const;
    /// What drawings over the image are children of; null before the first image.
    ImageItem* imageItem() const { return m_item; }

    /// The current view scale, never below 0.01.
    double imageScale() const { return m_scale; }
    /// As applyScale(), and remembers it. Does not emit sgImageScale().
    bool setImageScale(double scale);
    /// Shows the whole image. Does not emit sgImageScale().
    bool fitImage();

    /// In the second mode the wheel leaves the view alone and makes the image itself smaller about its centre, by a
    /// factor of at most 1 and at least `minimumFactor`.
    void setSecondMode(bool enabled, double minimumFactor = 0.1);
    double secondModeFactor() const { return m_secondFactor; }

    /// The pixel that is seen at a viewport position; may lie outside the image.
    QPoint pixelAt(const QPoint& position) const;

    /// A label that shows the pixel read-out while the mouse moves; the caller's, or null for none.
    void setReadoutLabel(QLabel* label);

    /// While picking, the cursor is a pipette, and dragging does not pan; Esc ends it.
    void setPicking(bool on);
    bool isPicking() const { return m_picking; }

    /// Opens the context menu.
    void popUpMenu(const QPoint& globalPosition);

signals:
    void filterroiChanged(const AwesomeRoiInfo& info, QString name); ///< a region of interest was moved or resized
    void pixelClicked(QPoint pixel);                                 ///< a click, without dragging, inside the image
    void roiLockIng(QString name);                                   ///< a locked region of interest was touched
    void sgImageScale(qreal scale);                                  ///< the operator changed the scale
    void roiChanged();                                               ///< any region changed, came or went
    void toggledPick(bool on);
    void sgItemMoved(QPointF scenePosition); ///< a selected pixmap item is being dragged

protected:
    /// The image's size changed from `old`; regions that keep to pixels move along.
    virtual void imageResized(const QSize& old) { Q_UNUSED(old) }

    /// Adds what the context menu of this kind of viewer offers.
    virtual void fillMenu(QMenu* menu);

    QRectF contentRect() const override;
    void zoomSteps(int steps) override;
    void scaledByOperator() override;
    bool panAllowed() const override { return !m_picking; }
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;

private:
    void onClicked(const QPoint& position);
    /// The wheel's steps in the second mode.
    void shrinkImage(int steps);
    void drawPlaceHolder(QPainter* painter) const;

    ImageItem* m_item = nullptr; ///< the scene's
    ImageExport* m_export;
    QPointer<QLabel> m_readout;
    double m_scale = 1.0;
    double m_minimumFactor = 0.1;
    double m_secondFactor = 1.0;
    bool m_secondMode = false;
    bool m_picking = false;
};
