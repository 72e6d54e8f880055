#include "MouthProblem.h"

#include "MouthFactor.h"
#include "finder/Robust.h"
#include "finder/Vectorise.h"

#include <algorithm>

namespace finder {

namespace {

constexpr float saturated = 254;
constexpr double outlying = 4; // standard deviations
constexpr double grain = 2;    // pixels that vary together even after whitening: data count this much less

constexpr double impossible = 1e30;
constexpr double enough = 0.1; // variances, a gain not worth another step
constexpr double farOff = 3;   // spreads

constexpr int rowSize = MouthModel::rowSize;

VC_VECTORISED void takeOff(const float* at, const float* left, const float* right, const float* above,
                           const float* below, float share, float* VC_RESTRICT out)
{
    for (int k = 0; k < rowSize; ++k)
        out[k] = at[k] - share * (left[k] + right[k] + above[k] + below[k]);
}

constexpr int batchSize = 4; // rows that are added at once, so that the matrix is read and written less often

/// Adds weight * d d^T of each row d to the upper triangle of a square matrix, from its row `first` on, in whole
/// vectors.
VC_VECTORISED void addSquares(int first, const float* VC_RESTRICT rows, const float* VC_RESTRICT weights,
                              float* VC_RESTRICT matrix)
{
    const float* const a = rows;
    const float* const b = a + rowSize;
    const float* const c = b + rowSize;
    const float* const d = c + rowSize;
    for (int i = first; i < mouthParameters; ++i) {
        const float wa = weights[0] * a[i];
        const float wb = weights[1] * b[i];
        const float wc = weights[2] * c[i];
        const float wd = weights[3] * d[i];
        float* VC_RESTRICT row = matrix + i * rowSize;
        for (int k = i & ~7; k < rowSize; ++k)
            row[k] += wa * a[k] + wb * b[k] + wc * c[k] + wd * d[k];
    }
}

/// Keeps the parameters where they have a meaning.
void limit(MouthVector* p)
{
    MouthVector& v = *p;
    v[R] = std::max(v[R], 1.5);
    v[E] = std::clamp(v[E], -0.6, 0.6);
    v[F] = std::clamp(v[F], -0.6, 0.6);
    v[Chamfer] = std::clamp(v[Chamfer], 0.0, 0.6 * v[R]);
    v[Scaled] = std::clamp(v[Scaled], -0.5, 1.5);
    v[Blur] = std::clamp(v[Blur], 0.4, std::max(6.0, 0.3 * v[R]));
    v[Turn] = std::clamp(v[Turn], 0.0, std::max(60.0, 0.1 * v[R] * v[R]));
    v[Far] = std::clamp(v[Far], 0.15, 1.1);
    const double wall = std::hypot(v[WallX], v[WallY]);
    const double most = 0.8 * v[R];
    if (wall > most) {
        v[WallX] *= most / wall;
        v[WallY] *= most / wall;
    }
}

} // namespace

MouthProblem::MouthProblem(const MouthPatch& patch, const MouthExpectation& expected, double whitening)
    : m_patch(patch)
    , m_expected(expected)
    , m_whitening(static_cast<float>(whitening))
    , m_rows(patch.pixels.size())
{
    std::vector<bool> needed(patch.pixels.size(), false);
    for (const int index : patch.counting) {
        for (const int near : {index, index - 1, index + 1, index - patch.width, index + patch.width})
            needed[near] = true;
    }
    for (size_t i = 0; i < needed.size(); ++i) {
        if (needed[i])
            m_needed.push_back(static_cast<int>(i));
    }
}

void MouthProblem::evaluate(const MouthVector& p)
{
    if (m_evaluated == p)
        return;
    m_evaluated = p;
    forEachBlock(p, m_patch, m_needed, [this](const MouthModel::Block& block, const int* indices, size_t count) {
        for (size_t i = 0; i < count; i += 4)
            takeOver(block, i, indices + i, std::min<size_t>(4, count - i));
    });
}

void MouthProblem::takeOver(const MouthModel::Block& block, size_t i, const int* indices, size_t count)
{
    Row unused;
    std::array<float*, 4> rows{unused.data(), unused.data(), unused.data(), unused.data()};
    for (size_t k = 0; k < count; ++k)
        rows[k] = m_rows[indices[k]].data();
    MouthModel::transpose(block, static_cast<int>(i), rows.data());
    for (size_t k = 0; k < count; ++k) {
        Row& row = m_rows[indices[k]];
        const float gray = m_patch.pixels[indices[k]].gray;
        row[error] = gray - row[error];
        if (row[error] < 0 && gray >= saturated)
            row.fill(0); // as bright as the camera can show
    }
}

void MouthProblem::whitened(int index, Row* row) const
{
    const Row& at = m_rows[index];
    const Row& left = m_rows[index - 1];
    const Row& right = m_rows[index + 1];
    const Row& above = m_rows[index - m_patch.width];
    const Row& below = m_rows[index + m_patch.width];
    if (m_whitening == 0) {
        *row = at;
        return;
    }
    takeOff(at.data(), left.data(), right.data(), above.data(), below.data(), m_whitening / 4, row->data());
}

void MouthProblem::accumulate(const MouthVector& p, double noise, bool plain)
{
    evaluate(p);
    for (Row& row : m_matrix)
        row.fill(0);
    const auto most = plain ? 1e6F : static_cast<float>(std::max(outlying * noise, m_expected.tolerance));
    m_dataCost = 0;
    alignas(32) std::array<Row, batchSize> batch{};
    std::array<float, batchSize> weights{};
    size_t filled = 0;
    for (const int index : m_patch.counting) {
        Row& d = batch[filled];
        whitened(index, &d);
        const float square = d[error] * d[error];
        const float inlying = 1 / (1 + square / (most * most));
        m_dataCost += static_cast<double>(square * inlying);
        weights[filled++] = inlying * inlying;
        if (filled == batchSize) {
            addSquares(plain ? mouthShapes : 0, batch[0].data(), weights.data(), m_matrix[0].data());
            weights.fill(0);
            filled = 0;
        }
    }
    addSquares(plain ? mouthShapes : 0, batch[0].data(), weights.data(), m_matrix[0].data());
    addExpectations(p, noise);
}

void MouthProblem::addExpectations(const MouthVector& p, double noise)
{
    m_cost = m_dataCost;
    for (int i = 0; i < mouthParameters; ++i) {
        const double off = m_expected.value[i] - p[i];
        const double weight = grain * noise * noise / (m_expected.spread[i] * m_expected.spread[i]);
        m_right[i] = static_cast<double>(m_matrix[i][error]) + weight * off;
        m_matrix[i][i] += static_cast<float>(weight);
        m_cost += weight * off * off;
    }
    if (m_expected.major > 0)
        addMajor(p, grain * noise * noise / (m_expected.majorSpread * m_expected.majorSpread));
    if (m_expected.alongSpread > 0)
        addAlong(p, grain * noise * noise / (m_expected.alongSpread * m_expected.alongSpread));
}

void MouthProblem::addAlong(const MouthVector& p, double weight)
{
    const double off = m_expected.along - p[X];
    const double limit = farOff * m_expected.alongSpread;
    const double inlying = 1 / (1 + off * off / (limit * limit)); // Geman and McClure's
    m_right[X] += weight * inlying * inlying * off;
    m_matrix[X][X] += static_cast<float>(weight * inlying * inlying);
    m_cost += weight * inlying * off * off;
}

void MouthProblem::addMajor(const MouthVector& p, double weight)
{
    const double flatness =
        std::sqrt(p[E] * p[E] + p[F] * p[F] + 1e-4); // rounded off, so that it has a derivative at 0
    const double off = m_expected.major - p[R] * (1 + 0.5 * flatness);
    const std::array<int, 3> index{R, E, F};
    const std::array<double, 3> by{1 + 0.5 * flatness, 0.5 * p[R] * p[E] / flatness, 0.5 * p[R] * p[F] / flatness};
    for (size_t i = 0; i < index.size(); ++i) {
        m_right[index[i]] += weight * by[i] * off;
        for (size_t k = i; k < index.size(); ++k)
            m_matrix[index[i]][index[k]] += static_cast<float>(weight * by[i] * by[k]);
    }
    m_cost += weight * off * off;
}

bool MouthProblem::step(double damping, MouthVector* p) const
{
    MouthFactor factor;
    if (!factor.of(m_matrix, 0, damping))
        return false;
    const MouthVector change = factor.solve(m_right);
    for (int i = 0; i < mouthParameters; ++i)
        (*p)[i] += change[i];
    limit(p);
    return true;
}

/// The state's evidence and spread, from the matrix at its parameters.
void MouthProblem::weigh(State* state) const
{
    const double unit = grain * state->noise * state->noise;
    MouthFactor factor;
    state->evidence = impossible;
    if (!factor.of(m_matrix, 0, 0))
        return;
    state->evidence = state->cost / unit + factor.logDeterminant() - mouthParameters * std::log(unit);
    state->centerSpread = std::sqrt(unit * (factor.inverseAt(X) + factor.inverseAt(Y)));
}

void MouthProblem::scan(State* state)
{
    const double unit = grain * state->noise * state->noise;
    accumulate(state->p, state->noise, true);
    MouthFactor factor;
    state->evidence = impossible;
    if (!factor.of(m_matrix, mouthShapes, 0))
        return;
    const MouthVector change = factor.solve(m_right);
    state->cost = m_cost;
    for (int i = mouthShapes; i < mouthParameters; ++i) {
        state->p[i] += change[i];
        state->cost -= change[i] * m_right[i];
    }
    state->evidence = state->cost / unit + factor.logDeterminant() - (mouthParameters - mouthShapes) * std::log(unit);
}

void MouthProblem::improve(State* state, int steps)
{
    double damping = 1e-3;
    accumulate(state->p, state->noise);
    state->cost = m_cost;
    for (int i = 0; i < steps && damping < 1e3; ++i) {
        const Matrix matrix = m_matrix;
        const MouthVector right = m_right;
        MouthVector next = state->p;
        if (!step(damping, &next))
            break;
        accumulate(next, state->noise);
        const double gain = state->cost - m_cost;
        if (gain > 0) {
            state->p = next;
            state->cost = m_cost;
            damping /= 5;
            if (gain < enough * state->noise * state->noise)
                break;
        } else {
            m_matrix = matrix;
            m_right = right;
            damping *= 8;
        }
    }
    weigh(state);
}

void MouthProblem::measureNoise(State* state)
{
    evaluate(state->p);
    std::vector<float> errors;
    errors.reserve(m_patch.counting.size());
    Row d{};
    for (const int index : m_patch.counting) {
        whitened(index, &d);
        errors.push_back(std::abs(d[error]));
    }
    if (errors.empty())
        return;
    state->noise = std::max(m_expected.leastNoise, sigmaOf(errors));
}

double MouthProblem::misfit(const MouthVector& p, double noise)
{
    accumulate(p, noise);
    return m_dataCost / (noise * noise);
}

double MouthProblem::correlation(const MouthVector& p)
{
    evaluate(p);
    double total = 0;
    for (const int index : m_patch.counting)
        total += std::abs(static_cast<double>(m_rows[index][error]));
    // A few large errors of a stain or a letter must not speak for the grain.
    const double most = 3 * total / std::max<double>(1, static_cast<double>(m_patch.counting.size()));
    const auto at = [&](int index) { return std::clamp(static_cast<double>(m_rows[index][error]), -most, most); };
    double squares = 0;
    double products = 0;
    for (const int index : m_patch.counting) {
        squares += 2 * at(index) * at(index);
        products += at(index) * (at(index + 1) + at(index + m_patch.width));
    }
    return squares > 0 ? products / squares : 0;
}

} // namespace finder
