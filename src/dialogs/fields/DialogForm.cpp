#include "dialogs/fields/DialogForm.h"

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>

namespace {
constexpr int kFingerHeight = 34;
} // namespace

void DialogForm::prepare(QDialog* dialog)
{
    dialog->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    const auto children = dialog->findChildren<QWidget*>();
    for (QWidget* child : children) {
        const bool field = qobject_cast<QLineEdit*>(child) || qobject_cast<QComboBox*>(child);
        if (field || qobject_cast<QPushButton*>(child))
            child->setMinimumHeight(kFingerHeight);
    }
}
