#include "Fan.h"

#include <algorithm>

namespace finder {

Fan::Fan(const cv::Mat& gray, const cv::Point2d& center, double reach, double step)
{
    std::array<Ray, rays> plain;
    const int count = cvCeil(reach / step) + 1;
    for (int i = 0; i < rays; ++i)
        m_whole = sampleRay(gray, center, 2 * CV_PI * i / rays, 0, step, count, &plain[i]) && m_whole;
    for (int i = 0; m_whole && i < rays; ++i) {
        const Ray& before = plain[(i + rays - 1) % rays];
        const Ray& after = plain[(i + 1) % rays];
        m_rays[i] = plain[i];
        for (size_t k = 0; k < m_rays[i].values.size(); ++k)
            m_rays[i].values[k] = 0.5F * plain[i].values[k] + 0.25F * (before.values[k] + after.values[k]);
    }
}

Ray part(const Ray& ray, const Range& radius, int window)
{
    const int count = static_cast<int>(ray.values.size());
    const int first = std::clamp(cvFloor(radius.low / ray.step) - window, 0, count);
    const int last = std::clamp(cvCeil(radius.high / ray.step) + window + 1, first, count);
    return {ray.angle, first * ray.step, ray.step, {ray.values.begin() + first, ray.values.begin() + last}};
}

double meanOf(const Ray& ray, double from, double to)
{
    const int count = static_cast<int>(ray.values.size());
    const int first = std::clamp(cvRound(from / ray.step), 0, count - 1);
    const int last = std::clamp(cvRound(to / ray.step), first, count - 1);
    double sum = 0;
    for (int i = first; i <= last; ++i)
        sum += ray.values[i];
    return sum / (last - first + 1);
}

} // namespace finder
