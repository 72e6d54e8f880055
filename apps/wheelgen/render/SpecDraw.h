#pragma once

#include "WheelSpec.h"

#include <string>

namespace wheel {

/// Easy: clean and sharp. Demo: as on a well kept line. Varied: all that a plant can show within the finder's limits.
enum class Difficulty { Easy, Demo, Varied };

/// "easy", "demo" or "varied"; false, and nothing changed, for any other name.
bool difficultyFromName(const std::string& name, Difficulty* difficulty);

/// A wheel of that design, drawn at random: size, place, light, surface and camera. The same arguments give the same
/// spec. The wheel lies wholly inside the image.
WheelSpec drawWheel(const Design& design, Difficulty difficulty, cv::Size size, std::uint64_t seed, bool withHole);

/// The rim radius that a wheel of the demo has on average, in pixels.
double nominalRimRadius(cv::Size size);

/// Numbers that a model of this wheel's kind is taught with, in pixels. Wheels of difficulty "varied" differ from them
/// by up to `scale`.
struct Nominal
{
    double rimRadius;
    double ringRadius;
    double holeRadius;
};

Nominal nominalOf(const WheelSpec& spec);

} // namespace wheel
