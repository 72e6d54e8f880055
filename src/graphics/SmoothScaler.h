#pragma once

#include "graphics/WideSampler.h"

#include <QImage>
#include <QTransform>

#include <cstdint>
#include <optional>
#include <vector>

/// Draws an 8-bit gray or a 32-bit colour image smaller, faster than the general painter. Bilinear; every pixel of the
/// result depends on its place alone, so neighbouring pieces meet without a seam. Any number of threads may render
/// with one scaler.
class SmoothScaler
{
public:
    /// Whether to use what not every processor can; the result is the same.
    enum Code { Fastest, Portable };

    /// \param image Grayscale8 or RGB32
    /// \param toDevice a positive scale and a shift, from image to device pixels
    /// \param target what is to be rendered, device pixels; beyond the image its last row or column goes on
    SmoothScaler(const QImage& image, const QTransform& toDevice, const QRect& target, Code code = Fastest);

    /// Fills `band` (RGB32, as wide as the target) with rows of the target, from the row `top` on.
    void render(QImage& band, int top) const;

private:
    static Sample sampleAt(double position, int length);
    /// For a row of the result, the target's first being 0.
    RowPair rowsFor(int row) const;
    /// \param blended room for a row of the source
    void renderGray(const RowPair& rows, std::uint16_t* blended, QRgb* line) const;
    void renderColors(const RowPair& rows, const RowPair& next, QRgb* line) const;

    QImage m_image;
    QSize m_size;   ///< of the target
    double m_scale; ///< vertical
    double m_shift; ///< of the target's first row
    std::vector<Sample> m_columns;
    std::optional<WideSampler> m_wide;
};
