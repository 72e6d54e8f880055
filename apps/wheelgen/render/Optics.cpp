#include "Random.h"
#include "WheelRenderer.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace wheel {

namespace {

/// Brightness that changes across the image and falls off towards its corners.
void applyLight(cv::Mat& image, const LightSpec& light)
{
    const double reach = 0.5 * std::hypot(image.cols, image.rows);
    const double azimuth = light.gradientAzimuth * CV_PI / 180;
    const auto gx = static_cast<float>(light.gradient * std::cos(azimuth) / reach);
    const auto gy = static_cast<float>(-light.gradient * std::sin(azimuth) / reach);
    const auto fall = static_cast<float>(light.vignette / (reach * reach));
    const auto exposure = static_cast<float>(light.exposure);
    for (int y = 0; y < image.rows; ++y) {
        auto* row = image.ptr<float>(y);
        const float dy = static_cast<float>(y) - 0.5f * static_cast<float>(image.rows);
        for (int x = 0; x < image.cols; ++x) {
            const float dx = static_cast<float>(x) - 0.5f * static_cast<float>(image.cols);
            row[x] *= exposure * (1 + gx * dx + gy * dy) * (1 - fall * (dx * dx + dy * dy));
        }
    }
}

/// Beyond the border its pixels go on.
float bilinear(const cv::Mat& image, float x, float y)
{
    x = std::clamp(x, 0.0f, static_cast<float>(image.cols) - 1.001f);
    y = std::clamp(y, 0.0f, static_cast<float>(image.rows) - 1.001f);
    const int ix = static_cast<int>(x), iy = static_cast<int>(y);
    const float fx = x - static_cast<float>(ix), fy = y - static_cast<float>(iy);
    const float *a = image.ptr<float>(iy) + ix, *b = image.ptr<float>(iy + 1) + ix;
    const float top = a[0] + fx * (a[1] - a[0]), bottom = b[0] + fx * (b[1] - b[0]);
    return top + fy * (bottom - top);
}

/// Mean along the arc that each point travels, as many samples as it has pixels.
cv::Mat turnBlur(const cv::Mat& image, cv::Point2d hub, double degrees)
{
    const auto angle = static_cast<float>(degrees * CV_PI / 180);
    cv::Mat result(image.size(), CV_32F);
    for (int y = 0; y < image.rows; ++y) {
        const auto* source = image.ptr<float>(y);
        auto* row = result.ptr<float>(y);
        const float dy = static_cast<float>(y - hub.y);
        for (int x = 0; x < image.cols; ++x) {
            const float dx = static_cast<float>(x - hub.x);
            const float length = angle * std::sqrt(dx * dx + dy * dy);
            if (length < 0.3f || x == 0 || y == 0 || x + 2 >= image.cols || y + 2 >= image.rows) {
                row[x] = source[x];
                continue;
            }
            const int samples = 2 * static_cast<int>(length / 2 + 0.5f) + 1;
            const float step = angle / static_cast<float>(samples);
            float sum = 0;
            for (int i = -(samples / 2); i <= samples / 2; ++i) {
                const float a = step * static_cast<float>(i), c = 1 - 0.5f * a * a;
                sum += bilinear(image, static_cast<float>(hub.x) + dx * c - dy * a,
                                static_cast<float>(hub.y) + dy * c + dx * a);
            }
            row[x] = sum / static_cast<float>(samples);
        }
    }
    return result;
}

/// 65,536 equally likely values of a standard normal variable (Acklam's rational approximation of its quantiles).
std::vector<float> normalQuantiles()
{
    std::vector<float> table(65536);
    for (int i = 0; i < 32768; ++i) {
        const double p = (i + 0.5) / 65536;
        double value = 0;
        if (p < 0.02425) {
            const double q = std::sqrt(-2 * std::log(p));
            value =
                (((((-7.784894002430293e-3 * q - 0.3223964580411365) * q - 2.400758277161838) * q - 2.549732539343734) *
                      q +
                  4.374664141464968) *
                     q +
                 2.938163982698783) /
                ((((7.784695709041462e-3 * q + 0.3224671290700398) * q + 2.445134137142996) * q + 3.754408661907416) *
                     q +
                 1);
        } else {
            const double q = p - 0.5, r = q * q;
            value =
                (((((-39.69683028665376 * r + 220.9460984245205) * r - 275.9285104469687) * r + 138.3577518672690) * r -
                  30.66479806614716) *
                     r +
                 2.506628277459239) *
                q /
                (((((-54.47609879822406 * r + 161.5858368580409) * r - 155.6989798598866) * r + 66.80131188771972) * r -
                  13.28068155288572) *
                     r +
                 1);
        }
        table[static_cast<std::size_t>(i)] = static_cast<float>(value);
        table[static_cast<std::size_t>(65535 - i)] = static_cast<float>(-value);
    }
    return table;
}

/// One random number serves four pixels, 16 bits each: the noise is most of a rendering's time.
cv::Mat digitise(const cv::Mat& image, const OpticsSpec& optics, std::uint64_t seed)
{
    static const std::vector<float> normal = normalQuantiles();
    Random random(seed, 31);
    cv::Mat result(image.size(), CV_8U);
    const auto sigma = static_cast<float>(optics.noise), gain = static_cast<float>(optics.contrast);
    const auto pedestal = static_cast<float>(optics.pedestal) + 0.5f;
    for (int y = 0; y < image.rows; ++y) {
        const auto* source = image.ptr<float>(y);
        auto* row = result.ptr<uchar>(y);
        std::uint64_t bits = 0;
        for (int x = 0; x < image.cols; ++x, bits >>= 16) {
            if (x % 4 == 0)
                bits = random.next();
            const float gray = pedestal + gain * source[x] + sigma * normal[bits & 0xFFFF];
            row[x] = static_cast<uchar>(std::clamp(gray, 0.0f, 255.0f));
        }
    }
    return result;
}

} // namespace

cv::Mat photograph(cv::Mat scene, const WheelSpec& spec)
{
    applyLight(scene, spec.light);
    if (spec.optics.blur > 0.2)
        cv::GaussianBlur(scene, scene, cv::Size(), spec.optics.blur, spec.optics.blur, cv::BORDER_REPLICATE);
    if (spec.optics.motion > 0)
        scene = turnBlur(scene, spec.hub, spec.optics.motion);
    return digitise(scene, spec.optics, spec.seed);
}

} // namespace wheel
