#pragma once

#include "ScoreSheet.h"
#include "finder/FindResult.h"
#include "render/WheelSpec.h"

#include <string>
#include <vector>

/// Collects the wheels that the finder fared worst with and shows the surroundings of their holes in one picture: holes
/// found where there is none or in a wrong place first, then missed ones, then the least exact.
class MissMontage
{
public:
    void consider(int number, const cv::Mat& image, const wheel::WheelSpec& spec, const Truth& truth,
                  const finder::FindResult& result);

    /// Writes a PNG; false when it cannot be written.
    bool write(const std::string& file) const;

private:
    struct Tile
    {
        double rank; ///< the higher the worse
        cv::Mat picture;
    };

    std::vector<Tile> m_tiles; // worst first
};
