#include "MouthFit.h"

#include "MouthProblem.h"

#include <algorithm>

namespace finder {

namespace {

using State = MouthProblem::State;

/// Axes along and across the direction from the hub.
struct Frame
{
    double c, s;

    cv::Point2d inside(const cv::Point2d& p) const { return {p.x * c + p.y * s, p.y * c - p.x * s}; }
    cv::Point2d outside(const cv::Point2d& p) const { return {p.x * c - p.y * s, p.x * s + p.y * c}; }
};

float blockMean(const cv::Mat& gray, const cv::Point& corner, int bin)
{
    int sum = 0;
    for (int y = 0; y < bin; ++y) {
        const uchar* line = gray.ptr(corner.y + y) + corner.x;
        for (int x = 0; x < bin; ++x)
            sum += line[x];
    }
    return static_cast<float>(sum) / static_cast<float>(bin * bin);
}

/// The pixels around a point, `bin` x `bin` of them averaged to one; those within `reach` count.
MouthPatch patchAround(const cv::Mat& gray, const cv::Point2d& center, double reach, int bin, const Frame& frame)
{
    MouthPatch patch;
    const int half = cvCeil(reach / bin) + 1;
    const double shift = 0.5 * (bin - 1);
    const cv::Point middle(cvRound(center.x - shift), cvRound(center.y - shift));
    patch.width = 2 * half + 1;
    patch.pixels.reserve(static_cast<size_t>(patch.width) * patch.width);
    for (int row = -half; row <= half; ++row) {
        for (int column = -half; column <= half; ++column) {
            const cv::Point corner(middle.x + column * bin, middle.y + row * bin);
            const cv::Point2d offset(corner.x + shift - center.x, corner.y + shift - center.y);
            if (offset.dot(offset) <= reach * reach)
                patch.counting.push_back(static_cast<int>(patch.pixels.size()));
            const cv::Point2d place = frame.inside(offset);
            patch.pixels.push_back(
                {static_cast<float>(place.x), static_cast<float>(place.y), blockMean(gray, corner, bin)});
        }
    }
    return patch;
}

bool fitsInside(const cv::Mat& gray, const cv::Point2d& center, double reach)
{
    return center.x - reach >= 0 && center.y - reach >= 0 && center.x + reach <= gray.cols - 1 &&
           center.y + reach <= gray.rows - 1;
}

double percentile(const MouthPatch& patch, double share)
{
    std::vector<float> grays;
    for (const int index : patch.counting)
        grays.push_back(patch.pixels[index].gray);
    const auto at = grays.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(grays.size() - 1));
    std::nth_element(grays.begin(), at, grays.end());
    return *at;
}

MouthExpectation expectOpen(const Mouth& start, double surface, double deep)
{
    MouthExpectation expected;
    MouthVector& value = expected.value;
    MouthVector& spread = expected.spread;
    const double contrast = std::max(10.0, surface - deep);
    const double radius = start.radius;
    value[R] = radius;
    spread[X] = spread[Y] = spread[R] = 0.15 * radius;
    spread[E] = 0.15;
    spread[F] = 0.06;
    value[Chamfer] = 0.12 * radius;
    spread[Chamfer] = 0.1 * radius;
    value[Scaled] = 0.5;
    spread[Scaled] = 0.5;
    // An image that was enlarged is blurred in proportion; where nothing is enlarged the lens decides.
    value[Blur] = std::max(start.blur, 0.07 * radius);
    spread[Blur] = 0.5 * value[Blur];
    spread[Turn] = 1;
    spread[WallX] = 0.3 * radius;
    spread[WallY] = 0.15 * radius;
    value[Far] = 1;
    spread[Far] = 0.03;
    value[Surface0] = value[Chamfer0] = surface;
    value[Wall0] = 0.6 * deep + 0.4 * surface;
    value[Deep] = deep;
    spread[SurfaceX] = spread[SurfaceY] = contrast / radius;
    for (const int i : {Surface0, Chamfer0, ChamferC, ChamferS})
        spread[i] = 0.5 * contrast;
    for (const int i : {Wall0, WallC, WallS, Deep})
        spread[i] = 0.3 * contrast;
    return expected;
}

/// Only a band along the mouth counts, whose gray value changes smoothly around; what is deeper may be anything.
MouthExpectation expectFilled(MouthExpectation expected)
{
    expected.value[Wall0] = expected.value[Deep];
    expected.value[Far] = 0.2;
    for (const int i : {Far, WallX, WallY})
        expected.spread[i] = 1e-3;
    return expected;
}

float distanceFromMouth(const MouthPixel& pixel, const MouthVector& p)
{
    return ellipseDistance(pixel.x - static_cast<float>(p[X]), pixel.y - static_cast<float>(p[Y]),
                           static_cast<float>(p[R]), static_cast<float>(p[E]), static_cast<float>(p[F]))
        .distance;
}

MouthPatch withoutInside(MouthPatch patch, const MouthVector& p, double band)
{
    std::vector<int>& counting = patch.counting;
    counting.erase(std::remove_if(counting.begin(), counting.end(),
                                  [&](int index) { return distanceFromMouth(patch.pixels[index], p) < -band; }),
                   counting.end());
    return patch;
}

/// How much worse the model explains the inside of the hole than its surroundings.
double misfitInside(const MouthPatch& patch, const MouthVector& p)
{
    const MouthModel model(p);
    std::array<float, mouthParameters> derivative{};
    double sums[2] = {0, 0};
    int counts[2] = {0, 0};
    for (const int index : patch.counting) {
        const MouthPixel& pixel = patch.pixels[index];
        const double distance = distanceFromMouth(pixel, p);
        const bool inside = distance < -1.5;
        if (!inside && distance < p[Chamfer] + 1)
            continue;
        sums[inside] += std::abs(pixel.gray - model.evaluate(pixel, derivative.data()));
        ++counts[inside];
    }
    if (counts[0] == 0 || counts[1] == 0)
        return 0;
    return sums[1] / counts[1] / std::max(1.0, sums[0] / counts[0]);
}

/// The far end may show on any side: begins from each, goes on from the best.
State openStart(MouthProblem& problem, const MouthExpectation& expected, const State& filled)
{
    constexpr int directions = 8;
    const double share = 0.2; // of the radius
    std::vector<State> states;
    for (int i = 0; i < directions; ++i) {
        State state = filled;
        state.noise = 8;
        for (const int k : {Far, Wall0, WallC, WallS})
            state.p[k] = expected.value[k];
        const double angle = 2 * CV_PI * i / directions;
        state.p[WallX] = share * state.p[R] * std::cos(angle);
        state.p[WallY] = share * state.p[R] * std::sin(angle);
        problem.improve(&state, mouthShapes, 1);
        states.push_back(state);
    }
    const auto cheaper = [](const State& a, const State& b) { return a.cost < b.cost; };
    std::sort(states.begin(), states.end(), cheaper);
    states.resize(3);
    for (State& state : states)
        problem.improve(&state, 0, 5);
    State best = *std::min_element(states.begin(), states.end(), cheaper);
    return best;
}

Mouth toMouth(const State& state, const Mouth& start, const Frame& frame)
{
    Mouth mouth;
    mouth.center = start.center + frame.outside({state.p[X], state.p[Y]});
    mouth.radius = state.p[R];
    mouth.blur = state.p[Blur];
    mouth.chamfer = state.p[Chamfer];
    mouth.wall = frame.outside({state.p[WallX], state.p[WallY]});
    mouth.residual = state.noise;
    return mouth;
}

double whiteningFor(double correlation)
{
    return std::clamp(0.3 + 0.75 * correlation, 0.0, 0.9);
}

} // namespace

Mouth fitMouth(const cv::Mat& gray, const Mouth& start, double direction)
{
    const double reach = 1.55 * start.radius + 3;
    const int coarseBin = std::max(1, cvRound(start.radius / 4));
    const int fineBin = std::max(1, cvRound(start.radius / 7));
    if (start.radius < 2 || !fitsInside(gray, start.center, reach + 2 * coarseBin + 2))
        return {};
    const Frame frame{std::cos(direction), std::sin(direction)};
    const MouthPatch whole = patchAround(gray, start.center, reach, fineBin, frame);
    const MouthPatch sparse = patchAround(gray, start.center, reach, coarseBin, frame);
    const MouthExpectation open = expectOpen(start, percentile(whole, 0.65), percentile(whole, 0.04));
    const MouthExpectation filledUp = expectFilled(open);

    State filled;
    filled.p = filledUp.value;
    const MouthPatch wide = withoutInside(sparse, filled.p, 0.35 * start.radius);
    MouthProblem first(wide, filledUp, 0.5);
    first.improve(&filled, mouthShapes, 1);
    first.improve(&filled, 0, 10);

    MouthProblem coarse(sparse, open, 0);
    State full = openStart(coarse, open, filled);
    MouthProblem trial(whole, open, 0.5);
    trial.measureNoise(&full);
    trial.improve(&full, 0, 5);

    const double whitening = whiteningFor(trial.correlation(full.p));
    MouthProblem last(whole, open, whitening);
    last.measureNoise(&full);
    last.improve(&full, 0, 4);

    const MouthPatch band = withoutInside(whole, filled.p, 0.1 * filled.p[R] + 1);
    MouthProblem narrow(band, filledUp, whitening);
    narrow.measureNoise(&filled);
    narrow.improve(&filled, 0, 5);

    MouthProblem judge(band, open, whitening);
    const double noise = std::min(full.noise, filled.noise);
    const bool isFilled =
        misfitInside(whole, full.p) > 1.4 || judge.misfit(filled.p, noise) < judge.misfit(full.p, noise);
    Mouth mouth = toMouth(isFilled ? filled : full, start, frame);
    mouth.filled = isFilled;
    mouth.pixels = static_cast<int>(isFilled ? band.counting.size() : whole.counting.size());
    mouth.valid = cv::norm(mouth.center - start.center) < 0.6 * start.radius && mouth.radius > 0.6 * start.radius &&
                  mouth.radius < 1.5 * start.radius;
    return mouth;
}

} // namespace finder
