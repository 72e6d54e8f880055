#include "MouthReadings.h"

#include <algorithm>

namespace finder {

namespace {

using State = MouthProblem::State;

// Enough: a search with three times as many readings and steps found no smaller median error on drawn, rendered and
// ray-traced holes.
constexpr double sizes[] = {0.88, 1.0, 1.13};  // of the expected radius
constexpr double widths[] = {0.08, 0.25, 0.5}; // of the ring, against the radius
constexpr int directions = 8;
constexpr double wallShift = 0.2; // of the radius
constexpr size_t ringsKept = 3;
constexpr size_t readingsKept = 6;
constexpr int ringSteps = 2; // without any, the error of the start's centre would speak for the wrong ring
constexpr int steps = 4;

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

} // namespace

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
        problem.improve(&state, steps);
    return *std::min_element(states.begin(), states.end(), likelier);
}

} // namespace finder
