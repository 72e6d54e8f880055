#pragma once

#include "MouthExpectation.h"

#include <optional>
#include <vector>

namespace finder {

/// A square of pixels of which some count; the neighbours of each that counts are in the square too.
struct MouthPatch
{
    int width = 0;
    std::vector<MouthPixel> pixels;
    std::vector<int> counting; ///< indices into pixels
};

/// Evaluates the model for some pixels of a patch: `use` gets each block, the indices of its pixels and their number.
template <typename Use>
void forEachBlock(const MouthVector& p, const MouthPatch& patch, const std::vector<int>& indices, const Use& use)
{
    const MouthModel model(p);
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

/// The damped least-squares problem of fitting the model to one patch. Errors beyond 2.5 times the noise count less
/// (Huber). Surfaces have a grain that spans several pixels, which plain least squares would take for edges; so each
/// pixel is compared after a part of its neighbours' mean was taken off, in image and model alike ("whitening").
class MouthProblem
{
public:
    struct State
    {
        MouthVector p{};
        double noise = 8; ///< standard deviation of what the model leaves after whitening, gray levels
        double cost = 0;  ///< of data and expectations, in squared gray levels
    };

    /// `patch` outlives the problem. `whitening` from 0 (none) to below 1.
    MouthProblem(const MouthPatch& patch, const MouthExpectation& expected, double whitening);

    void setWhitening(double whitening) { m_whitening = static_cast<float>(whitening); }

    /// Improves the parameters from `first` on, `steps` times at most.
    void improve(State* state, int first, int steps);

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
    void accumulate(const MouthVector& p, double noise);
    void addExpectations(const MouthVector& p, double noise);
    void addMajor(const MouthVector& p, double weight);
    void addAlong(const MouthVector& p, double weight);
    bool step(int first, double damping, MouthVector* p) const;

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
