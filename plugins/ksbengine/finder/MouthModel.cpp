#include "MouthModel.h"

#include <algorithm>

namespace finder {

namespace {

/// The normal distribution and its density, from a table: a few thousand pixels ask for both three times a step.
class Normal
{
public:
    Normal()
    {
        for (int i = 0; i < size; ++i) {
            const double z = low + i * step;
            m_values[i] = {static_cast<float>(0.5 * std::erfc(-z / std::sqrt(2.0))),
                           static_cast<float>(std::exp(-z * z / 2) / std::sqrt(2 * CV_PI))};
        }
    }

    struct Value
    {
        float share;
        float density;
    };

    Value at(float z) const
    {
        const float clamped = std::min(std::max(z, low), -low);
        return m_values[static_cast<int>((clamped - low) * (1 / step) + 0.5F)];
    }

private:
    static constexpr float low = -5.0F;
    static constexpr float step = 1.0F / 256;
    static constexpr int size = 2561;
    std::array<Value, size> m_values;
};

const Normal& normal()
{
    static const Normal table;
    return table;
}

} // namespace

MouthModel::MouthModel(const MouthVector& parameters)
{
    for (int i = 0; i < mouthParameters; ++i)
        m_p[i] = static_cast<float>(parameters[i]);
    m_blurSquare = m_p[Blur] * m_p[Blur];
}

float MouthModel::evaluate(const MouthPixel& pixel, float* derivative) const
{
    const float dx = pixel.x - m_p[X];
    const float dy = pixel.y - m_p[Y];
    const float inverse = 1 / std::sqrt(std::max(dx * dx + dy * dy, 0.04F));
    const float c = dx * inverse;
    const float s = dy * inverse;
    const EllipseDistance mouth = ellipseDistance(dx, dy, m_p[R], m_p[E], m_p[F]);
    const EllipseDistance far = ellipseDistance(dx - m_p[WallX], dy - m_p[WallY], m_p[R] * m_p[Far], m_p[E], m_p[F]);
    const bool farLimits = far.distance > mouth.distance;
    const float inner = farLimits ? far.distance : mouth.distance;
    const float width = 1 + m_p[Scaled] * (mouth.widening - 1);
    const float outer = mouth.distance - m_p[Chamfer] * width;
    // A wheel that turns while the shutter is open is blurred across the direction from the hub.
    const float across = mouth.byY * mouth.byY;
    const float sharp = 1 / std::sqrt(m_blurSquare + m_p[Turn] * across);
    const Normal::Value atOuter = normal().at(outer * sharp);
    const Normal::Value atMouth = normal().at(mouth.distance * sharp);
    const Normal::Value atInner = normal().at(inner * sharp);

    const float surface = m_p[Surface0] + m_p[SurfaceX] * dx + m_p[SurfaceY] * dy;
    const float chamfer = m_p[Chamfer0] + m_p[ChamferC] * c + m_p[ChamferS] * s;
    const float wall = m_p[Wall0] + m_p[WallC] * c + m_p[WallS] * s;
    const float chamferShare = atMouth.share - atOuter.share;
    const float wallShare = atInner.share - atMouth.share;

    const float byOuter = (surface - chamfer) * atOuter.density * sharp;
    const float byMouth = (chamfer - wall) * atMouth.density * sharp;
    const float byInner = (wall - m_p[Deep]) * atInner.density * sharp;
    const float byEdge = byOuter + byMouth + (farLimits ? 0 : byInner);
    const float byFar = farLimits ? byInner : 0;

    derivative[X] = -byEdge * mouth.byX - byFar * far.byX;
    derivative[Y] = -byEdge * mouth.byY - byFar * far.byY;
    derivative[R] = byEdge * mouth.byR + byFar * m_p[Far] * far.byR;
    derivative[E] = byEdge * mouth.byE + byFar * far.byE;
    derivative[F] = byEdge * mouth.byF + byFar * far.byF;
    derivative[Chamfer] = -byOuter * width;
    derivative[Scaled] = -byOuter * m_p[Chamfer] * (mouth.widening - 1);
    const float bySharp = (byOuter * outer + byMouth * mouth.distance + byInner * inner) * sharp * sharp;
    derivative[Blur] = -bySharp * m_p[Blur];
    derivative[Turn] = -bySharp * 0.5F * across;
    derivative[WallX] = -byFar * far.byX;
    derivative[WallY] = -byFar * far.byY;
    derivative[Far] = byFar * m_p[R] * far.byR;
    derivative[Surface0] = atOuter.share;
    derivative[SurfaceX] = atOuter.share * dx;
    derivative[SurfaceY] = atOuter.share * dy;
    derivative[Chamfer0] = chamferShare;
    derivative[ChamferC] = chamferShare * c;
    derivative[ChamferS] = chamferShare * s;
    derivative[Wall0] = wallShare;
    derivative[WallC] = wallShare * c;
    derivative[WallS] = wallShare * s;
    derivative[Deep] = 1 - atInner.share;
    return surface * atOuter.share + chamfer * chamferShare + wall * wallShare + m_p[Deep] * derivative[Deep];
}

} // namespace finder
