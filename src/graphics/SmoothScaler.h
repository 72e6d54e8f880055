#pragma once

#include <QImage>
#include <QTransform>
#include <QVector>

#include <cstdint>

/// Draws an 8-bit gray or a 32-bit colour image smaller, faster than the general painter, which would convert a gray
/// one first. Bilinear; every pixel of the result depends on its place alone, so neighbouring pieces meet without a
/// seam. Any number of threads may render with one scaler.
class SmoothScaler
{
public:
    /// \param image Grayscale8 or RGB32
    /// \param toDevice a positive scale and a shift, from image to device pixels
    /// \param target what can be rendered, device pixels; beyond the image its last row or column goes on
    SmoothScaler(const QImage& image, const QTransform& toDevice, const QRect& target);

    /// Fills `band` (RGB32, as wide as the target) with rows of the target, from the row `top` on.
    void render(QImage& band, int top) const;

private:
    /// Where a row or column of the target lies between two of the source: `index` and `next`, by `weight` / 256.
    struct Sample
    {
        int index;
        int next;
        int weight;
    };

    static Sample sampleAt(double position, int length);
    void blendRow(const Sample& row, std::uint16_t* blended) const;
    void sampleGray(const std::uint16_t* blended, QRgb* line) const;
    void sampleColor(const std::uint16_t* blended, QRgb* line) const;

    QImage m_image;
    int m_channels; ///< bytes a pixel
    double m_scale; ///< vertical
    double m_shift; ///< of the target's first row
    QVector<Sample> m_columns;
};
