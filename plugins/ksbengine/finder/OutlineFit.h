#pragma once

#include "Edges.h"
#include "Geometry.h"

#include <opencv2/core.hpp>

#include <array>
#include <vector>

namespace finder {

/// Cosine and sine of a direction, and of twice the direction.
struct Harmonics
{
    double c, s, c2, s2;

    static Harmonics at(double angle);
};

/// The harmonics of each point's direction.
std::vector<Harmonics> harmonicsOf(const std::vector<EdgePoint>& points);

/// What concentric circles, seen under the same slight tilt, have in common: the radius of each in direction t is
/// its own plus x cos t + y sin t + c2 cos 2t + s2 sin 2t.
struct CommonShape
{
    double x = 0; ///< shift of the centre
    double y = 0;
    double c2 = 0; ///< tilt
    double s2 = 0;

    double at(const Harmonics& h) const { return x * h.c + y * h.s + c2 * h.c2 + s2 * h.s2; }
};

/// Weighted normal equations of a common shape and of one radius for each circle. The radii are eliminated (Schur
/// complement), so that however many circles there are, four equations are solved.
class HarmonicEquations
{
public:
    explicit HarmonicEquations(size_t circles)
        : m_circles(circles)
    {
    }

    void add(const Harmonics& h, size_t circle, double radius, double weight);

    /// A prior for c2 and s2 around zero with this standard deviation in pixels, as weak as a thousandth of all points:
    /// a full circle decides its tilt by itself. 0 leaves no tilt at all.
    void addTiltPrior(double sigma);

    /// The shape, and the radius of each circle that has points; the others' are left alone. False without a solution.
    bool solve(CommonShape* shape, double* radii) const;

private:
    using Vector = std::array<double, 4>;
    struct Circle
    {
        double weight = 0;
        double radius = 0; // weighted sum
        Vector basis{};    // weighted sums
    };

    double totalWeight() const;

    cv::Matx44d m_normal = cv::Matx44d::zeros(); // lower half
    Vector m_right{};
    std::vector<Circle> m_circles;
    double m_tiltPrior = 0;
};

struct OutlineFit
{
    Outline outline;
    int used = 0;        ///< points that agree with the outline
    double residual = 0; ///< their root mean square distance from it, pixels
    bool valid = false;  ///< enough points, well spread, and a solution
};

struct OutlineFitOptions
{
    bool tilted = true;           ///< whether to fit c2 and s2
    double tiltPrior = 0.02;      ///< expected hypot(c2, s2) / radius; missing arcs fall back to a circle
    double outlierFloor = 0.5;    ///< pixels below which no point counts as an outlier
    bool steepCountsMore = false; ///< weigh points by the square of their strength, as noise shifts flat edges more
};

/// Fits r(t) = radius + a cos t + b sin t + c2 cos 2t + s2 sin 2t to the points by iteratively reweighted least squares
/// with Tukey's weights, so that up to about 40 % of the points may lie anywhere, and moves the centre by (a, b).
/// Exact for small (a, b); repeat with points around the moved centre when it moved by more than a few percent of the
/// radius. Marks the points that it used.
OutlineFit fitOutline(const cv::Point2d& center, std::vector<EdgePoint>& points, const OutlineFitOptions& options);

/// The share of directions that have a used point within half of a spacing, 0 to 1, looked at in `sectors` sectors.
double coverage(const std::vector<EdgePoint>& points, int sectors);

} // namespace finder
