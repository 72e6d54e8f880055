#include "WheelSpec.h"

#include <algorithm>

namespace wheel {

namespace {

/// What all designs begin with; half widths and inner end as fractions of the rim radius.
FaceSpec spokes(int count, double atHub, double atRim, double inner)
{
    FaceSpec face;
    face.count = count;
    face.spokeHub = atHub;
    face.spokeRim = atRim;
    face.windowInner = inner;
    return face;
}

FaceSpec fiveSpokes()
{
    FaceSpec face = spokes(5, 0.095, 0.075, 0.27);
    face.dish = 0.08;
    face.machined = 0.8;
    return face;
}

FaceSpec sixSpokes()
{
    FaceSpec face = spokes(6, 0.070, 0.082, 0.29);
    face.bolts = 6;
    face.boltRing = 0.20;
    face.ring = 0.872;
    face.hole = 0.0215;
    face.machined = 0.1;
    face.albedo = 0.62;
    return face;
}

FaceSpec sevenSpokes()
{
    FaceSpec face = spokes(7, 0.060, 0.058, 0.28);
    face.twist = 28;
    face.windowOuter = 0.77;
    face.ledgeInner = 0.81;
    face.ring = 0.876;
    face.hole = 0.0185;
    face.dish = -0.04;
    face.machined = 0.3;
    return face;
}

FaceSpec tenSpokes()
{
    FaceSpec face = spokes(10, 0.036, 0.030, 0.25);
    face.windowOuter = 0.78;
    face.ledgeInner = 0.815;
    face.fillet = 0.025;
    face.edge = 0.012;
    face.ring = 0.880;
    face.hole = 0.017;
    face.bore = 0.085;
    face.boltRing = 0.165;
    face.boltRadius = 0.020;
    face.machined = 0.9;
    return face;
}

FaceSpec twinSpokes()
{
    FaceSpec face = spokes(5, 0.034, 0.030, 0.26);
    face.pattern = Pattern::TwinSpokes;
    face.pairGap = 0.055;
    face.pairGapRim = 0.115;
    face.fillet = 0.03;
    face.edge = 0.014;
    face.ring = 0.862;
    face.hole = 0.0195;
    face.machined = 0.5;
    return face;
}

FaceSpec mesh()
{
    FaceSpec face = spokes(10, 0.024, 0.022, 0.27);
    face.pattern = Pattern::Mesh;
    face.windowOuter = 0.74;
    face.ledgeInner = 0.78;
    face.fillet = 0.02;
    face.edge = 0.010;
    face.ring = 0.858;
    face.hole = 0.018;
    face.boltRing = 0.175;
    face.machined = 0.4;
    return face;
}

FaceSpec steelDisc()
{
    FaceSpec face = spokes(10, 0.045, 0.075, 0.60);
    face.pattern = Pattern::Slots;
    face.windowOuter = 0.70;
    face.fillet = 0.035;
    face.edge = 0.010;
    face.ledgeInner = 0.77;
    face.lipInner = 0.95;
    face.ring = 0.865;
    face.hole = 0.0205;
    face.dish = 0.12;
    face.hubHeight = 0.02;
    face.bore = 0.115;
    face.boltRing = 0.20;
    face.machined = 0;
    face.albedo = 0.42;
    return face;
}

FaceSpec forged()
{
    FaceSpec face = spokes(10, 0.052, 0.052, 0.58);
    face.pattern = Pattern::Drilled;
    face.windowOuter = 0.70;
    face.edge = 0.012;
    face.ledgeInner = 0.79;
    face.ring = 0.870;
    face.hole = 0.0225;
    face.bolts = 10;
    face.boltRing = 0.30;
    face.boltRadius = 0.022;
    face.bore = 0.20;
    face.machined = 1.0;
    face.albedo = 0.80;
    return face;
}

FaceSpec solidDisc()
{
    FaceSpec face = spokes(5, 0.06, 0.06, 0.40);
    face.pattern = Pattern::Solid;
    face.ring = 0.866;
    face.hole = 0.0185;
    face.dish = 0.06;
    face.machined = 0.7;
    face.albedo = 0.6;
    return face;
}

} // namespace

const std::vector<Design>& designs()
{
    static const std::vector<Design> all{{"five", "五辐铝轮", 1, fiveSpokes()},   {"six", "六辐铝轮", 2, sixSpokes()},
                                         {"seven", "七辐铝轮", 3, sevenSpokes()}, {"ten", "十辐铝轮", 4, tenSpokes()},
                                         {"twin", "双辐铝轮", 5, twinSpokes()},   {"mesh", "网状铝轮", 6, mesh()},
                                         {"steel", "钢制轮辋", 7, steelDisc()},   {"forged", "锻造轮毂", 8, forged()},
                                         {"solid", "实心盘轮", 9, solidDisc()}};
    return all;
}

const Design* findDesign(const std::string& keyOrName)
{
    const auto& all = designs();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Design& design) {
        return design.key == keyOrName || design.name == keyOrName;
    });
    return found == all.end() ? nullptr : &*found;
}

} // namespace wheel
