#include "viewer/ksImgViewer.h"

#include "graphics/ImageItem.h"
#include "viewer/ResultOverlay.h"

#include <QLabel>

ksImgViewer::ksImgViewer(QWidget* parent)
    : RoiImgViewer(parent)
    , m_readout(new QLabel(this))
{
    m_readout->setObjectName(QStringLiteral("pixelReadout"));
    m_readout->setStyleSheet(QStringLiteral("QLabel{ color: #FFFFFF; background-color: rgba(0, 0, 0, 150); }"));
    m_readout->setMargin(4);
    m_readout->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_readout->hide();
    setReadoutLabel(m_readout);
}

ksImgViewer::~ksImgViewer() = default;

void ksImgViewer::setImage(const QImage& image)
{
    if (m_result)
        m_result->hide();
    const QSize old = imageSize();
    RoiImgViewer::setImage(image);
    if (m_fitted && image.size() != old)
        fitImage();
}

void ksImgViewer::showResult(const ResultDrawing& drawing)
{
    if (image().isNull())
        return;
    if (!m_result)
        m_result = std::make_unique<ResultOverlay>(imageItem());
    m_result->show(drawing, imageItem()->fromImage({0.5, 0.5}));
}

void ksImgViewer::resizeEvent(QResizeEvent* event)
{
    RoiImgViewer::resizeEvent(event);
    placeReadout();
    if (m_fitted)
        fitImage();
}

void ksImgViewer::enterEvent(QEvent* event)
{
    RoiImgViewer::enterEvent(event);
    m_readout->clear();
    m_readout->show();
}

void ksImgViewer::leaveEvent(QEvent* event)
{
    RoiImgViewer::leaveEvent(event);
    m_readout->hide();
}

void ksImgViewer::zoomSteps(int steps)
{
    m_fitted = false;
    RoiImgViewer::zoomSteps(steps);
}

void ksImgViewer::scaledByOperator()
{
    m_fitted = false;
    RoiImgViewer::scaledByOperator();
}

void ksImgViewer::fitByOperator()
{
    RoiImgViewer::fitByOperator();
    m_fitted = true;
}

void ksImgViewer::placeReadout()
{
    const int height = m_readout->sizeHint().height();
    m_readout->setGeometry(0, this->height() - height, width(), height);
}
