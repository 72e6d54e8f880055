#include "guided/calibration/CalibrationPicture.h"

#include "graphics/ImageItem.h"
#include "graphics/OverlayItem.h"
#include "graphics/ViewScale.h"
#include "guided/stepper/Loupe.h"
#include "guided/vision/GrayPicture.h"
#include "guided/vision/PointSnap.h"
#include "viewer/ksImgViewer.h"

#include <QMouseEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const QColor markerInk(255, 0, 255);
const QColor selectedInk(0, 255, 0);
const QColor boardInk(0, 230, 118);
constexpr double markerSize = 20;    // pixels of the picture
constexpr double reachOnScreen = 24; // pixels of the screen
const QPointF halfPixel(0.5, 0.5);   // the viewer counts from the corner of the first pixel

} // namespace

CalibrationPicture::CalibrationPicture(QWidget* parent)
    : QWidget(parent)
    , m_viewer(new ksImgViewer(this))
    , m_loupe(new Loupe(this))
{
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->addWidget(m_viewer);
    m_viewer->setObjectName(QStringLiteral("picture"));
    m_viewer->setMinimumSize(320, 240);
    m_viewer->viewport()->setMouseTracking(true);
    m_viewer->viewport()->installEventFilter(this);
    connect(m_viewer, &ksImgViewer::filterroiChanged, this, &CalibrationPicture::onMoved);
    connect(m_viewer, &ksImgViewer::pixelClicked, this,
            [this](const QPoint& pixel) { emit clicked(m_snapping ? snapped(pixel).point : QPointF(pixel)); });
}

void CalibrationPicture::setPicture(const QImage& picture)
{
    m_viewer->removeAllRois();
    m_viewer->setImage(picture);
    m_loupe->setPicture(picture);
    m_gray = grayPicture(picture);
    if (!m_points && m_viewer->imageItem()) {
        m_points = new PointsItem(m_viewer->imageItem());
        m_firstRow = new PolygonItem(m_viewer->imageItem());
        m_first = new TextItem(m_viewer->imageItem());
        m_points->setPen(graphics::cosmeticPen(boardInk));
        m_firstRow->setPen(graphics::cosmeticPen(boardInk, 1.0));
        m_first->setPen(graphics::cosmeticPen(boardInk));
    }
    setBoard({}, 1);
    m_viewer->fitImage();
}

void CalibrationPicture::setSnapping(bool snapping)
{
    m_snapping = snapping;
}

QPointF CalibrationPicture::fromMiddle(const QPointF& point) const
{
    const QSize size = m_viewer->imageSize();
    return point + halfPixel - QPointF(size.width() / 2, size.height() / 2);
}

void CalibrationPicture::setMarkers(const QVector<QPointF>& points, const QString& name)
{
    m_viewer->removeAllRois();
    m_single = !name.isEmpty();
    for (int i = 0; i < points.size(); ++i)
        m_viewer->addPointRoi(fromMiddle(points[i]), markerInk, selectedInk, markerSize,
                              m_single ? name : QStringLiteral("P%1").arg(i + 1));
    m_viewer->showRoiHandles();
}

void CalibrationPicture::setBoard(const QVector<QPointF>& points, int columns)
{
    if (!m_points)
        return;
    QVector<QPointF> shown;
    for (const QPointF& point : points)
        shown.append(fromMiddle(point));
    m_points->setPoints(shown);
    m_firstRow->setPolygon(shown.mid(0, columns), false);
    m_first->setVisible(!shown.isEmpty());
    if (!shown.isEmpty())
        m_first->setText(shown.first(), tr("首点 → X"));
}

SnappedPoint CalibrationPicture::snapped(const QPointF& near) const
{
    const double reach = std::clamp(reachOnScreen / std::max(0.05, m_viewer->viewScale()), 10.0, 60.0);
    return snapPoint(m_gray, near, reach);
}

void CalibrationPicture::onMoved(const AwesomeRoiInfo& info, const QString& name)
{
    const QPointF point = info.center - halfPixel;
    m_loupe->look(point, QStringLiteral("%1  (%2, %3)").arg(name).arg(point.x(), 0, 'f', 1).arg(point.y(), 0, 'f', 1));
    emit markerMoved(m_single ? 0 : name.midRef(1).toInt() - 1, point);
}

void CalibrationPicture::look(const QPointF& near)
{
    const SnappedPoint found = snapped(near);
    QString what = tr("无特征");
    switch (found.kind) {
    case SnappedPoint::Kind::Hole:
        what = tr("孔中心");
        break;
    case SnappedPoint::Kind::Corner:
        what = tr("角点");
        break;
    case SnappedPoint::Kind::Edge:
        what = tr("边缘");
        break;
    case SnappedPoint::Kind::None:
        break;
    }
    m_loupe->look(
        found.point,
        QStringLiteral("%1 (%2, %3)").arg(what).arg(found.point.x(), 0, 'f', 1).arg(found.point.y(), 0, 'f', 1),
        found.radius);
}

bool CalibrationPicture::eventFilter(QObject* watched, QEvent* event)
{
    if (m_snapping && event->type() == QEvent::MouseMove) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->buttons() == Qt::NoButton && !m_gray.empty())
            look(m_viewer->pixelAt(mouse->pos()));
    }
    return QWidget::eventFilter(watched, event);
}
