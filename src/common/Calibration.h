#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QPointF>

#include <array>
#include <optional>

/// A 2x3 matrix in row order: x' = m[0] x + m[1] y + m[2], y' = m[3] x + m[4] y + m[5].
using AffineMap = std::array<double, 6>;

/// How a station turns image pixels into machine coordinates in millimetres. A two-point calibration is a scale, a
/// four-point calibration an affine map; to either offsets are added, and if so set X and Y are swapped at last: a
/// swapped X carries the Y offset. Double precision, nothing rounded. Any thread.
class Calibration
{
    Q_DECLARE_TR_FUNCTIONS(Calibration)

public:
    /// That of nothing: a scale of 0.
    Calibration() = default;
    /// \param scale millimetres per pixel
    /// \param offset millimetres
    static Calibration twoPoint(double scale, const QPointF& offset = {}, bool swapXY = false);
    static Calibration fourPoint(const AffineMap& map, const QPointF& offset = {}, bool swapXY = false);
    /// The one in force for station 1 or 2, read from the content of "user/globalConfig.json"; what is missing, or no
    /// number, counts as 0.
    static Calibration ofStation(const QJsonObject& globalConfig, int station);

    /// As this one, but not usable: `values` are what its file holds in the place of numbers and switches, by key; null
    /// stands for a key that is missing. Without any the calibration stays as it is.
    Calibration spoiledBy(const QJsonObject& values) const;
    /// Why no place may be answered by this calibration, as a sentence for the operator: a scale that is not positive,
    /// a map that was never made or takes the image to a line, what is no number. Empty when it is usable.
    QString problem() const;

    /// Eight hexadecimal digits that stand for these very values.
    QString version() const;

    QPointF toMachine(const QPointF& pixel) const;
    /// Nothing when there is no way back: a scale of 0, a map that folds the plane to a line, values that are not
    /// finite.
    std::optional<QPointF> toPixel(const QPointF& machine) const;

    /// How many millimetres a step of one pixel along the image's x or y is, wherever it points in the machine.
    double mmPerPixelX() const;
    double mmPerPixelY() const;
    /// The mean over all directions: the side of a square with a pixel's area.
    double mmPerPixel() const;

private:
    /// Of the map, by which it multiplies areas.
    double determinant() const;
    QString mapProblem() const;

    double m_scale = 0;
    std::optional<AffineMap> m_map; ///< in the place of the scale
    QPointF m_offset;
    bool m_swapXY = false;
    QString m_spoiled; ///< the problem that its file makes
};

/// The keys of "user/globalConfig.json" that make a calibration. '#' stands for the station's number; the map's, in the
/// order of AffineMap, lie with the offsets and the swap in the station's object.
namespace CalibrationKeys {
constexpr const char* useFourPoint = "use4pointstand";

constexpr const char* scale = "StationScale_#";
constexpr const char* xOffset = "StationXOffset_#";
constexpr const char* yOffset = "StationYOffset_#";
constexpr const char* swapXY = "station_xytrans_#";

constexpr const char* fourPoint = "station#_4p";
constexpr const char* map[] = {"m11", "m21", "dx", "m12", "m22", "dy"};
constexpr const char* mapXOffset = "xoffset";
constexpr const char* mapYOffset = "yoffset";
constexpr const char* mapSwapXY = "bXYTrans";
} // namespace CalibrationKeys
