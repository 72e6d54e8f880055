#include "dialogs/calibration/ksImageCaliUI4P.h"

#include "dialogs/calibration/FourPointPanel.h"

ksImageCaliUI4P::ksImageCaliUI4P(QWidget* parent)
    : CalibrationDialog(parent)
{
    setPanels(new FourPointPanel(1, this), new FourPointPanel(2, this));
}
