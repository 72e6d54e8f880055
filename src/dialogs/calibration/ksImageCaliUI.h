#pragma once

#include "dialogs/calibration/CalibrationDialog.h"

/// Two-point calibration of both stations: scale and offsets.
class ksImageCaliUI : public CalibrationDialog
{
    Q_OBJECT

public:
    explicit ksImageCaliUI(QWidget* parent = nullptr);
};
