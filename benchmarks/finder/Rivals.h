#pragma once

#include "ScoreSheet.h"
#include "finder/HoleModel.h"

#include <string>
#include <unordered_map>

/// The common ways of finding a hole, for comparison. Both take the hub from a Hough transform of the reduced picture
/// and look only at the ring that the model names.
class HoughRival
{
public:
    Answer find(const cv::Mat& gray, const finder::HoleModel& model) const;
};

/// Matches a picture of another wheel's hole, turned to each direction of the ring: coarse in a quarter of the
/// resolution, then fine.
class TemplateRival
{
public:
    /// Learns the hole of a wheel design from an image; later images of the design change nothing.
    void teach(const std::string& design, const cv::Mat& gray, const Truth& truth);
    bool taught(const std::string& design) const { return m_holes.count(design) > 0; }
    Answer find(const std::string& design, const cv::Mat& gray, const finder::HoleModel& model) const;

private:
    struct Hole
    {
        cv::Mat picture; ///< square, the hole in its middle
        double radius;
        double angle;
    };

    std::unordered_map<std::string, Hole> m_holes;
};
