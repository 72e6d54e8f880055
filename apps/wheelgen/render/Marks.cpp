#include "Paint.h"
#include "Pit.h"
#include "Random.h"
#include "WheelRenderer.h"

namespace wheel {

namespace {

/// One mark on its surface: what all painters need.
struct Place
{
    const MarkSpec& mark;
    cv::Point2d center;
    cv::Point2d toLight;
    double turn; ///< radians by which the mark lies turned
};

/// 1 on a line of some width at distance 0.
float line(double distance, double width)
{
    return coverage(0.5 * width - std::fabs(distance));
}

void paintHole(cv::Mat& image, const Place& place, const WheelSpec& spec, Random& random)
{
    Pit pit = plainPit(place.center, place.mark.radius, spec);
    pit.chamfer = random.range(0, 0.3) * pit.major;
    pit.shine = random.range(0.1, 0.7);
    pit.chamferGray = random.range(0.7, 1.2);
    pit.deep = place.mark.gray;
    paintPit(image, pit, spec.light);
}

/// A hollow without an edge: one flank lit, the other in shade.
void paintDimple(cv::Mat& image, const Place& place, Random& random)
{
    const double relief = random.range(0.15, 0.6), radius = place.mark.radius;
    paintAround(image, place.center, radius, [&](float& pixel, double dx, double dy) {
        const double q = std::hypot(dx, dy) / radius;
        const double facing = -(dx * place.toLight.x + dy * place.toLight.y) / radius;
        if (q < 1)
            pixel *= static_cast<float>((1 + relief * 2.6 * facing * (1 - q * q)));
    });
}

/// The flat print of a pin: a disc a little above or below the surface.
void paintEjectorPin(cv::Mat& image, const Place& place, Random& random)
{
    const double flank = random.sign() * random.range(0.1, 0.5), width = random.range(1, 2.5);
    paintAround(image, place.center, place.mark.radius + width, [&](float& pixel, double dx, double dy) {
        const double r = std::max(std::hypot(dx, dy), 1e-6), inside = place.mark.radius - r;
        const double facing = (dx * place.toLight.x + dy * place.toLight.y) / r;
        pixel *= mix(1, static_cast<float>(place.mark.gray), coverage(inside));
        pixel *= 1 + static_cast<float>(flank * facing) * line(inside, width);
    });
}

/// Paint does not take over the surface's texture and is never quite round.
void paintDot(cv::Mat& image, const Place& place, const WheelSpec& spec, Random& random)
{
    const double ragged = random.range(0.08, 0.18), phase = random.range(0, 6);
    const auto gray = static_cast<float>(place.mark.gray * 150 * spec.face.albedo);
    paintAround(image, place.center, 1.15 * place.mark.radius, [&](float& pixel, double dx, double dy) {
        const double angle = std::atan2(dy, dx);
        const double border =
            place.mark.radius * (1 + ragged * (0.7 * std::sin(3 * angle + phase) + 0.3 * std::sin(7 * angle - phase)));
        pixel = mix(pixel, 0.85f * gray + 0.15f * pixel, coverage(border - std::hypot(dx, dy)));
    });
}

/// A date stamp: two rings, twelve strokes between them and an arrow, raised or sunk.
void paintDial(cv::Mat& image, const Place& place, Random& random)
{
    const double radius = place.mark.radius, width = std::max(1.0, 0.07 * radius);
    const auto relief = static_cast<float>(random.sign() * random.range(0.25, 0.6));
    const auto lines = [&](double dx, double dy) {
        const double r = std::hypot(dx, dy), angle = std::atan2(dy, dx) - place.turn;
        const double beside = r * std::sin(std::remainder(angle, CV_PI / 6));
        const float rings = std::max(line(r - radius, width), line(r - 0.55 * radius, width));
        const float strokes = r > 0.65 * radius && r < 0.9 * radius ? line(beside, width) : 0;
        const float arrow = std::cos(angle) > 0 && r < 0.5 * radius ? line(r * std::sin(angle), 1.6 * width) : 0;
        return std::max({rings, strokes, arrow});
    };
    paintAround(image, place.center, radius + width, [&](float& pixel, double dx, double dy) {
        const float flank =
            lines(dx + place.toLight.x, dy + place.toLight.y) - lines(dx - place.toLight.x, dy - place.toLight.y);
        pixel *= 1 + relief * (flank + 0.35f * lines(dx, dy));
    });
}

/// A round label with rows of print, without which a dark one would be a hole.
void paintSticker(cv::Mat& image, const Place& place, const WheelSpec& spec, Random& random)
{
    const double radius = place.mark.radius, pitch = radius * random.range(0.4, 0.6);
    const auto paper = static_cast<float>(place.mark.gray * 150 * spec.face.albedo);
    const float ink = paper * static_cast<float>(place.mark.gray < 1 ? random.range(2, 3) : random.range(0.15, 0.45));
    const Texture letters(place.mark.seed);
    paintAround(image, place.center, radius, [&](float& pixel, double dx, double dy) {
        const double u = dx * std::cos(place.turn) + dy * std::sin(place.turn);
        const double v = dy * std::cos(place.turn) - dx * std::sin(place.turn), r = std::hypot(dx, dy);
        const double row = std::remainder(v, pitch);
        const bool gap = letters.at(cvRound(8 * u / pitch), cvRound(v / pitch) * 40) > 0.7f;
        const bool printed = std::fabs(row) < 0.3 * pitch && r < 0.8 * radius && !gap;
        pixel = mix(pixel, printed ? ink : paper, coverage(radius - r));
    });
}

/// Dirt as large and nearly as dark as the hole, but ragged.
void paintBlot(cv::Mat& image, const Place& place, Random& random)
{
    const double radius = place.mark.radius, soft = random.range(0.05, 0.5) * radius,
                 stretch = random.range(0.55, 0.95);
    const double a2 = random.range(0.15, 0.3), a5 = random.range(0.03, 0.15), phase = random.range(0, 6);
    const Texture patches(place.mark.seed);
    paintAround(image, place.center, 1.8 * radius, [&](float& pixel, double dx, double dy) {
        const double u = dx * std::cos(place.turn) + dy * std::sin(place.turn);
        const double v = (dy * std::cos(place.turn) - dx * std::sin(place.turn)) / stretch;
        const double angle = std::atan2(v, u);
        const double border = 1 + a2 * std::sin(3 * angle + phase) + a5 * std::sin(7 * angle + 2 * phase);
        const float patchy = std::clamp(0.85f + 0.2f * patches.at(cvRound(dx), cvRound(dy)), 0.0f, 1.0f);
        const float dark = coverage((radius * border - std::hypot(u, v)) / std::max(1.0, soft)) * patchy;
        pixel *= 1 - (1 - static_cast<float>(place.mark.gray)) * dark;
    });
}

/// A round head with a slot, a cross or a hexagonal socket.
void paintScrew(cv::Mat& image, const Place& place, Random& random)
{
    const double radius = place.mark.radius, width = 0.24 * radius;
    const int drive = random.integer(0, 2);
    const auto gray = static_cast<float>(place.mark.gray);
    paintAround(image, place.center, 1.2 * radius, [&](float& pixel, double dx, double dy) {
        const double u = dx * std::cos(place.turn) + dy * std::sin(place.turn);
        const double v = dy * std::cos(place.turn) - dx * std::sin(place.turn), r = std::max(std::hypot(dx, dy), 1e-6);
        const double lit = (dx * place.toLight.x + dy * place.toLight.y) / radius;
        pixel *= 1 - 0.4f * coverage(1.12 * radius - r); // the gap around the head
        const auto head = static_cast<float>(1.5 * static_cast<double>(pixel * gray) * (1 + 0.35 * lit));
        pixel = mix(pixel, head, coverage(radius - r));
        const double sector = std::remainder(std::atan2(v, u), CV_PI / 3);
        float sunk = drive == 2 ? coverage(0.45 * radius - r * std::cos(sector)) : line(v, width);
        if (drive == 1)
            sunk = std::max(sunk, line(u, width));
        pixel *= 1 - 0.75f * std::min(sunk, coverage((drive == 0 ? 1.0 : 0.75) * radius - r));
    });
}

void paintMark(cv::Mat& image, const WheelSpec& spec, const MarkSpec& mark)
{
    Random random(mark.seed, 23);
    const Place place{mark, markCenter(spec, mark), direction(spec.light.azimuth), random.range(0, 2 * CV_PI)};
    switch (mark.kind) {
    case MarkKind::Vent:
    case MarkKind::Drain:
        return paintHole(image, place, spec, random);
    case MarkKind::Dimple:
        return paintDimple(image, place, random);
    case MarkKind::EjectorPin:
        return paintEjectorPin(image, place, random);
    case MarkKind::PaintDot:
        return paintDot(image, place, spec, random);
    case MarkKind::Dial:
        return paintDial(image, place, random);
    case MarkKind::Sticker:
        return paintSticker(image, place, spec, random);
    case MarkKind::Blot:
        return paintBlot(image, place, random);
    case MarkKind::Screw:
        return paintScrew(image, place, random);
    }
}

} // namespace

cv::Point2d markCenter(const WheelSpec& spec, const MarkSpec& mark)
{
    return spec.hub + mark.ringRadius * direction(mark.angle);
}

void paintMarks(cv::Mat& image, const WheelSpec& spec)
{
    for (const MarkSpec& mark : spec.scene.marks)
        paintMark(image, spec, mark);
}

} // namespace wheel
