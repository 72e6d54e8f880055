#include "MissMontage.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdio>

namespace {

constexpr size_t mostTiles = 20;
constexpr int columns = 5;
constexpr int half = 32; // pixels of the image around the hole
constexpr int side = 240;
constexpr int captionHeight = 40;

struct Verdict
{
    double rank;
    std::string text;
    cv::Point2d at;
};

std::string format(const char* form, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, form, value);
    return text;
}

Verdict verdictOf(const Truth& truth, const finder::FindResult& result)
{
    if (result.found() && !truth.hole)
        return {3e6, "invented", result.hole};
    if (!truth.hole)
        return {0, {}, {}};
    if (!result.found())
        return {1e6 + 1 - result.score, "missed, error " + std::to_string(static_cast<int>(result.error)),
                truth.center};
    const double off = cv::norm(result.hole - truth.center);
    if (off > wrongPlace * truth.radius)
        return {2e6, "wrong place", truth.center};
    return {off, format("%.2f px off", off), truth.center};
}

std::string circumstances(const wheel::WheelSpec& spec)
{
    const bool valve = spec.hole.valve != wheel::Valve::None;
    return format("r %.1f", spec.hole.radius) + format("  noise %.0f", spec.optics.noise) +
           format("  blur %.1f", spec.optics.blur) + (valve ? "  valve" : "");
}

cv::Mat tileOf(const cv::Mat& image, const cv::Point2d& at, const std::string& first, const std::string& second)
{
    cv::Mat patch;
    cv::getRectSubPix(image, {2 * half, 2 * half}, cv::Point2f(at), patch);
    cv::normalize(patch, patch, 0, 255, cv::NORM_MINMAX);
    cv::Mat tile(side + captionHeight, side, CV_8UC1, cv::Scalar(255));
    cv::resize(patch, tile(cv::Rect(2, 2, side - 4, side - 4)), {side - 4, side - 4}, 0, 0, cv::INTER_NEAREST);
    const auto write = [&](const std::string& text, int line) {
        cv::putText(tile, text, {4, side + 14 + 18 * line}, cv::FONT_HERSHEY_SIMPLEX, 0.42, cv::Scalar(0), 1,
                    cv::LINE_AA);
    };
    write(first, 0);
    write(second, 1);
    return tile;
}

} // namespace

void MissMontage::consider(int number, const cv::Mat& image, const wheel::WheelSpec& spec, const Truth& truth,
                           const finder::FindResult& result)
{
    const Verdict verdict = verdictOf(truth, result);
    if (verdict.rank <= 0 || (m_tiles.size() == mostTiles && verdict.rank <= m_tiles.back().rank))
        return;
    const std::string first = std::to_string(number) + ": " + verdict.text;
    const auto place =
        std::find_if(m_tiles.begin(), m_tiles.end(), [&](const Tile& tile) { return tile.rank < verdict.rank; });
    m_tiles.insert(place, {verdict.rank, tileOf(image, verdict.at, first, circumstances(spec))});
    if (m_tiles.size() > mostTiles)
        m_tiles.pop_back();
}

bool MissMontage::write(const std::string& file) const
{
    const int rows = (static_cast<int>(m_tiles.size()) + columns - 1) / columns;
    cv::Mat sheet(std::max(1, rows) * (side + captionHeight), columns * side, CV_8UC1, cv::Scalar(255));
    for (int i = 0; i < static_cast<int>(m_tiles.size()); ++i) {
        const cv::Point corner(i % columns * side, i / columns * (side + captionHeight));
        const cv::Mat& picture = m_tiles[static_cast<size_t>(i)].picture;
        picture.copyTo(sheet(cv::Rect(corner, picture.size())));
    }
    // Sixteen gray levels are enough to see, and keep the file small.
    const cv::Mat coarse = (sheet & cv::Scalar(240)) * (255.0 / 240);
    return cv::imwrite(file, coarse);
}
