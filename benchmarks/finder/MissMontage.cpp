#include "MissMontage.h"

#include <QFile>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int columns = 5;
constexpr int side = 240;
constexpr int captionHeight = 56;

struct Miss
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

Miss missOf(const Truth& truth, const finder::FindResult& result)
{
    const double off = cv::norm(result.hole - truth.center);
    switch (verdictOf(truth, answerOf(result))) {
    case Verdict::Invented:
        return {3e6, "invented", result.hole};
    case Verdict::Wrong:
        return {2e6, "wrong place", truth.center};
    case Verdict::Missed:
        return {1e6 + 1 - result.score, std::string("missed, ") + nameOf(result.error), truth.center};
    case Verdict::Found:
        return {off, format("%.2f px off", off), truth.center};
    case Verdict::RightlyNone:
        break;
    }
    return {0, {}, {}};
}

std::string scoresOf(const finder::FindResult& result)
{
    return format("score %.2f", result.score) + format("  next %.2f", result.runnerUpScore) +
           format("  rim seen %.2f", result.rimCoverage);
}

/// The surroundings of a point, in full contrast.
cv::Mat patchOf(const cv::Mat& image, const cv::Point2d& at, double radius, int size)
{
    const int half = std::max(32, cvCeil(2.5 * radius));
    cv::Mat patch;
    cv::getRectSubPix(image, {2 * half, 2 * half}, cv::Point2f(at), patch);
    cv::normalize(patch, patch, 0, 255, cv::NORM_MINMAX);
    cv::resize(patch, patch, {size, size}, 0, 0, 2 * half > size ? cv::INTER_AREA : cv::INTER_NEAREST);
    return patch;
}

cv::Mat tileOf(const std::vector<cv::Mat>& patches, const std::vector<std::string>& lines)
{
    cv::Mat tile(side + captionHeight, side, CV_8UC1, cv::Scalar(255));
    cv::Point corner(2, 2);
    for (const cv::Mat& patch : patches) {
        patch.copyTo(tile(cv::Rect(corner, patch.size())));
        corner.x += patch.cols + 2;
    }
    for (int i = 0; i < static_cast<int>(lines.size()); ++i)
        cv::putText(tile, lines[static_cast<size_t>(i)], {4, side + 14 + 16 * i}, cv::FONT_HERSHEY_SIMPLEX, 0.38,
                    cv::Scalar(0), 1, cv::LINE_AA);
    return tile;
}

} // namespace

void MissMontage::consider(const std::string& name, const cv::Mat& image, const std::string& circumstances,
                           const Truth& truth, const finder::FindResult& result)
{
    const Miss miss = missOf(truth, result);
    if (miss.rank <= 0 || (m_tiles.size() == m_most && miss.rank <= m_tiles.back().rank))
        return;
    std::vector<cv::Mat> patches;
    if (verdictOf(truth, answerOf(result)) == Verdict::Wrong) {
        constexpr int half = (side - 6) / 2;
        patches = {patchOf(image, truth.center, truth.radius, half), patchOf(image, result.hole, truth.radius, half)};
    } else {
        patches = {patchOf(image, miss.at, truth.hole ? truth.radius : result.holeRadius, side - 4)};
    }
    const auto place =
        std::find_if(m_tiles.begin(), m_tiles.end(), [&](const Tile& tile) { return tile.rank < miss.rank; });
    m_tiles.insert(place, {miss.rank, tileOf(patches, {name + ": " + miss.text, circumstances, scoresOf(result)})});
    if (m_tiles.size() > m_most)
        m_tiles.pop_back();
}

bool MissMontage::write(const QString& file) const
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
    std::vector<uchar> bytes;
    QFile png(file);
    return cv::imencode(".png", coarse, bytes) && png.open(QIODevice::WriteOnly) &&
           png.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size())) ==
               static_cast<qint64>(bytes.size());
}
