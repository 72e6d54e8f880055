#include "Blemishes.h"

#include "Lettering.h"
#include "Paint.h"
#include "Random.h"
#include "Texture.h"

namespace wheel {

namespace {

/// A place on the wheel, anywhere between bore and rim.
cv::Point2d somewhere(const WheelSpec& spec, Random& random)
{
    return spec.hub + random.range(0.1, 0.98) * spec.rimRadius * direction(random.range(0, 360));
}

/// A stain with a ragged, soft border.
void paintStain(cv::Mat& image, const WheelSpec& spec, Random& random)
{
    const double radius = random.range(0.004, 0.03) * spec.rimRadius;
    const double soft = random.range(0.3, 0.8) * radius, stretch = random.range(0.4, 1), turn = random.range(0, CV_PI);
    const double a3 = random.range(0, 0.25), a5 = random.range(0, 0.1), p3 = random.range(0, 6),
                 p5 = random.range(0, 6);
    const auto strength = static_cast<float>(random.range(-0.5, 0.12));
    const Texture texture(random.next());
    paintAround(image, somewhere(spec, random), 2.2 * radius, [&](float& pixel, double dx, double dy) {
        const double u = dx * std::cos(turn) + dy * std::sin(turn);
        const double v = (dy * std::cos(turn) - dx * std::sin(turn)) / stretch;
        const double angle = std::atan2(v, u),
                     border = 1 + a3 * std::sin(3 * angle + p3) + a5 * std::sin(5 * angle + p5);
        const float patchy = std::clamp(0.75f + 0.25f * texture.at(cvRound(dx), cvRound(dy)), 0.0f, 1.0f);
        pixel *= 1 + strength * patchy * coverage((radius * border - std::hypot(u, v)) / soft);
    });
}

/// A thin bright or dark line, slightly bent by being made of three pieces.
void paintScratch(cv::Mat& image, const WheelSpec& spec, Random& random)
{
    cv::Point2d at = somewhere(spec, random);
    double heading = random.range(0, 360);
    const double length = random.range(0.02, 0.09) * spec.rimRadius, half = random.range(0.2, 0.9);
    const auto strength = static_cast<float>(random.range(-0.3, 0.4));
    for (int piece = 0; piece < 3; ++piece, heading += random.range(-12, 12)) {
        const cv::Point2d along = direction(heading), middle = at + 0.5 * length * along;
        paintAround(image, middle, 0.5 * length, [&](float& pixel, double dx, double dy) {
            const double u = dx * along.x + dy * along.y, v = dy * along.x - dx * along.y;
            pixel *= 1 + strength * coverage(half - std::fabs(v)) * coverage(0.5 * length - std::fabs(u));
        });
        at += length * along;
    }
}

/// The mirror image of a lamp, washed out.
void paintGlare(cv::Mat& image, const WheelSpec& spec, Random& random)
{
    const double sigma = random.range(0.03, 0.16) * spec.rimRadius, stretch = random.range(0.3, 1);
    const cv::Point2d along = direction(random.range(0, 360)), center = somewhere(spec, random);
    const double peak = random.range(40, 200) / spec.light.exposure;
    paintAround(image, center, 2.6 * sigma, [&](float& pixel, double dx, double dy) {
        const double u = (dx * along.x + dy * along.y) / sigma, v = (dy * along.x - dx * along.y) / (sigma * stretch);
        const double q = u * u + v * v;
        // Light is mirrored by what already shines; dark depths stay dark.
        if (q < 6.7)
            pixel += static_cast<float>(peak * (std::exp(-0.5 * q) - 0.035)) * std::min(1.0f, pixel * pixel / 8100);
    });
}

} // namespace

void paintBlemishes(cv::Mat& image, const WheelSpec& spec)
{
    Random random(spec.seed, 22);
    for (int i = 0; i < spec.scene.letterings; ++i)
        paintLettering(image, spec, random);
    for (int i = 0; i < spec.scene.scratches; ++i)
        paintScratch(image, spec, random);
    for (int i = 0; i < spec.scene.dirt; ++i)
        paintStain(image, spec, random);
    for (int i = 0; i < spec.light.glares; ++i)
        paintGlare(image, spec, random);
}

} // namespace wheel
