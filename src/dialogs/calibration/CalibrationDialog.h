#pragma once

#include "common/AuditChange.h"

#include <QDialog>

#include <array>
#include <functional>
#include <memory>

class CalibrationPanel;
struct AwesomeRoiInfo;

namespace Ui {
class CalibrationDialog;
}

/// A calibration dialog with a panel for each station; what the two kinds of calibration share. Each showing begins
/// with what is stored. Buttons are known by their object names, stations by the sender. GUI thread.
class CalibrationDialog : public QDialog
{
    Q_OBJECT

public:
    ~CalibrationDialog() override;

    /// The form for a cell with one station hides the second panel.
    void setOneStation(bool one);

    /// Returns who is logged in, for the calibrations that are kept.
    void setUser(const std::function<QString()>& user);

signals:
    /// A station's calibration holds other values; names are keys of the configuration.
    void calibrationApplied(const AuditChanges& changes);
    /// The guide through a calibration is to be opened.
    void guideWanted();

public slots:
    /// Shows what is stored now, whatever was left in the fields.
    void refresh();
    void onROIChange(const AwesomeRoiInfo& info, const QString& name);
    void onRoiLockIng(const QString& name);
    void onImageScale(qreal scale);
    void onButtonClicked();

protected:
    explicit CalibrationDialog(QWidget* parent);

    /// Takes the panels of stations 1 and 2, connects and fills them.
    void setPanels(CalibrationPanel* first, CalibrationPanel* second);

    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    int stationOfSender() const;
    CalibrationPanel* panelOfSender() const { return m_panels[stationOfSender() - 1]; }
    void startMessageTimer(bool failure);

    std::unique_ptr<Ui::CalibrationDialog> m_ui;
    std::array<CalibrationPanel*, 2> m_panels{};
    QString m_ownTitle;
    int m_messageTimer = 0; ///< one for both panels; 0 while none runs
};

/// Two-point calibration of both stations: scale and offsets.
class ksImageCaliUI : public CalibrationDialog
{
    Q_OBJECT

public:
    explicit ksImageCaliUI(QWidget* parent = nullptr);
};

/// Four-point calibration of both stations: an affine map.
class ksImageCaliUI4P : public CalibrationDialog
{
    Q_OBJECT

public:
    explicit ksImageCaliUI4P(QWidget* parent = nullptr);
};
