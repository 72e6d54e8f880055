#pragma once

#include "finder/Vectorise.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <cmath>

/// The picture of a hole as a function of its shape: what MouthFit adjusts to the pixels. Places are pixels from a
/// point near the hole's centre, x along the direction from the hub and y across it.
///
///     gray(x, y) = surface N(o) + ring (N(m) - N(o)) + wall (N(i) - N(m)) + deep (1 - N(i))
///
/// with N(d) = Phi(d / sigma) the share of a blurred edge's brighter side at the distance d outside of it, Phi the
/// normal distribution's, and sigma^2 = Blur^2 + Turn n_y^2 + b^2 / 12 for an edge whose normal is n, in pixels that
/// are the means of squares of side b. The distances are
///
///     m    from the mouth, the ellipse R^2 = x^2 (1 + E) + y^2 (1 - E) + 2 F x y around (X, Y)
///     o    from the outer edge, an ellipse of radius R + Chamfer around (X + OuterX, Y + OuterY), whose E and F are
///          those of the mouth times (R + Scaled Chamfer) / (R + Chamfer); never more than m
///     i    from the far end, the mouth's ellipse of radius R Far around (X + WallX, Y + WallY); never less than m
///
/// to first order, exact at the edges. With c and s the direction from (X, Y) and dx, dy the place from there,
///
///     surface = Surface0 + SurfaceX dx + SurfaceY dy
///     ring    = Chamfer0 + ChamferC c + ChamferS s + ChamferOut u,   u = (m + o) / (m - o) from -1 at the mouth to 1
///     wall    = Wall0 + WallC c + WallS s
///     deep    = Deep
namespace finder {

/// The parameters, shapes first, then the gray values that the picture depends on linearly.
enum MouthParameter {
    X,
    Y,
    R, ///< radius of the mouth
    E,
    F,
    Chamfer, ///< width
    Scaled,  ///< 0: a chamfer of constant width; 1: narrower where a tilt narrows the hole
    OuterX,  ///< by how much the chamfer's outer edge is seen shifted: it lies higher than the mouth
    OuterY,
    Blur,  ///< standard deviation of the lens
    Turn,  ///< variance of the blur across the direction from the hub, from turning while the shutter is open
    WallX, ///< by how much the far end is seen shifted
    WallY,
    Far,      ///< size of the far end against the mouth
    Surface0, ///< surface around: mean and slopes
    SurfaceX,
    SurfaceY,
    Chamfer0, ///< chamfer: mean, and how it changes with the direction from the centre
    ChamferC,
    ChamferS,
    ChamferOut, ///< and half of how it changes from the mouth to its outer edge
    Wall0,      ///< inner wall, likewise
    WallC,
    WallS,
    Deep, ///< what is seen through the hole
    mouthParameters
};

constexpr int mouthShapes = Surface0; ///< number of parameters before the gray values

using MouthVector = std::array<double, mouthParameters>;

/// Distance of a place from an ellipse, positive outside, and its derivatives.
struct EllipseDistance
{
    float distance, byX, byY, byR, byE, byF;
};

VC_INLINE EllipseDistance ellipseDistance(float dx, float dy, float radius, float e, float f)
{
    const float square = dx * dx * (1 + e) + dy * dy * (1 - e) + 2 * f * dx * dy;
    const float q = std::sqrt(std::max(square, 0.04F));
    const float gx = dx * (1 + e) + dy * f;
    const float gy = dy * (1 - e) + dx * f;
    const float inverse = 1 / std::sqrt(std::max(gx * gx + gy * gy, 0.04F));
    return {(q - radius) * q * inverse,           gx * inverse,     gy * inverse, -q * inverse,
            0.5F * (dx * dx - dy * dy) * inverse, dx * dy * inverse};
}

/// Gray values and derivatives of pixels by the model, for one set of parameters; of many at once, so that they are
/// computed in wide vectors.
class MouthModel
{
public:
    static constexpr int blockSize = 16;
    static constexpr int gray = mouthParameters;                   ///< index of the gray value among the results
    static constexpr int rowSize = (mouthParameters + 1 + 7) & ~7; ///< whole vectors

    /// A parameter's derivatives for a block of pixels.
    using Lanes = std::array<float, blockSize>;

    struct Block
    {
        alignas(64) Lanes x;
        Lanes y;
        std::array<Lanes, rowSize> results; ///< the derivatives, the gray value, and zeros
    };

    /// `bin` is the side of the square that each gray value is the mean of; it blurs as well.
    explicit MouthModel(const MouthVector& parameters, double bin = 0);

    /// From x and y of all pixels to the results.
    void evaluate(Block* block) const;

    /// The results of four pixels from the i-th on as a row each.
    static void transpose(const Block& block, int i, float* const* rows);

private:
    std::array<float, mouthParameters> m_p;
    float m_square; ///< variance of the mean over a square
};

} // namespace finder
