#pragma once

#include "finder/Finder.h"
#include "finder/HoleModel.h"
#include "finder/ImageConversion.h"
#include "render/SpecDraw.h"
#include "render/WheelRenderer.h"

#include <QtTest>

/// Small rendered wheels for tests: quick to make, and still with every part that a real one has.
namespace Wheels {

inline wheel::WheelSpec spec(const std::string& design = "five", quint64 seed = 1, bool hole = true,
                             wheel::Difficulty difficulty = wheel::Difficulty::Demo, cv::Size size = {1632, 1366})
{
    const wheel::Design* known = wheel::findDesign(design);
    return wheel::drawWheel(*known, difficulty, size, seed, hole);
}

inline cv::Mat image(const wheel::WheelSpec& spec)
{
    return wheel::renderWheel(spec).image;
}

/// A model as if taught on a wheel that is 4 % larger in the image.
inline finder::HoleModel model(const wheel::WheelSpec& spec)
{
    const wheel::WheelTruth truth = wheel::truthOf(spec);
    finder::HoleModel model;
    model.rimRadius = 1.04 * truth.rimRadius;
    model.ringRadius = 1.04 * truth.ringRadius;
    model.holeRadius = 1.04 * truth.holeRadius;
    model.taught = true;
    return model;
}

inline finder::FindResult locate(const cv::Mat& image, const finder::HoleModel& model)
{
    finder::Finder finder;
    return finder.find(image, model);
}

inline double turnBetween(double a, double b)
{
    return std::abs(std::remainder(a - b, 360.0));
}

} // namespace Wheels
