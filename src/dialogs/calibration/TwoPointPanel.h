#pragma once

#include "dialogs/calibration/CalibrationPanel.h"

namespace Ui {
class TwoPointForm;
}

/// A station's scale from two points and their real distance, with offsets: machine = pixel * scale + offset, then X
/// and Y swapped if so set. Points in image pixels, lengths in millimetres. GUI thread.
class TwoPointPanel : public CalibrationPanel
{
    Q_OBJECT

public:
    TwoPointPanel(int station, QWidget* parent);
    ~TwoPointPanel() override;

protected:
    QVector<Marker> markers() override;
    void fillFields(const StationConfig& config) override;
    void showPoint(const QString& name) override;
    void recompute() override;
    void store(StationConfig& config) override;
    Hints hints() override;
    QTransform calibration(const StationConfig& config) const override;
    void draw(PointDrawing& drawing) override;
    void retranslate() override;

private:
    /// Millimetres a pixel, as the fields stand; 1 while the points lie on each other.
    double scaleFromFields() const;

    std::unique_ptr<Ui::TwoPointForm> m_form;
    QPoint m_point1;
    QPoint m_point2;
};
