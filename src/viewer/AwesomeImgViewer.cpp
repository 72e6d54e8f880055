#include "viewer/AwesomeImgViewer.h"

#include "graphics/ImageItem.h"
#include "viewer/ImageExport.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>

#include <cmath>

namespace {

/// The pixel below the cursor for an operator: place, colour as RGB, hue (0 to 179), saturation and
/// value. One pixel past the right and the lower edge still counts as inside, with colour 0; farther out it says so.
QString pixelReadout(const QImage& image, const QPoint& pixel)
{
    const bool inside = pixel.x() >= 0 && pixel.y() >= 0 && pixel.x() <= image.width() && pixel.y() <= image.height();
    if (!inside)
        return QStringLiteral("out of image...");
    const QColor color = image.valid(pixel) ? image.pixelColor(pixel).toRgb() : QColor(0, 0, 0);
    return QStringLiteral("Position:[%1, %2]  Color(RGB):[%3, %4, %5] (HSV):[%6, %7, %8]")
        .arg(pixel.x())
        .arg(pixel.y())
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.hsvHue() / 2) // halved to fit 0..179; a gray pixel's -1 becomes 0
        .arg(color.hsvSaturation())
        .arg(color.value());
}

double stepped(double base, double up, double down, int steps)
{
    return base * (steps > 0 ? std::pow(up, steps) : std::pow(down, -steps));
}

} // namespace

AwesomeImgViewer::AwesomeImgViewer(QWidget* parent)
    : ZoomView(parent)
    , m_export(new ImageExport(this))
{
    setScene(new QGraphicsScene(this));
    scene()->setBackgroundBrush(Qt::darkGray);
    scene()->setItemIndexMethod(QGraphicsScene::NoIndex); // few items, whose extent follows the zoom
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);    // drawBackground() leaves nothing out
    connect(this, &ZoomView::clicked, this, &AwesomeImgViewer::onClicked);
}

AwesomeImgViewer::~AwesomeImgViewer() = default;

void AwesomeImgViewer::setImage(const QImage& image)
{
    const QSize old = imageSize();
    scene()->setBackgroundBrush(Qt::darkGray);
    if (!m_item) {
        m_item = new ImageItem;
        scene()->addItem(m_item);
    }
    m_item->setImage(image);
    if (m_item->pos().isNull())
        m_item->setPos(image.width() / 2.0, image.height() / 2.0);
    scene()->setSceneRect(0, 0, image.width(), image.height());
    if (old != image.size()) {
        setSceneRect(m_item->sceneBoundingRect()); // an item that stayed where a smaller image put it is still reached
        imageResized(old);
    }
}

const QImage& AwesomeImgViewer::image() const
{
    static const QImage none;
    return m_item ? m_item->image() : none;
}

QSize AwesomeImgViewer::imageSize() const
{
    return m_item ? m_item->size() : QSize(0, 0);
}

bool AwesomeImgViewer::setImageScale(double scale)
{
    if (!applyScale(scale))
        return false;
    m_scale = scale;
    return true;
}

bool AwesomeImgViewer::fitImage()
{
    const bool fitted = fitContent();
    m_scale = viewScale();
    return fitted;
}

void AwesomeImgViewer::setSecondMode(bool enabled, double minimumFactor)
{
    m_secondMode = enabled;
    m_minimumFactor = qBound(minScale, minimumFactor, 1.0);
    shrinkImage(0);
}

/// Half a pixel less, so that rounding names the pixel within which the point lies.
QPoint AwesomeImgViewer::pixelAt(const QPoint& position) const
{
    if (!m_item)
        return {-1, -1};
    const QPointF inImage = m_item->toImage(m_item->mapFromScene(mapToScene(position)));
    return (inImage - QPointF(0.5, 0.5)).toPoint();
}

void AwesomeImgViewer::setReadoutLabel(QLabel* label)
{
    m_readout = label;
}

void AwesomeImgViewer::setPicking(bool on)
{
    if (m_picking == on)
        return;
    m_picking = on;
    if (on)
        viewport()->setCursor(QCursor(QPixmap(QStringLiteral(":/cursor_pipette.png")), 2, 21)); // the pipette's tip
    else
        viewport()->unsetCursor();
    emit toggledPick(on);
}

QRectF AwesomeImgViewer::contentRect() const
{
    return m_item ? m_item->sceneBoundingRect() : QRectF();
}

void AwesomeImgViewer::zoomSteps(int steps)
{
    if (m_secondMode)
        return shrinkImage(steps);
    const double scale = stepped(transform().m11(), 1.1, 0.9, steps);
    if (m_item)
        m_item->setTransformOriginPoint(0, 0);
    if (setImageScale(scale))
        emit sgImageScale(scale);
}

void AwesomeImgViewer::scaledByOperator()
{
    m_scale = viewScale();
    emit sgImageScale(m_scale);
}

void AwesomeImgViewer::shrinkImage(int steps)
{
    m_secondFactor = qMax(m_minimumFactor, qMin(1.0, stepped(m_secondFactor, 1.2, 0.8, steps)));
    if (m_item)
        m_item->setScale(m_secondMode ? m_secondFactor : 1.0);
}

void AwesomeImgViewer::mouseMoveEvent(QMouseEvent* event)
{
    ZoomView::mouseMoveEvent(event);
    if (!image().isNull() && m_readout)
        m_readout->setText(pixelReadout(image(), pixelAt(event->pos())));
    const QGraphicsItem* dragged = scene()->mouseGrabberItem();
    if (dragged && dragged->isSelected() && dragged->type() == QGraphicsPixmapItem::Type)
        emit sgItemMoved(dragged->scenePos());
}

void AwesomeImgViewer::keyPressEvent(QKeyEvent* event)
{
    if (m_picking && event->key() == Qt::Key_Escape)
        return setPicking(false);
    ZoomView::keyPressEvent(event);
}

void AwesomeImgViewer::contextMenuEvent(QContextMenuEvent* event)
{
    popUpMenu(event->globalPos());
}

void AwesomeImgViewer::popUpMenu(const QPoint& globalPosition)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    fillMenu(menu);
    menu->popup(globalPosition);
}

void AwesomeImgViewer::fillMenu(QMenu* menu)
{
    menu->addAction(tr("适应窗口\tF"), this, [this] { fitByOperator(); });
    menu->addAction(tr("原始大小\t0"), this, [this] { scaleByOperator(1.0); });
    menu->addAction(tr("放大\t+"), this, [this] { zoomSteps(1); });
    menu->addAction(tr("缩小\t-"), this, [this] { zoomSteps(-1); });
    menu->addSeparator();
    menu->addAction(tr("复制图像"), this, [this] { ImageExport::copy(image()); });
    menu->addAction(tr("图像另存为…"), this, [this] { m_export->askAndSave(image()); });
    const QList<QAction*> actions = menu->actions();
    for (QAction* action : actions)
        action->setEnabled(!image().isNull());
}

// Only what the image leaves free: filling a whole screen takes as long as drawing the image.
void AwesomeImgViewer::drawBackground(QPainter* painter, const QRectF& rect)
{
    QRegion free(mapFromScene(rect).boundingRect().adjusted(-1, -1, 1, 1));
    if (!image().isNull() && !image().hasAlphaChannel())
        free -= mapFromScene(contentRect()).boundingRect().adjusted(1, 1, -2, -2);
    painter->save();
    painter->resetTransform();
    for (const QRect& part : free)
        painter->fillRect(part, scene()->backgroundBrush());
    if (image().isNull())
        drawPlaceHolder(painter);
    painter->restore();
}

void AwesomeImgViewer::drawPlaceHolder(QPainter* painter) const
{
    const QPixmap holder(QStringLiteral(":/imagena.png"));
    const QSizeF size = QSizeF(holder.size()) / holder.devicePixelRatioF();
    painter->drawPixmap(QRectF(viewport()->rect()).center() - QPointF(size.width(), size.height()) / 2, holder);
}

void AwesomeImgViewer::onClicked(const QPoint& position)
{
    const QPoint pixel = pixelAt(position);
    if (image().valid(pixel))
        emit pixelClicked(pixel);
}
