#pragma once

#include "ScoreSheet.h"
#include "finder/FindResult.h"

#include <QString>

#include <string>
#include <vector>

/// Collects the pictures that the finder fared worst with and shows the surroundings of their holes in one picture:
/// holes found where there is none or in a wrong place first (there beside what was found), then missed ones, then the
/// least exact. `most` are kept.
class MissMontage
{
public:
    explicit MissMontage(size_t most = 20)
        : m_most(most)
    {
    }

    /// `circumstances` is what may have made it hard.
    void consider(const std::string& name, const cv::Mat& image, const std::string& circumstances, const Truth& truth,
                  const finder::FindResult& result);

    /// Writes a PNG; false when it cannot be written.
    bool write(const QString& file) const;

private:
    struct Tile
    {
        double rank; ///< the higher the worse
        cv::Mat picture;
    };

    size_t m_most;
    std::vector<Tile> m_tiles; // worst first
};
