#include "HoleCandidates.h"

#include <algorithm>

namespace finder {

namespace {

constexpr int stride = 4;         // places of the map that share an answer of the network
constexpr double hopeless = -6;   // evidence below which no place is worth a second look
constexpr double mostSize = 0.35; // logarithm of how much larger or smaller a hole may be than looked for
constexpr double flat = 0.15;     // spread of gray values' roots that counts as none; as in training

enum Answer { Evidence, Column, Row, Size }; // the network's planes

/// The network's answers, plane by plane.
class Answers
{
public:
    explicit Answers(const cv::Mat& blob)
        : m_blob(blob)
        , rows(blob.size[2])
        , columns(blob.size[3])
    {
    }

    float at(Answer plane, int row, int column) const { return m_blob.ptr<float>(0, plane)[row * columns + column]; }

private:
    cv::Mat m_blob;

public:
    const int rows;
    const int columns;
};

struct Cell
{
    float evidence;
    int row;
    int column;
};

double middleOfCell(int cell)
{
    return cell * stride + 0.5 * (stride - 1);
}

/// Cells above all others near by, best first.
std::vector<Cell> peaks(const Answers& answers)
{
    std::vector<Cell> cells;
    for (int y = 0; y < answers.rows; ++y) {
        for (int x = 0; x < answers.columns; ++x) {
            const float evidence = answers.at(Evidence, y, x);
            if (evidence > hopeless)
                cells.push_back({evidence, y, x});
        }
    }
    std::stable_sort(cells.begin(), cells.end(), [](const Cell& a, const Cell& b) { return a.evidence > b.evidence; });
    return cells;
}

} // namespace

/// Roots of gray values against their spread, as in training.
cv::Mat HoleCandidates::look(const cv::Mat& map)
{
    cv::Scalar mean, spread;
    cv::meanStdDev(map, mean, spread);
    const double scale = 1 / (spread[0] / 16 + flat);
    const std::array<int, 4> shape{1, 1, map.rows, map.cols};
    m_input.create(static_cast<int>(shape.size()), shape.data(), CV_32F);
    cv::Mat plane(map.rows, map.cols, CV_32F, m_input.data);
    map.convertTo(plane, CV_32F, scale / 16, -scale * mean[0] / 16);
    return m_network.run(m_input);
}

void HoleCandidates::find(const RingMap& ring, const Range& radii, double radius, int most,
                          std::vector<HoleCandidate>* found)
{
    const Answers answers(look(ring.map()));
    std::vector<cv::Point2d> taken;
    for (const Cell& cell : peaks(answers)) {
        const double column = middleOfCell(cell.column);
        const double row = middleOfCell(cell.row);
        const auto isTaken = [&](const cv::Point2d& place) {
            return cv::norm(place - cv::Point2d(column, row)) < 1.2 * mapRadius;
        };
        if (std::any_of(taken.begin(), taken.end(), isTaken))
            continue;
        const auto answered = [&](Answer plane) {
            return static_cast<double>(answers.at(plane, cell.row, cell.column));
        };
        const cv::Point2d place(column + mapRadius * answered(Column), row + mapRadius * answered(Row));
        const double reach = ring.radiusOfColumn(place.x);
        const double turned = place.y - ring.padding();
        taken.push_back(place);
        // The repeated rows at both ends only lend their surroundings.
        if (turned < -0.5 || turned >= ring.turn() - 0.5 || !radii.contains(reach))
            continue;
        found->push_back({ring.toImage(place), radius * std::exp(std::clamp(answered(Size), -mostSize, mostSize)),
                          answered(Evidence)});
        if (--most == 0)
            return;
    }
}

std::vector<HoleCandidate> distinct(std::vector<HoleCandidate> candidates, int most)
{
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const HoleCandidate& a, const HoleCandidate& b) { return a.evidence > b.evidence; });
    std::vector<HoleCandidate> kept;
    for (const HoleCandidate& candidate : candidates) {
        const bool known = std::any_of(kept.begin(), kept.end(), [&](const HoleCandidate& other) {
            return cv::norm(candidate.point - other.point) <= std::min(candidate.radius, other.radius);
        });
        if (!known && static_cast<int>(kept.size()) < most)
            kept.push_back(candidate);
    }
    return kept;
}

} // namespace finder
