#include "dialogs/calibration/ksImageCaliUI.h"

#include "dialogs/calibration/TwoPointPanel.h"

ksImageCaliUI::ksImageCaliUI(QWidget* parent)
    : CalibrationDialog(parent)
{
    setPanels(new TwoPointPanel(1, this), new TwoPointPanel(2, this));
}
