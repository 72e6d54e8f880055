#pragma once

#include <QDialog>

/// Shows a dialog of the main window, or brings the one that is open to the front.
inline void showDialog(QDialog* dialog)
{
    if (!dialog->isVisible())
        dialog->setWindowFlags(Qt::Dialog | Qt::WindowCloseButtonHint);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}
