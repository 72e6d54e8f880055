#include "guided/vision/PlaneFit.h"

#include <algorithm>
#include <cmath>

namespace {

struct Means
{
    QPointF pixel;
    QPointF real;
};

Means meansOf(const QVector<PointPair>& pairs)
{
    Means means;
    for (const PointPair& pair : pairs) {
        means.pixel += pair.pixel / pairs.size();
        means.real += pair.real / pairs.size();
    }
    return means;
}

/// The map with the linear part given that takes mean to mean.
AffineMap through(const Means& means, double a, double b, double d, double e)
{
    return {a, b, means.real.x() - a * means.pixel.x() - b * means.pixel.y(),
            d, e, means.real.y() - d * means.pixel.x() - e * means.pixel.y()};
}

AffineMap similarityOf(const QVector<PointPair>& pairs, const Means& means, double hand)
{
    double same = 0;
    double crossed = 0;
    double spread = 0;
    for (const PointPair& pair : pairs) {
        const QPointF p = pair.pixel - means.pixel;
        const QPointF q = pair.real - means.real;
        same += p.x() * q.x() + hand * p.y() * q.y();
        crossed += p.x() * q.y() - hand * p.y() * q.x();
        spread += p.x() * p.x() + p.y() * p.y();
    }
    const double cosine = same / spread;
    const double sine = crossed / spread;
    return through(means, cosine, -hand * sine, sine, hand * cosine);
}

} // namespace

std::optional<AffineMap> PlaneFit::affine(const QVector<PointPair>& pairs)
{
    const Means means = meansOf(pairs);
    double xx = 0, xy = 0, yy = 0, xu = 0, yu = 0, xv = 0, yv = 0;
    for (const PointPair& pair : pairs) {
        const QPointF p = pair.pixel - means.pixel;
        const QPointF q = pair.real - means.real;
        xx += p.x() * p.x();
        xy += p.x() * p.y();
        yy += p.y() * p.y();
        xu += p.x() * q.x();
        yu += p.y() * q.x();
        xv += p.x() * q.y();
        yv += p.y() * q.y();
    }
    const double determinant = xx * yy - xy * xy;
    if (pairs.size() < 3 || !(determinant > 1e-4 * (xx + yy) * (xx + yy)))
        return {};
    return through(means, (xu * yy - yu * xy) / determinant, (yu * xx - xu * xy) / determinant,
                   (xv * yy - yv * xy) / determinant, (yv * xx - xv * xy) / determinant);
}

std::optional<AffineMap> PlaneFit::similarity(const QVector<PointPair>& pairs)
{
    const Means means = meansOf(pairs);
    const bool spread = std::any_of(pairs.begin(), pairs.end(),
                                    [&](const PointPair& pair) { return pair.pixel != pairs.first().pixel; });
    if (pairs.size() < 2 || !spread)
        return {};
    const AffineMap plain = similarityOf(pairs, means, 1);
    const AffineMap mirrored = similarityOf(pairs, means, -1);
    return residuals(mirrored, pairs).rms < 0.999 * residuals(plain, pairs).rms ? mirrored : plain;
}

FitResiduals PlaneFit::residuals(const AffineMap& map, const QVector<PointPair>& pairs)
{
    FitResiduals all;
    double sum = 0;
    const Calibration calibration = Calibration::fourPoint(map);
    for (const PointPair& pair : pairs) {
        const QPointF miss = calibration.toMachine(pair.pixel) - pair.real;
        const double square = miss.x() * miss.x() + miss.y() * miss.y();
        all.each.append(miss);
        all.largest = std::max(all.largest, std::sqrt(square));
        sum += square;
    }
    all.rms = pairs.isEmpty() ? 0 : std::sqrt(sum / pairs.size());
    return all;
}
