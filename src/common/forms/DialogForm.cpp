#include "common/forms/DialogForm.h"

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

namespace {
constexpr int kFingerHeight = 34;
} // namespace

void DialogForm::prepare(QDialog* dialog)
{
    dialog->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    prepareFields(dialog);
}

void DialogForm::prepareFields(QWidget* form)
{
    const auto children = form->findChildren<QWidget*>();
    for (QWidget* child : children) {
        const bool field = qobject_cast<QLineEdit*>(child) || qobject_cast<QComboBox*>(child);
        if (field || qobject_cast<QPushButton*>(child))
            child->setMinimumHeight(kFingerHeight);
    }
}

void DialogForm::addShortcut(QDialog* dialog, const QKeySequence& keys, QAbstractButton* button)
{
    QObject::connect(new QShortcut(keys, dialog), &QShortcut::activated, button, &QAbstractButton::click);
}

void DialogForm::takeDown(QWidget* window)
{
    const auto dialogs = window->findChildren<QDialog*>();
    for (QDialog* dialog : dialogs)
        dialog->hide(); // each may ask its window something when it goes
    window->hide();
}
