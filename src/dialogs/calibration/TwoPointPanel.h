#pragma once

#include "dialogs/calibration/CalibrationPanel.h"

namespace Ui {
class TwoPointForm;
}

/// A station's scale from two points and their real distance, with offsets and swap. Points in image pixels, lengths in
/// millimetres. GUI thread.
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
    QVector<QLineEdit*> numberFields() const override;
    void store(StationConfig& config) override;
    void showStored(const StationConfig& config) override;
    QStringList doubts(const StationConfig& stored, const StationConfig& wanted) const override;
    Hints hints() override;
    Calibration calibration(const StationConfig& config) const override;
    void draw(PointDrawing& drawing) override;
    void retranslate() override;

private:
    /// Millimetres per pixel, as the fields stand.
    double scaleFromFields() const;
    double lengthFromField() const;
    bool isScaleChanged(const StationConfig& stored) const;
    double scaleToApply(const StationConfig& stored) const;

    std::unique_ptr<Ui::TwoPointForm> m_form;
    QPoint m_point1;
    QPoint m_point2;
};
