#pragma once

#include "config/StationConfig.h"
#include "guided/vision/CalibrationBoard.h"
#include "guided/vision/LensDistortion.h"
#include "guided/vision/PlaneFit.h"

#include <QCoreApplication>
#include <QImage>

#include <optional>

/// A calibration while it is made: from a picture and what is known of it to what a station would store. A station's
/// four-point calibration is fitted to all points by least squares; a two-point calibration has a scale alone. GUI
/// thread; nothing is stored here.
struct CalibrationDraft
{
    Q_DECLARE_TR_FUNCTIONS(CalibrationDraft)

public:
    enum class Method { Points, Chessboard, Circles };

    bool fourPoint = true; ///< the kind that is in force
    Method method = Method::Points;
    QImage picture;
    QString source;     ///< of the picture, for people
    bool isNew = false; ///< the picture is to take the place of the station's reference

    std::array<QPointF, 4> pixels; ///< of the markers, parts of pixels included
    std::array<QPointF, 4> real;   ///< millimetres
    double length = 0;             ///< two-point calibration: from P1 to P2, millimetres

    CalibrationBoard board;
    QVector<QPointF> found; ///< its points in the picture; empty until it was found
    QPointF boardOrigin;    ///< where its first point lies in the machine, millimetres
    double boardTurn = 0;   ///< from the machine's X to the board's rows, degrees counter-clockwise
    bool yUpwards = false;  ///< the machine's Y points up in the picture

    /// Begins with what a station has stored.
    void begin(const StationConfig& stored, bool useFourPoint);
    /// As many markers as the kind has.
    int markers() const { return fourPoint ? 4 : 2; }

    QVector<PointPair> pairs() const;
    std::optional<AffineMap> map() const;
    std::optional<FitResiduals> residuals() const;
    /// Of a board.
    std::optional<LensDistortion> lens() const;
    /// How far the lens moves the corner of the picture, in millimetres; nothing without a board.
    std::optional<double> lensAtCorner() const;

    /// Why there is no map yet, as a sentence for the operator; and what speaks against the one there is.
    QString markerProblem() const;
    QString problem() const;
    QString doubt() const;

    /// The station with this calibration in the place of its own; offsets and swap stay. The stored points fit the map,
    /// so that the calibration dialogs show and make the same one.
    StationConfig applied(const StationConfig& stored) const;

private:
    QPointF onMachine(const QPointF& ofBoard) const;
    void applyFourPoint(const AffineMap& map, FourPointCalibration* own) const;
    void applyTwoPoint(double scale, TwoPointCalibration* own) const;
    /// The outermost points of the board: first row's ends, then the last one's beginning and end.
    std::array<QPointF, 4> boardCorners() const;
};
