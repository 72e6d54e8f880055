#include "guided/calibration/CalibrationDraft.h"

#include "dialogs/calibration/CalibrationFit.h"

#include <QLineF>
#include <QtMath>

#include <cmath>

namespace {

constexpr double nearestMarkers = 5;    // pixels from each other
constexpr double largestShare = 0.02;   // of the longest way between the points: what a residual may be
constexpr double plainDistortion = 0.5; // millimetres at the corner, from which on it is worth a warning

double longestWay(const QVector<PointPair>& pairs)
{
    double longest = 0;
    for (const PointPair& pair : pairs)
        longest = std::max(longest, QLineF(pairs.first().real, pair.real).length());
    return longest;
}

} // namespace

void CalibrationDraft::begin(const StationConfig& stored, bool useFourPoint)
{
    fourPoint = useFourPoint;
    found.clear();
    const TwoPointCalibration& two = stored.twoPoint;
    for (int i = 0; i < 4; ++i)
        pixels[i] = stored.fourPoint.pixelPoints[i];
    real = stored.fourPoint.realPoints;
    if (!fourPoint) {
        pixels[0] = two.point1;
        pixels[1] = two.point2;
    }
    length = two.length;
}

QPointF CalibrationDraft::onMachine(const QPointF& ofBoard) const
{
    const double turn = qDegreesToRadians(boardTurn);
    const double y = yUpwards ? -ofBoard.y() : ofBoard.y();
    return boardOrigin + QPointF(std::cos(turn) * ofBoard.x() - std::sin(turn) * y,
                                 std::sin(turn) * ofBoard.x() + std::cos(turn) * y);
}

QVector<PointPair> CalibrationDraft::pairs() const
{
    QVector<PointPair> all;
    if (method != Method::Points) {
        const QVector<QPointF> own = board.points();
        for (int i = 0; i < found.size() && i < own.size(); ++i)
            all.append({found[i], onMachine(own[i])});
    } else if (fourPoint) {
        for (int i = 0; i < 4; ++i)
            all.append({pixels[i], real[i]});
    } else {
        all = {{pixels[0], {0, 0}}, {pixels[1], {length, 0}}};
    }
    return all;
}

std::optional<AffineMap> CalibrationDraft::map() const
{
    return fourPoint ? PlaneFit::affine(pairs()) : PlaneFit::similarity(pairs());
}

std::optional<FitResiduals> CalibrationDraft::residuals() const
{
    const auto own = map();
    return own ? PlaneFit::residuals(*own, pairs()) : std::optional<FitResiduals>();
}

std::optional<LensDistortion> CalibrationDraft::lens() const
{
    return method == Method::Points ? std::nullopt : LensDistortion::estimate(pairs(), picture.size());
}

std::optional<double> CalibrationDraft::lensAtCorner() const
{
    const auto own = map();
    const auto bent = lens();
    return own && bent ? bent->atCorner() * Calibration::fourPoint(*own).mmPerPixel() : std::optional<double>();
}

QString CalibrationDraft::markerProblem() const
{
    if (method != Method::Points)
        return found.isEmpty() ? tr("还没有找到标定板") : QString();
    const QRectF inside(-0.5, -0.5, picture.width(), picture.height());
    for (int i = 0; i < markers(); ++i) {
        if (!inside.contains(pixels[i]))
            return tr("P%1 在图像之外").arg(i + 1);
        for (int j = 0; j < i; ++j) {
            if (QLineF(pixels[i], pixels[j]).length() < nearestMarkers)
                return tr("P%1 与 P%2 重合").arg(j + 1).arg(i + 1);
        }
    }
    return fourPoint && nearlyCollinear(pixels[0], pixels[1], pixels[2]) ? tr("图像点 P1、P2、P3 共线") : QString();
}

QString CalibrationDraft::problem() const
{
    const QString problem = markerProblem();
    if (!problem.isEmpty())
        return problem;
    if (method != Method::Points)
        return board.pitch > 0 ? QString() : tr("点距应大于 0");
    if (!fourPoint)
        return length > 0 ? QString() : tr("两点的实际距离应大于 0");
    if (nearlyCollinear(real[0], real[1], real[2]))
        return tr("场景点 P1、P2、P3 共线或重合");
    const auto own = map();
    return own ? Calibration::fourPoint(*own).problem() : tr("由这些点得不到标定");
}

QString CalibrationDraft::doubt() const
{
    const auto left = residuals();
    const double way = longestWay(pairs());
    if (left && left->largest > largestShare * way)
        return tr("残差过大：%1 mm，请检查点的位置和坐标").arg(left->largest, 0, 'f', 3);
    const auto corner = lensAtCorner();
    if (corner && *corner > plainDistortion)
        return tr("镜头畸变在图像角上相当于 %1 mm，零件请尽量放在中间").arg(*corner, 0, 'f', 2);
    return {};
}

std::array<QPointF, 4> CalibrationDraft::boardCorners() const
{
    const int last = found.size() - 1;
    return {found[0], found[board.columns - 1], found[last - board.columns + 1], found[last]};
}

void CalibrationDraft::applyFourPoint(const AffineMap& map, FourPointCalibration* own) const
{
    const std::array<QPointF, 4> marked = method == Method::Points ? pixels : boardCorners();
    for (int i = 0; i < 4; ++i) {
        own->pixelPoints[i] = marked[i].toPoint();
        own->realPoints[i] =
            method == Method::Points ? real[i] : Calibration::fourPoint(map).toMachine(own->pixelPoints[i]);
    }
    own->map = map;
}

void CalibrationDraft::applyTwoPoint(double scale, TwoPointCalibration* own) const
{
    const bool board = method != Method::Points;
    own->point1 = (board ? boardCorners()[0] : pixels[0]).toPoint();
    own->point2 = (board ? boardCorners()[3] : pixels[1]).toPoint();
    own->length = board ? scale * pixelDistance(own->point1, own->point2) : length;
    own->scale = scale;
}

StationConfig CalibrationDraft::applied(const StationConfig& stored) const
{
    StationConfig wanted = stored;
    const auto own = map();
    if (!own)
        return wanted;
    if (fourPoint) {
        applyFourPoint(*own, &wanted.fourPoint);
        wanted.spoiledFourPoint = {};
    } else {
        applyTwoPoint(Calibration::fourPoint(*own).mmPerPixel(), &wanted.twoPoint);
        wanted.spoiledTwoPoint = {};
    }
    return wanted;
}
