#include "Paint.h"
#include "Random.h"
#include "WheelRenderer.h"

#include <string>

namespace wheel {

namespace {

struct Glyph
{
    char letter;
    const char* path; ///< one line through points of a grid, two digits a point: 0 to 2 across, 0 to 4 down
};

constexpr Glyph glyphs[] = {{'0', "002024040020"},   {'1', "011014"},     {'2', "002022020424"},
                            {'3', "00202202222404"}, {'4', "0002222024"}, {'5', "200002222404"},
                            {'6', "200004242202"},   {'7', "002014"},     {'8', "00202404000222"},
                            {'9', "220200202404"},   {'J', "20240403"},   {'X', "0024122004"},
                            {'E', "20000212020424"}, {'T', "00201014"},   {'H', "000402222024"}};

/// Empty for a letter that is not among the glyphs: it leaves a gap.
const char* pathOf(char letter)
{
    for (const Glyph& glyph : glyphs)
        if (glyph.letter == letter)
            return glyph.path;
    return "";
}

double segmentDistance(cv::Point2d p, cv::Point2d a, cv::Point2d b)
{
    const cv::Point2d ab = b - a, ap = p - a;
    const double t = std::clamp(ap.dot(ab) / std::max(ab.dot(ab), 1e-9), 0.0, 1.0);
    const cv::Point2d off = ap - t * ab;
    return std::hypot(off.x, off.y);
}

struct Pen
{
    double half;         ///< half width of a stroke, pixels
    double relief;       ///< how much its flanks are lit and shaded; negative: stamped in
    double tint;         ///< factor on the brightness within the stroke, less 1
    cv::Point2d toLight; ///< unit vector
};

void paintStroke(cv::Mat& image, cv::Point2d a, cv::Point2d b, const Pen& pen)
{
    const cv::Point2d middle = 0.5 * (a + b), toward = a - b;
    const double reach = 0.5 * std::hypot(toward.x, toward.y) + pen.half + 2;
    paintAround(image, middle, reach, [&](float& pixel, double dx, double dy) {
        const cv::Point2d p = middle + cv::Point2d(dx, dy);
        const float lit = coverage(pen.half - segmentDistance(p - pen.toLight, a, b)) -
                          coverage(pen.half - segmentDistance(p + pen.toLight, a, b));
        const float inside = coverage(pen.half - segmentDistance(p, a, b));
        pixel *= 1 + static_cast<float>(pen.relief) * lit + static_cast<float>(pen.tint) * inside;
    });
}

std::string randomText(Random& random)
{
    std::string text = std::to_string(random.integer(5, 9)) + (random.chance(0.5) ? "5J" : "J") + "X" +
                       std::to_string(random.integer(14, 20)) + "H2 ET" + std::to_string(random.integer(20, 55));
    return random.chance(0.3) ? text + " " + std::to_string(random.integer(1000, 9999)) : text;
}

/// Writes one line of raised or stamped characters along a circle around the hub: a size such as "8X17H2 ET45".
void paintLettering(cv::Mat& image, const WheelSpec& spec, Random& random)
{
    const FaceSpec& face = spec.face;
    const double size = random.range(0.016, 0.028) * spec.rimRadius; // height of a character
    const bool onLedge = random.chance(0.5);
    const double radius = spec.rimRadius * (onLedge ? random.range(face.ledgeInner + 0.03, face.lipInner - 0.03)
                                                    : 0.5 * (face.boltRing + face.boltRadius + face.windowInner));
    const std::string text = randomText(random);
    const double step = 0.8 * size / radius * 180 / CV_PI;
    // Far enough from the valve hole that no character touches it.
    const double span = step * static_cast<double>(text.size());
    double angle = spec.hole.angle - 12 - random.range(0, std::max(0.0, 336 - span));
    const Pen pen{std::max(0.8, 0.055 * size), random.sign() * random.range(0.15, 0.45),
                  random.chance(0.3) ? random.range(-0.35, 0.25) : 0.0, direction(spec.light.azimuth)};
    for (const char letter : text) {
        const cv::Point2d out = direction(angle), along(-out.y, out.x);
        const cv::Point2d origin = spec.hub + (radius + 0.5 * size) * out - 0.25 * size * along;
        const auto point = [&](const char* digits) {
            return origin + (0.25 * size * (digits[0] - '0')) * along - (0.25 * size * (digits[1] - '0')) * out;
        };
        for (const char* at = pathOf(letter); at[0] && at[2]; at += 2)
            paintStroke(image, point(at), point(at + 2), pen);
        angle -= step;
    }
}

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
