#include "WheelRenderer.h"

#include <cmath>

namespace wheel {

WheelTruth truthOf(const WheelSpec& spec)
{
    WheelTruth truth;
    truth.hole = spec.hole.present;
    truth.angle = spec.hole.angle - 360 * std::floor(spec.hole.angle / 360);
    truth.holeCenter = holeCenter(spec);
    truth.hub = spec.hub;
    truth.rimRadius = spec.rimRadius;
    truth.ringRadius = spec.hole.ringRadius;
    truth.holeRadius = spec.hole.radius;
    truth.edgeRadius = spec.hole.reach();
    return truth;
}

RenderedWheel renderWheel(const WheelSpec& spec)
{
    cv::Mat scene = renderFace(spec);
    paintBlemishes(scene, spec);
    paintHoles(scene, spec);
    return {photograph(scene, spec), truthOf(spec)};
}

} // namespace wheel
