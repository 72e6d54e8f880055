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

VC_VECTORISED void evaluateBlock(const float* p, float square, MouthModel::Block* VC_RESTRICT block)
{
    const float blurSquare = p[Blur] * p[Blur] + square;
    // The outer edge's share of the mouth's flatness, and how it changes.
    const float outerRadius = p[R] + p[Chamfer];
    const float keeps = (p[R] + p[Scaled] * p[Chamfer]) / outerRadius;
    const float keepsByR = p[Chamfer] * (1 - p[Scaled]) / (outerRadius * outerRadius);
    const float keepsByChamfer = p[R] * (p[Scaled] - 1) / (outerRadius * outerRadius);
    const float keepsByScaled = p[Chamfer] / outerRadius;
    auto& by = block->results;
    for (int i = 0; i < MouthModel::blockSize; ++i) {
        const float dx = block->x[i] - p[X];
        const float dy = block->y[i] - p[Y];
        const float inverse = 1 / std::sqrt(std::max(dx * dx + dy * dy, 0.04F));
        const float c = dx * inverse;
        const float s = dy * inverse;
        const EllipseDistance mouth = ellipseDistance(dx, dy, p[R], p[E], p[F]);
        const EllipseDistance outer =
            ellipseDistance(dx - p[OuterX], dy - p[OuterY], outerRadius, keeps * p[E], keeps * p[F]);
        const EllipseDistance far = ellipseDistance(dx - p[WallX], dy - p[WallY], p[R] * p[Far], p[E], p[F]);
        const float outerLimits = outer.distance < mouth.distance ? 1.0F : 0.0F;
        const float rim = std::min(outer.distance, mouth.distance);
        const float farLimits = far.distance > mouth.distance ? 1.0F : 0.0F;
        const float inner = std::max(far.distance, mouth.distance);
        // A wheel that turns while the shutter is open is blurred across the direction from the hub.
        const float across = mouth.byY * mouth.byY;
        const float sharp = 1 / std::sqrt(blurSquare + p[Turn] * across);
        const NormalValue atRim = normalAt(rim * sharp);
        const NormalValue atMouth = normalAt(mouth.distance * sharp);
        const NormalValue atInner = normalAt(inner * sharp);

        const float surface = p[Surface0] + p[SurfaceX] * dx + p[SurfaceY] * dy;
        const float ring = std::max(mouth.distance - outer.distance, 0.5F); // width here
        const float between = mouth.distance + outer.distance;
        const float out = std::max(-1.0F, std::min(between / ring, 1.0F));
        const float inRing = std::abs(between) < ring ? 1 / ring : 0.0F;
        const float chamfer = p[Chamfer0] + p[ChamferC] * c + p[ChamferS] * s + p[ChamferOut] * out;
        const float wall = p[Wall0] + p[WallC] * c + p[WallS] * s;
        const float chamferShare = atMouth.share - atRim.share;
        const float wallShare = atInner.share - atMouth.share;
        const float deepShare = 1 - atInner.share;

        // How the gray value changes with the distance from each edge.
        const float byRim = (surface - chamfer) * atRim.density * sharp;
        const float byMouth = (chamfer - wall) * atMouth.density * sharp;
        const float byInner = (wall - p[Deep]) * atInner.density * sharp;
        const float byOut = p[ChamferOut] * chamferShare * inRing;
        const float byOuter = outerLimits * byRim + byOut * (1 + out);
        const float byFar = farLimits * byInner;
        const float byEdge = byRim * (1 - outerLimits) + byMouth + byInner - byFar + byOut * (1 - out);
        const float byKeeps = byOuter * (outer.byE * p[E] + outer.byF * p[F]);

        // The gray values change around the centre, which moves with x and y.
        const float turning =
            inverse * (chamferShare * (p[ChamferC] * s - p[ChamferS] * c) + wallShare * (p[WallC] * s - p[WallS] * c));
        by[X][i] =
            -byEdge * mouth.byX - byOuter * outer.byX - byFar * far.byX - atRim.share * p[SurfaceX] - turning * s;
        by[Y][i] =
            -byEdge * mouth.byY - byOuter * outer.byY - byFar * far.byY - atRim.share * p[SurfaceY] + turning * c;
        by[R][i] = byEdge * mouth.byR + byOuter * outer.byR + byKeeps * keepsByR + byFar * p[Far] * far.byR;
        by[E][i] = byEdge * mouth.byE + byOuter * keeps * outer.byE + byFar * far.byE;
        by[F][i] = byEdge * mouth.byF + byOuter * keeps * outer.byF + byFar * far.byF;
        by[Chamfer][i] = byOuter * outer.byR + byKeeps * keepsByChamfer;
        by[Scaled][i] = byKeeps * keepsByScaled;
        by[OuterX][i] = -byOuter * outer.byX;
        by[OuterY][i] = -byOuter * outer.byY;
        const float bySharp = (byRim * rim + byMouth * mouth.distance + byInner * inner) * sharp * sharp;
        by[Blur][i] = -bySharp * p[Blur];
        by[Turn][i] = -bySharp * 0.5F * across;
        by[WallX][i] = -byFar * far.byX;
        by[WallY][i] = -byFar * far.byY;
        by[Far][i] = byFar * p[R] * far.byR;
        by[Surface0][i] = atRim.share;
        by[SurfaceX][i] = atRim.share * dx;
        by[SurfaceY][i] = atRim.share * dy;
        by[Chamfer0][i] = chamferShare;
        by[ChamferC][i] = chamferShare * c;
        by[ChamferS][i] = chamferShare * s;
        by[ChamferOut][i] = chamferShare * out;
        by[Wall0][i] = wallShare;
        by[WallC][i] = wallShare * c;
        by[WallS][i] = wallShare * s;
        by[Deep][i] = deepShare;
        by[MouthModel::gray][i] =
            surface * atRim.share + chamfer * chamferShare + wall * wallShare + p[Deep] * deepShare;
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
