#pragma once

#include "MouthExpectation.h"
#include "MouthPatch.h"

#include <optional>
#include <vector>

namespace finder {

/// Evaluates the model for some pixels of a patch: `use` gets each block, the indices of its pixels and their number.
template <typename Use>
void forEachBlock(const MouthVector& p, const MouthPatch& patch, const std::vector<int>& indices, const Use& use)
{
    const MouthModel model(p, patch.bin);
    MouthModel::Block block{};
    for (size_t first = 0; first < indices.size(); first += block.x.size()) {
        const size_t count = std::min(block.x.size(), indices.size() - first);
        for (size_t i = 0; i < count; ++i) {
            const MouthPixel& pixel = patch.pixels[indices[first + i]];
            block.x[i] = pixel.x;
            block.y[i] = pixel.y;
        }
        model.evaluate(&block);
        use(block, &indices[first], count);
    }
}

/// The damped least-squares problem of fitting the model to one patch. Large errors count less, by Geman and McClure's
/// e^2 / (1 + e^2 / c^2) with c at least four times the noise. Surfaces have a grain that spans several pixels, which
/// plain least squares would take for edges; so each pixel is compared after a part of its neighbours' mean was taken
/// off, in image and model alike ("whitening").
class MouthProblem
{
public:
    struct State
    {
        MouthVector p{};
        double noise = 8; ///< standard deviation of what the model leaves after whitening, gray levels
        double cost = 0;  ///< of data and expectations, in squared gray levels
        /// Twice the negative logarithm of the evidence, up to a constant: Laplace's approximation, cost in variances
        /// plus the logarithm of the curvature's determinant. A reading whose parameters must be just so to hide an
        /// edge is less likely than one that needs no such chance.
        double evidence = 0;
        double centerSpread = 0; ///< standard deviation of the mouth's centre
    };

    /// `patch` outlives the problem. `whitening` from 0 (none) to below 1.
    MouthProblem(const MouthPatch& patch, const MouthExpectation& expected, double whitening);

    void setWhitening(double whitening) { m_whitening = static_cast<float>(whitening); }

    /// Sets the gray values to those that fit the state's shape best, by plain least squares.
    void scan(State* state);

    /// Improves all parameters, `steps` times at most.
    void improve(State* state, int steps);

    /// Sets the state's noise from what its parameters leave.
    void measureNoise(State* state);

    /// What the parameters leave of the data, in squared standard deviations of `noise`.
    double misfit(const MouthVector& p, double noise);

    /// How alike the errors of neighbouring pixels are, -1 to 1: high where the surface has a coarse grain.
    double correlation(const MouthVector& p);

private:
    static constexpr int error = MouthModel::gray; // takes the place of the model's gray value
    using Row = std::array<float, MouthModel::rowSize>;
    using Matrix = std::array<Row, MouthModel::rowSize>;

    void evaluate(const MouthVector& p);
    /// Up to four of a block's pixels become rows.
    void takeOver(const MouthModel::Block& block, size_t i, const int* indices, size_t count);
    void whitened(int index, Row* row) const;
    void accumulate(const MouthVector& p, double noise, bool plain = false);
    void addExpectations(const MouthVector& p, double noise);
    void addMajor(const MouthVector& p, double weight);
    void addAlong(const MouthVector& p, double weight);
    void weigh(State* state) const;
    bool step(double damping, MouthVector* p) const;

    const MouthPatch& m_patch;
    MouthExpectation m_expected;
    float m_whitening;
    std::vector<int> m_needed;              // pixels that count, and their neighbours
    std::vector<Row> m_rows;                // derivatives and error of each pixel
    std::optional<MouthVector> m_evaluated; // for which parameters these are
    Matrix m_matrix{};
    MouthVector m_right{};
    double m_dataCost = 0;
    double m_cost = 0;
};

} // namespace finder
