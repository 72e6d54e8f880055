#include "MouthFit.h"

#include "MouthProblem.h"

#include <algorithm>

namespace finder {

namespace {

using State = MouthProblem::State;

// Pixels are averaged until the radius has about as many: the readings compete in 3, are refined in 5 and then in 11.
// Finer ones than 11 take twice the time and change the median error by 0.02 pixels at most.
constexpr double coarse = 3;
constexpr double medium = 5;
constexpr double fine = 11;
constexpr int steps = 4; // in each of the latter two
// Radii around the start that hold the outer edge of a counterbore and some of the surface around it.
constexpr double coarseReach = 1.8;
// How much worse an open hole explains the inside than the surroundings: up to the first, there is nothing to doubt;
// beyond the second, something stands in it.
constexpr double clearlyOpen = 1.2;
constexpr double clearlyFilled = 1.4;
constexpr double hollow = 0.8; // of the radius: within, nothing counts where something stands in the hole
// Widths of what is seen as a ring, against the radius. A narrower one may as well be the mouth's own rounding; a wide
// one is a counterbore in most wheels.
constexpr double leastRing = 0.15;
constexpr double wideRing = 0.3;

// Enough: a search with three times as many readings and steps found no smaller median error on drawn, rendered and
// ray-traced holes.
constexpr double sizes[] = {0.88, 1.0, 1.13};  // of the expected radius
constexpr double widths[] = {0.08, 0.25, 0.5}; // of the ring, against the radius
constexpr int directions = 8;
constexpr double wallShift = 0.2; // of the radius
constexpr size_t ringsKept = 3;
constexpr size_t readingsKept = 6;
constexpr int ringSteps = 2; // without any, the error of the start's centre would speak for the wrong ring
constexpr int readingSteps = 4;

bool likelier(const State& a, const State& b)
{
    return a.evidence < b.evidence;
}

void keepLikeliest(std::vector<State>* states, size_t count)
{
    std::sort(states->begin(), states->end(), likelier);
    states->resize(std::min(count, states->size()));
}

std::vector<State> rings(MouthProblem& problem, const MouthExpectation& expected, double noise)
{
    std::vector<State> states;
    for (const double size : sizes) {
        for (const double width : widths) {
            State state;
            state.noise = noise;
            state.p = expected.value;
            state.p[R] *= size;
            state.p[Chamfer] = width * state.p[R];
            state.p[WallX] = state.p[WallY] = 0;
            problem.scan(&state);
            problem.improve(&state, ringSteps);
            states.push_back(state);
        }
    }
    keepLikeliest(&states, ringsKept);
    return states;
}

/// The likeliest reading of a coarse picture of a hole, to be refined. Which edge is the mouth's is a choice that no
/// small step undoes: the same dark disc may be a bore in a chamfer as wide as half its radius, or a wide mouth that
/// shows its far end. So readings of all kinds compete: rings of several widths around mouths of several sizes, each
/// without a visible wall and with one on either side. By plain least squares the gray values of each follow from its
/// shape; the likeliest are improved and compared by their evidence.
State likeliestReading(const MouthPatch& patch, const MouthExpectation& expected)
{
    MouthProblem problem(patch, expected, 0);
    const double noise = std::max(4.0, 0.5 * expected.tolerance);
    std::vector<State> states = rings(problem, expected, noise);
    for (size_t k = 0; k < ringsKept; ++k) {
        for (int i = 0; i < directions; ++i) {
            State state = states[k];
            const double angle = 2 * CV_PI * i / directions;
            state.p[WallX] = wallShift * state.p[R] * std::cos(angle);
            state.p[WallY] = wallShift * state.p[R] * std::sin(angle);
            problem.scan(&state);
            states.push_back(state);
        }
    }
    keepLikeliest(&states, readingsKept);
    for (State& state : states)
        problem.improve(&state, readingSteps);
    return *std::min_element(states.begin(), states.end(), likelier);
}

/// What all readings of one hole have in common.
struct View
{
    const cv::Mat& gray;
    MouthFrame frame;
    MouthPatch patch; // coarse
    MouthExpectation expected;
};

struct Reading
{
    State state;
    MouthPatch patch;
    double whitening = 0; // for the surface's grain
};

int binFor(double radius, double pixels)
{
    return std::max(1, cvRound(radius / pixels));
}

MouthLevels levelsOf(const MouthPatch& patch, double radius)
{
    const auto level = [&](double from, double to, double share) {
        return percentile(patch, from * radius, to * radius, share);
    };
    MouthLevels levels;
    levels.surface = level(1.25, 9, 0.5);
    levels.deep = level(0, 0.8, 0.2);
    levels.darkest = level(0, 1, 0.08);
    levels.contrast =
        std::max({10.0, std::abs(levels.surface - levels.deep), 0.7 * (level(0, 9, 0.95) - level(0, 9, 0.05))});
    return levels;
}

View viewOf(const cv::Mat& gray, const Mouth& start, const cv::Point2d& hub, const TaughtMouth& taught)
{
    const cv::Point2d arm = start.center - hub;
    const double distance = std::max(1.0, cv::norm(arm));
    View view{gray, {start.center, arm.x / distance, arm.y / distance}, {}, {}};
    view.patch =
        patchAround(gray, start.center, coarseReach * start.radius + 3, binFor(start.radius, coarse), view.frame);
    view.expected = expectMouth(start, levelsOf(view.patch, start.radius));
    expectTaught(taught, distance, &view.expected);
    return view;
}

float distanceFromMouth(const MouthPixel& pixel, const MouthVector& p)
{
    return ellipseDistance(pixel.x - static_cast<float>(p[X]), pixel.y - static_cast<float>(p[Y]),
                           static_cast<float>(p[R]), static_cast<float>(p[E]), static_cast<float>(p[F]))
        .distance;
}

/// Leaves out what is deeper in the hole than a band along the mouth.
MouthPatch withoutInside(MouthPatch patch, const MouthVector& p)
{
    const double band = (1 - hollow) * p[R];
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

double whiteningFor(double correlation)
{
    return std::clamp(0.3 + 0.75 * correlation, 0.0, 0.9);
}

/// The part of the image that a reading speaks of.
MouthPatch patchOf(const View& view, const MouthVector& p, double pixels, bool filled)
{
    const double outer = p[R] + p[Chamfer] + std::hypot(p[OuterX], p[OuterY]);
    const double reach = std::clamp(outer + 0.3 * p[R], 1.45 * p[R], 2.0 * p[R]) + 2;
    const cv::Point2d center = view.frame.outside({p[X], p[Y]});
    const int bin = binFor(p[R], pixels);
    MouthPatch patch = patchAround(view.gray, center, reach, bin, view.frame);
    return filled ? withoutInside(std::move(patch), p) : patch;
}

Reading read(const View& view, bool filled)
{
    Reading reading;
    State& state = reading.state;
    state = likeliestReading(filled ? withoutInside(view.patch, view.expected.value) : view.patch, view.expected);
    {
        const MouthPatch patch = patchOf(view, state.p, medium, filled);
        MouthProblem problem(patch, view.expected, 0.5);
        problem.measureNoise(&state);
        problem.improve(&state, steps);
    }
    reading.patch = patchOf(view, state.p, fine, filled);
    MouthProblem problem(reading.patch, view.expected, 0);
    reading.whitening = whiteningFor(problem.correlation(state.p));
    problem.setWhitening(reading.whitening);
    problem.measureNoise(&state);
    problem.improve(&state, steps);
    return reading;
}

/// Whether a filled hole explains the band along the mouth better.
bool looksFilled(const View& view, const Reading& open, const Reading& filled)
{
    MouthProblem judge(filled.patch, view.expected, open.whitening);
    const double noise = std::min(open.state.noise, filled.state.noise);
    return judge.misfit(filled.state.p, noise) < judge.misfit(open.state.p, noise);
}

/// A ring as bright as the surface is none.
MouthEdge edgeOf(const State& state)
{
    const MouthVector& p = state.p;
    const double seen =
        std::abs(p[Chamfer0] - p[Surface0]) + std::hypot(p[ChamferC], p[ChamferS]) + std::abs(p[ChamferOut]);
    if (p[Chamfer] < leastRing * p[R] || seen < 2 * state.noise)
        return MouthEdge::Plain;
    return p[Chamfer] < wideRing * p[R] ? MouthEdge::Chamfer : MouthEdge::Counterbore;
}

Mouth toMouth(const Reading& reading, const MouthFrame& frame)
{
    const MouthVector& p = reading.state.p;
    const double flat = 0.5 * std::hypot(p[E], p[F]);
    Mouth mouth;
    mouth.center = mouth.outerCenter = frame.outside({p[X], p[Y]});
    mouth.radius = mouth.outerRadius = p[R] * (1 + flat);
    mouth.axisRatio = (1 - flat) / (1 + flat);
    mouth.axisAngle = std::atan2(frame.s, frame.c) + 0.5 * (std::atan2(p[F], p[E]) + CV_PI);
    mouth.edge = edgeOf(reading.state);
    if (mouth.edge != MouthEdge::Plain) {
        mouth.outerCenter += frame.turned({p[OuterX], p[OuterY]});
        mouth.outerRadius = p[R] + p[Chamfer] + flat * (p[R] + p[Scaled] * p[Chamfer]);
    }
    mouth.blur = p[Blur];
    mouth.wall = frame.turned({p[WallX], p[WallY]});
    mouth.residual = reading.state.noise;
    mouth.spread = reading.state.centerSpread;
    mouth.pixels = static_cast<int>(reading.patch.counting.size());
    return mouth;
}

bool staysNear(const Mouth& start, const Mouth& mouth)
{
    return mouth.pixels > 0 && cv::norm(mouth.center - start.center) < 0.6 * start.radius &&
           mouth.radius > 0.6 * start.radius && mouth.radius < 1.5 * start.radius;
}

/// A mouth that the image's border cuts could be anywhere.
bool isInside(const cv::Mat& gray, const Mouth& start)
{
    const double reach = 1.2 * start.radius + 1;
    return start.center.x >= reach && start.center.y >= reach && start.center.x <= gray.cols - 1 - reach &&
           start.center.y <= gray.rows - 1 - reach;
}

} // namespace

Mouth fitMouth(const cv::Mat& gray, const Mouth& start, const cv::Point2d& hub, const TaughtMouth& taught)
{
    if (start.radius < 2 || !isInside(gray, start))
        return {};
    const View view = viewOf(gray, start, hub, taught);
    Reading reading = read(view, false);
    const double misfit = misfitInside(reading.patch, reading.state.p);
    bool isFilled = false;
    if (misfit > clearlyOpen) {
        Reading filled = read(view, true);
        isFilled = misfit > clearlyFilled || looksFilled(view, reading, filled);
        if (isFilled)
            reading = std::move(filled);
    }
    Mouth mouth = toMouth(reading, view.frame);
    mouth.filled = isFilled;
    mouth.valid = staysNear(start, mouth);
    return mouth;
}

} // namespace finder
