#pragma once

#include "viewer/RoiImgViewer.h"

#include <memory>

class QLabel;
class ResultOverlay;
struct ResultDrawing;

/// The picture of a station: a viewer that shows the whole image until the operator zooms, with the pixel read-out at
/// its lower edge while the mouse is over it.
class ksImgViewer : public RoiImgViewer
{
    Q_OBJECT

public:
    explicit ksImgViewer(QWidget* parent = nullptr);

    ~ksImgViewer() override;

    /// It takes what a window has left; a large picture asks for no more than a small one.
    QSize sizeHint() const override { return minimumSize(); }

    /// Shows an image; what was drawn over the one before goes.
    void setImage(const QImage& image) override;
    /// Draws what was found over the image that is shown.
    void showResult(const ResultDrawing& drawing);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void fitByOperator() override;
    void scaledByOperator() override;
    void zoomSteps(int steps) override;

private:
    void placeReadout();

    QLabel* m_readout;
    std::unique_ptr<ResultOverlay> m_result;
    bool m_fitted = true; ///< the whole image is shown and stays so when the view's size changes
};
