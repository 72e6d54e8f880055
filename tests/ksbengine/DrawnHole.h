#pragma once

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

/// A hole whose picture is known in closed form: circles of even gray values, averaged over 6 x 6 places a pixel.
struct DrawnHole
{
    cv::Point2d center{80, 80}; ///< of the mouth
    double radius = 15;
    double ring = 0;        ///< width of chamfer or counterbore
    cv::Point2d ringShift;  ///< of its outer edge against the mouth
    double ringGray = 150;  ///< where the light comes from and where it does not
    double ringShading = 0; ///< how much brighter it is towards +x
    double shadow = 0;      ///< width of a shadow on its -x side, under the outer edge
    cv::Point2d wall;       ///< shift of the far end
    double surface = 150;
    double wallGray = 60;
    double deep = 20;
    double stem = 0; ///< radius of what stands in the hole, a bright disc with a dark dot; 0: nothing
    double blur = 0.8;
    double noise = 0;
    int seed = 1;

    cv::Mat image(int side = 161) const
    {
        constexpr int fineness = 6;
        cv::Mat fine(side * fineness, side * fineness, CV_32FC1);
        for (int y = 0; y < fine.rows; ++y) {
            for (int x = 0; x < fine.cols; ++x) {
                const cv::Point2d place((x + 0.5) / fineness - 0.5, (y + 0.5) / fineness - 0.5);
                fine.at<float>(y, x) = static_cast<float>(grayAt(place - center));
            }
        }
        cv::Mat gray;
        cv::resize(fine, gray, {side, side}, 0, 0, cv::INTER_AREA);
        cv::GaussianBlur(gray, gray, {}, blur);
        cv::Mat grain(gray.size(), CV_32FC1);
        cv::RNG random(static_cast<uint64_t>(seed));
        random.fill(grain, cv::RNG::NORMAL, 0, std::max(noise, 1e-3));
        gray += grain;
        gray.convertTo(gray, CV_8U);
        return gray;
    }

private:
    double grayAt(const cv::Point2d& d) const
    {
        if (cv::norm(d) < radius)
            return insideAt(d);
        if (ring == 0 || cv::norm(d - ringShift) > radius + ring)
            return surface;
        const bool dark = cv::norm(d - ringShift - cv::Point2d(shadow, 0)) > radius + ring;
        return (dark ? 0.4 : 1) * (ringGray + ringShading * d.x / cv::norm(d));
    }

    double insideAt(const cv::Point2d& d) const
    {
        if (cv::norm(d) < stem)
            return cv::norm(d) < 0.3 * stem ? 60 : 170;
        return cv::norm(d - wall) < radius ? deep : wallGray;
    }
};
