#pragma once

#include "dialogs/calibration/CalibrationDialog.h"

/// Four-point calibration of both stations: an affine map.
class ksImageCaliUI4P : public CalibrationDialog
{
    Q_OBJECT

public:
    explicit ksImageCaliUI4P(QWidget* parent = nullptr);
};
