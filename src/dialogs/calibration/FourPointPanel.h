#pragma once

#include "dialogs/calibration/CalibrationPanel.h"

namespace Ui {
class FourPointForm;
}

/// A station's affine map from image pixels to machine coordinates, from pairs of points, with a point to try it on.
/// P1 to P3 make the map exactly; the residual of P4 shows how good they are. Points in image pixels, machine
/// coordinates in millimetres. GUI thread.
class FourPointPanel : public CalibrationPanel
{
    Q_OBJECT

public:
    FourPointPanel(int station, QWidget* parent);
    ~FourPointPanel() override;

protected:
    QVector<Marker> markers() override;
    void fillFields(const StationConfig& config) override;
    void showPoint(const QString& name) override;
    QVector<QLineEdit*> numberFields() const override;
    void store(StationConfig& config) override;
    void showStored(const StationConfig& config) override;
    QStringList doubts(const StationConfig& stored, const StationConfig& wanted) const override;
    Hints hints() override;
    Calibration calibration(const StationConfig& config) const override;
    void draw(PointDrawing& drawing) override;
    void retranslate() override;

private:
    using Fields = std::array<QLineEdit*, 8>; ///< x and y of four points

    Fields pixelFields() const;
    Fields realFields() const;
    std::array<QPointF, 4> realPoints() const;
    /// Whether a marker was dragged, or machine coordinates typed, since the map was made.
    bool isMapChanged(const StationConfig& stored) const;
    /// The map that the fields make, without offsets and swap.
    Calibration mapFromFields() const;
    /// Maps the test point with the map in force.
    void showTestPoint();
    void pointWarnings(const std::array<QPointF, 4>& real, QStringList& warnings);

    std::unique_ptr<Ui::FourPointForm> m_form;
    std::array<QPoint, 4> m_points;
    QPoint m_testPoint;
};
