#include "MouthFit.h"

#include "MouthProblem.h"
#include "Robust.h"

#include <algorithm>

namespace finder {

namespace {

using State = MouthProblem::State;

constexpr int binnedSteps = 6;
constexpr int lastSteps = 6;
// How much worse an open hole explains the inside than the surroundings: up to the first, there is nothing to doubt;
// beyond the second, something stands in it.
constexpr double clearlyOpen = 1.2;
constexpr double clearlyFilled = 1.4;

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
    return quantile(grays, share);
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
    double sums[2] = {0, 0};
    int counts[2] = {0, 0};
    forEachBlock(p, patch, patch.counting, [&](const MouthModel::Block& block, const int* indices, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            const MouthPixel& pixel = patch.pixels[indices[i]];
            const double distance = distanceFromMouth(pixel, p);
            const bool inside = distance < -1.5;
            if (!inside && distance < p[Chamfer] + 1)
                continue;
            sums[inside] += std::abs(pixel.gray - block.results[MouthModel::gray][i]);
            ++counts[inside];
        }
    });
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

/// How far around the start to look, and how many pixels (a side) to average to one.
struct Extent
{
    double reach;
    int coarseBin;
    int fineBin;
    int finestBin;
};

Extent extentFor(double radius)
{
    return {1.55 * radius + 3, std::max(1, cvRound(radius / 4)), std::max(1, cvRound((radius + 1) / 7)),
            std::max(1, cvRound(radius / 11))};
}

/// What all stages of a fit look at.
struct View
{
    Frame frame;
    MouthPatch full;   // every pixel
    MouthPatch whole;  // the same, averaged as far as the hole keeps its shape
    MouthPatch sparse; // in still coarser pixels
    MouthExpectation open;
    MouthExpectation filled;
};

View viewOf(const cv::Mat& gray, const Mouth& start, const Extent& extent, const cv::Point2d& hub,
            const TaughtMouth& taught)
{
    const cv::Point2d arm = start.center - hub;
    const double distance = std::max(1.0, cv::norm(arm));
    const Frame frame{arm.x / distance, arm.y / distance};
    View view{frame,
              patchAround(gray, start.center, extent.reach, extent.finestBin, frame),
              patchAround(gray, start.center, extent.reach, extent.fineBin, frame),
              patchAround(gray, start.center, extent.reach, extent.coarseBin, frame),
              {},
              {}};
    view.open = expectOpen(start, percentile(view.whole, 0.65), percentile(view.whole, 0.04));
    expectTaught(taught, distance, &view.open);
    view.filled = expectFilled(view.open);
    return view;
}

/// The mouth alone, in coarse pixels: right enough to start from, whether something stands in the hole or not.
State roughFit(const View& view, double radius)
{
    State state;
    state.p = view.filled.value;
    const MouthPatch wide = withoutInside(view.sparse, state.p, 0.35 * radius);
    MouthProblem problem(wide, view.filled, 0.5);
    problem.improve(&state, mouthShapes, 1);
    problem.improve(&state, 0, 10);
    return state;
}

struct OpenFit
{
    State state;
    double whitening; // for the surface's grain
};

OpenFit openFit(const View& view, const State& rough)
{
    MouthProblem coarse(view.sparse, view.open, 0);
    State state = openStart(coarse, view.open, rough);
    MouthProblem trial(view.whole, view.open, 0.5);
    trial.measureNoise(&state);
    trial.improve(&state, 0, binnedSteps);

    MouthProblem last(view.full, view.open, 0);
    const double whitening = whiteningFor(last.correlation(state.p));
    last.setWhitening(whitening);
    last.measureNoise(&state);
    last.improve(&state, 0, lastSteps);
    return {state, whitening};
}

State filledFit(const View& view, const MouthPatch& band, State state, double whitening)
{
    MouthProblem problem(band, view.filled, whitening);
    problem.measureNoise(&state);
    problem.improve(&state, 0, lastSteps);
    return state;
}

/// Whether a filled hole explains the band between mouth and middle better.
bool looksFilled(const View& view, const MouthPatch& band, const OpenFit& open, const State& filled)
{
    MouthProblem judge(band, view.open, open.whitening);
    const double noise = std::min(open.state.noise, filled.noise);
    return judge.misfit(filled.p, noise) < judge.misfit(open.state.p, noise);
}

bool staysNear(const Mouth& start, const Mouth& mouth)
{
    return cv::norm(mouth.center - start.center) < 0.6 * start.radius && mouth.radius > 0.6 * start.radius &&
           mouth.radius < 1.5 * start.radius;
}

} // namespace

Mouth fitMouth(const cv::Mat& gray, const Mouth& start, const cv::Point2d& hub, const TaughtMouth& taught)
{
    const Extent extent = extentFor(start.radius);
    if (start.radius < 2 || !fitsInside(gray, start.center, extent.reach + 2 * extent.coarseBin + 2))
        return {};
    const View view = viewOf(gray, start, extent, hub, taught);
    const State rough = roughFit(view, start.radius);
    const OpenFit open = openFit(view, rough);
    Mouth mouth = toMouth(open.state, start, view.frame);
    mouth.pixels = static_cast<int>(view.full.counting.size());
    const double misfit = misfitInside(view.full, open.state.p);
    if (misfit > clearlyOpen) {
        const MouthPatch band = withoutInside(view.full, rough.p, 0.1 * rough.p[R] + 1);
        const State filled = filledFit(view, band, rough, open.whitening);
        if (misfit > clearlyFilled || looksFilled(view, band, open, filled)) {
            mouth = toMouth(filled, start, view.frame);
            mouth.filled = true;
            mouth.pixels = static_cast<int>(band.counting.size());
        }
    }
    mouth.valid = staysNear(start, mouth);
    return mouth;
}

} // namespace finder
