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

VC_VECTORISED void evaluateBlock(const float* p, MouthModel::Block* VC_RESTRICT block)
{
    const float blurSquare = p[Blur] * p[Blur];
    auto& by = block->results;
    for (int i = 0; i < MouthModel::blockSize; ++i) {
        const float dx = block->x[i] - p[X];
        const float dy = block->y[i] - p[Y];
        const float inverse = 1 / std::sqrt(std::max(dx * dx + dy * dy, 0.04F));
        const float c = dx * inverse;
        const float s = dy * inverse;
        const EllipseDistance mouth = ellipseDistance(dx, dy, p[R], p[E], p[F]);
        const EllipseDistance far = ellipseDistance(dx - p[WallX], dy - p[WallY], p[R] * p[Far], p[E], p[F]);
        const float inner = std::max(far.distance, mouth.distance);
        const float farLimits = far.distance > mouth.distance ? 1.0F : 0.0F;
        const float width = 1 + p[Scaled] * (mouth.widening - 1);
        const float outer = mouth.distance - p[Chamfer] * width;
        // A wheel that turns while the shutter is open is blurred across the direction from the hub.
        const float across = mouth.byY * mouth.byY;
        const float sharp = 1 / std::sqrt(blurSquare + p[Turn] * across);
        const NormalValue atOuter = normalAt(outer * sharp);
        const NormalValue atMouth = normalAt(mouth.distance * sharp);
        const NormalValue atInner = normalAt(inner * sharp);

        const float surface = p[Surface0] + p[SurfaceX] * dx + p[SurfaceY] * dy;
        const float chamfer = p[Chamfer0] + p[ChamferC] * c + p[ChamferS] * s;
        const float wall = p[Wall0] + p[WallC] * c + p[WallS] * s;
        const float chamferShare = atMouth.share - atOuter.share;
        const float wallShare = atInner.share - atMouth.share;
        const float deepShare = 1 - atInner.share;

        const float byOuter = (surface - chamfer) * atOuter.density * sharp;
        const float byMouth = (chamfer - wall) * atMouth.density * sharp;
        const float byInner = (wall - p[Deep]) * atInner.density * sharp;
        const float byFar = farLimits * byInner;
        const float byEdge = byOuter + byMouth + byInner - byFar;

        by[X][i] = -byEdge * mouth.byX - byFar * far.byX;
        by[Y][i] = -byEdge * mouth.byY - byFar * far.byY;
        by[R][i] = byEdge * mouth.byR + byFar * p[Far] * far.byR;
        by[E][i] = byEdge * mouth.byE + byFar * far.byE;
        by[F][i] = byEdge * mouth.byF + byFar * far.byF;
        by[Chamfer][i] = -byOuter * width;
        by[Scaled][i] = -byOuter * p[Chamfer] * (mouth.widening - 1);
        const float bySharp = (byOuter * outer + byMouth * mouth.distance + byInner * inner) * sharp * sharp;
        by[Blur][i] = -bySharp * p[Blur];
        by[Turn][i] = -bySharp * 0.5F * across;
        by[WallX][i] = -byFar * far.byX;
        by[WallY][i] = -byFar * far.byY;
        by[Far][i] = byFar * p[R] * far.byR;
        by[Surface0][i] = atOuter.share;
        by[SurfaceX][i] = atOuter.share * dx;
        by[SurfaceY][i] = atOuter.share * dy;
        by[Chamfer0][i] = chamferShare;
        by[ChamferC][i] = chamferShare * c;
        by[ChamferS][i] = chamferShare * s;
        by[Wall0][i] = wallShare;
        by[WallC][i] = wallShare * c;
        by[WallS][i] = wallShare * s;
        by[Deep][i] = deepShare;
        by[MouthModel::gray][i] =
            surface * atOuter.share + chamfer * chamferShare + wall * wallShare + p[Deep] * deepShare;
    }
}

} // namespace

MouthModel::MouthModel(const MouthVector& parameters)
    : m_p()
{
    for (int i = 0; i < mouthParameters; ++i)
        m_p[i] = static_cast<float>(parameters[i]);
}

void MouthModel::evaluate(Block* block) const
{
    evaluateBlock(m_p.data(), block);
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
