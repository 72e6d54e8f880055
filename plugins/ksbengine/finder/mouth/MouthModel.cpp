#include "MouthModel.h"

#include <opencv2/core/hal/intrin.hpp>

namespace finder {

namespace {

struct NormalValue
{
    float share;
    float density;
};

/// The normal distribution and its density, without branches or tables. Density: a Taylor series of the sixteenth part
/// of the exponent; distribution: Abramowitz and Stegun, 26.2.17. Right to 1e-5.
VC_INLINE NormalValue normalAt(float z)
{
    const float size = std::min(std::abs(z), 5.0F);
    const float u = size * size / 32;
    float grown = 1 + u * (1.0F / 7);
    for (const float n : {6.0F, 5.0F, 4.0F, 3.0F, 2.0F, 1.0F})
        grown = 1 + u / n * grown;
    const float square = grown * grown;
    const float fourth = square * square;
    const float eighth = fourth * fourth;
    const float density = 0.39894228F / (eighth * eighth);
    const float t = 1 / (1 + 0.2316419F * size);
    const float series =
        t * (0.319381530F + t * (-0.356563782F + t * (1.781477937F + t * (-1.821255978F + t * 1.330274429F))));
    const float tail = density * series;
    return {z < 0 ? tail : 1 - tail, density};
}

/// The outer edge's radius and its share of the mouth's flatness, with that share's derivatives.
struct OuterShape
{
    float radius, keeps, byR, byChamfer, byScaled;
};

VC_INLINE OuterShape outerShapeOf(const float* p)
{
    const float radius = p[R] + p[Chamfer];
    const float square = radius * radius;
    return {radius, (p[R] + p[Scaled] * p[Chamfer]) / radius, p[Chamfer] * (1 - p[Scaled]) / square,
            p[R] * (p[Scaled] - 1) / square, p[Chamfer] / radius};
}

/// A place seen from the mouth's centre, its distances from the three edges, and which of them limit the areas there.
struct Place
{
    float dx, dy, inverse, c, s;
    EllipseDistance mouth, outer, far;
    float outerLimits, farLimits; ///< 1 or 0
    float rim, inner;             ///< distances from what limits ring and wall
};

VC_INLINE Place placeAt(float x, float y, const float* p, const OuterShape& shape)
{
    Place at;
    at.dx = x - p[X];
    at.dy = y - p[Y];
    at.inverse = 1 / std::sqrt(std::max(at.dx * at.dx + at.dy * at.dy, 0.04F));
    at.c = at.dx * at.inverse;
    at.s = at.dy * at.inverse;
    at.mouth = ellipseDistance(at.dx, at.dy, p[R], p[E], p[F]);
    at.outer =
        ellipseDistance(at.dx - p[OuterX], at.dy - p[OuterY], shape.radius, shape.keeps * p[E], shape.keeps * p[F]);
    at.far = ellipseDistance(at.dx - p[WallX], at.dy - p[WallY], p[R] * p[Far], p[E], p[F]);
    at.outerLimits = at.outer.distance < at.mouth.distance ? 1.0F : 0.0F;
    at.rim = std::min(at.outer.distance, at.mouth.distance);
    at.farLimits = at.far.distance > at.mouth.distance ? 1.0F : 0.0F;
    at.inner = std::max(at.far.distance, at.mouth.distance);
    return at;
}

/// The blurred edges at a place.
struct Blurred
{
    float sharp, across; ///< 1 / sigma, and how much of the turning blurs here
    NormalValue rim, mouth, inner;
};

/// A wheel that turns while the shutter is open is blurred across the direction from the hub.
VC_INLINE Blurred blurredAt(const Place& at, const float* p, float blurSquare)
{
    Blurred edge;
    edge.across = at.mouth.byY * at.mouth.byY;
    edge.sharp = 1 / std::sqrt(blurSquare + p[Turn] * edge.across);
    edge.rim = normalAt(at.rim * edge.sharp);
    edge.mouth = normalAt(at.mouth.distance * edge.sharp);
    edge.inner = normalAt(at.inner * edge.sharp);
    return edge;
}

/// Gray values of the areas at a place, and their shares of it.
struct Areas
{
    float surface, chamfer, wall;
    float chamferShare, wallShare, deepShare; ///< the surface's is that of the rim
    float out, inRing;                        ///< u of the ring, and its derivative by the distances
};

VC_INLINE Areas areasAt(const Place& at, const Blurred& edge, const float* p)
{
    Areas area;
    area.surface = p[Surface0] + p[SurfaceX] * at.dx + p[SurfaceY] * at.dy;
    const float ring = std::max(at.mouth.distance - at.outer.distance, 0.5F); // width here
    const float between = at.mouth.distance + at.outer.distance;
    area.out = std::max(-1.0F, std::min(between / ring, 1.0F));
    area.inRing = std::abs(between) < ring ? 1 / ring : 0.0F;
    area.chamfer = p[Chamfer0] + p[ChamferC] * at.c + p[ChamferS] * at.s + p[ChamferOut] * area.out;
    area.wall = p[Wall0] + p[WallC] * at.c + p[WallS] * at.s;
    area.chamferShare = edge.mouth.share - edge.rim.share;
    area.wallShare = edge.inner.share - edge.mouth.share;
    area.deepShare = 1 - edge.inner.share;
    return area;
}

using Results = std::array<MouthModel::Lanes, MouthModel::rowSize>;

/// How the gray value changes with the distance from each edge, and so with the shape.
VC_INLINE void deriveByShape(const Place& at, const Blurred& edge, const Areas& area, const float* p,
                             const OuterShape& shape, int i, Results& by)
{
    const float sharp = edge.sharp;
    const float byRim = (area.surface - area.chamfer) * edge.rim.density * sharp;
    const float byMouth = (area.chamfer - area.wall) * edge.mouth.density * sharp;
    const float byInner = (area.wall - p[Deep]) * edge.inner.density * sharp;
    const float byOut = p[ChamferOut] * area.chamferShare * area.inRing;
    const float byOuter = at.outerLimits * byRim + byOut * (1 + area.out);
    const float byFar = at.farLimits * byInner;
    const float byEdge = byRim * (1 - at.outerLimits) + byMouth + byInner - byFar + byOut * (1 - area.out);
    const float byKeeps = byOuter * (at.outer.byE * p[E] + at.outer.byF * p[F]);
    // The gray values change around the centre, which moves with x and y.
    const float turning = at.inverse * (area.chamferShare * (p[ChamferC] * at.s - p[ChamferS] * at.c) +
                                        area.wallShare * (p[WallC] * at.s - p[WallS] * at.c));
    by[X][i] = -byEdge * at.mouth.byX - byOuter * at.outer.byX - byFar * at.far.byX - edge.rim.share * p[SurfaceX] -
               turning * at.s;
    by[Y][i] = -byEdge * at.mouth.byY - byOuter * at.outer.byY - byFar * at.far.byY - edge.rim.share * p[SurfaceY] +
               turning * at.c;
    by[R][i] = byEdge * at.mouth.byR + byOuter * at.outer.byR + byKeeps * shape.byR + byFar * p[Far] * at.far.byR;
    by[E][i] = byEdge * at.mouth.byE + byOuter * shape.keeps * at.outer.byE + byFar * at.far.byE;
    by[F][i] = byEdge * at.mouth.byF + byOuter * shape.keeps * at.outer.byF + byFar * at.far.byF;
    by[Chamfer][i] = byOuter * at.outer.byR + byKeeps * shape.byChamfer;
    by[Scaled][i] = byKeeps * shape.byScaled;
    by[OuterX][i] = -byOuter * at.outer.byX;
    by[OuterY][i] = -byOuter * at.outer.byY;
    const float bySharp = (byRim * at.rim + byMouth * at.mouth.distance + byInner * at.inner) * sharp * sharp;
    by[Blur][i] = -bySharp * p[Blur];
    by[Turn][i] = -bySharp * 0.5F * edge.across;
    by[WallX][i] = -byFar * at.far.byX;
    by[WallY][i] = -byFar * at.far.byY;
    by[Far][i] = byFar * p[R] * at.far.byR;
}

/// The gray value, and how it changes with those of the areas.
VC_INLINE void deriveByGrays(const Place& at, const Blurred& edge, const Areas& area, const float* p, int i,
                             Results& by)
{
    by[Surface0][i] = edge.rim.share;
    by[SurfaceX][i] = edge.rim.share * at.dx;
    by[SurfaceY][i] = edge.rim.share * at.dy;
    by[Chamfer0][i] = area.chamferShare;
    by[ChamferC][i] = area.chamferShare * at.c;
    by[ChamferS][i] = area.chamferShare * at.s;
    by[ChamferOut][i] = area.chamferShare * area.out;
    by[Wall0][i] = area.wallShare;
    by[WallC][i] = area.wallShare * at.c;
    by[WallS][i] = area.wallShare * at.s;
    by[Deep][i] = area.deepShare;
    by[MouthModel::gray][i] = area.surface * edge.rim.share + area.chamfer * area.chamferShare +
                              area.wall * area.wallShare + p[Deep] * area.deepShare;
}

VC_VECTORISED void evaluateBlock(const float* p, float square, MouthModel::Block* VC_RESTRICT block)
{
    const float blurSquare = p[Blur] * p[Blur] + square;
    const OuterShape shape = outerShapeOf(p);
    for (int i = 0; i < MouthModel::blockSize; ++i) {
        const Place at = placeAt(block->x[i], block->y[i], p, shape);
        const Blurred edge = blurredAt(at, p, blurSquare);
        const Areas area = areasAt(at, edge, p);
        deriveByShape(at, edge, area, p, shape, i, block->results);
        deriveByGrays(at, edge, area, p, i, block->results);
    }
}

} // namespace

MouthModel::MouthModel(const MouthVector& parameters, double bin)
    : m_p()
    , m_square(static_cast<float>(bin * bin / 12))
{
    for (int i = 0; i < mouthParameters; ++i)
        m_p[i] = static_cast<float>(parameters[i]);
}

void MouthModel::evaluate(Block* block) const
{
    evaluateBlock(m_p.data(), m_square, block);
}

void MouthModel::transpose(const Block& block, int i, float* const* rows)
{
    static_assert(rowSize % 4 == 0, "whole vectors");
    for (int k = 0; k < rowSize; k += 4) {
        const auto at = [&](int row) { return cv::v_load(&block.results[row][i]); };
        cv::v_float32x4 a, b, c, d;
        cv::v_transpose4x4(at(k), at(k + 1), at(k + 2), at(k + 3), a, b, c, d);
        cv::v_store(rows[0] + k, a);
        cv::v_store(rows[1] + k, b);
        cv::v_store(rows[2] + k, c);
        cv::v_store(rows[3] + k, d);
    }
}

} // namespace finder
