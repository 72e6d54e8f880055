#include "common/forms/DialogForm.h"

#include "common/FingerSize.h"
#include "common/forms/InlineMessage.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QHeaderView>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
#include <QTableView>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr int smallestChosenRow = 30; // rows below are read and not touched

/// A field or button of the dialog's own, not the part of one.
bool isTouched(const QWidget* widget)
{
    const QWidget* parent = widget->parentWidget();
    if (qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractSpinBox*>(parent))
        return false;
    const bool isTool = qobject_cast<const QToolButton*>(widget) && !qobject_cast<const QLineEdit*>(parent) &&
                        !qobject_cast<const QTabBar*>(parent);
    return isTool || qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QPushButton*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget);
}

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
        if (isTouched(child))
            child->setMinimumHeight(std::max(child->minimumHeight(), fingerSize));
        auto* table = qobject_cast<QTableView*>(child);
        const int row = table ? table->verticalHeader()->defaultSectionSize() : 0;
        if (row >= smallestChosenRow && row < fingerSize)
            table->verticalHeader()->setDefaultSectionSize(fingerSize);
    }
}

void DialogForm::addShortcut(QDialog* dialog, const QKeySequence& keys, QAbstractButton* button)
{
    QObject::connect(new QShortcut(keys, dialog), &QShortcut::activated, button, &QAbstractButton::click);
}

void DialogForm::hideWindowsOf(QWidget* window)
{
    const auto children = window->findChildren<QWidget*>();
    for (QWidget* child : children) {
        if (child->isWindow())
            child->hide();
    }
}

void DialogForm::takeDown(QWidget* window)
{
    const auto dialogs = window->findChildren<QDialog*>();
    for (QDialog* dialog : dialogs)
        dialog->hide(); // each may ask its window something when it goes
    window->hide();
}

FormDialog::FormDialog(QWidget* parent)
    : QDialog(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
}

void FormDialog::setUpForm(InlineMessage* message, QDialogButtonBox* buttons)
{
    m_message = message;
    m_buttons = buttons;
    connect(buttons, &QDialogButtonBox::accepted, this, &FormDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FormDialog::reject);
    DialogForm::prepare(this);
    retranslate();
    check();
}

void FormDialog::check()
{
    if (m_busy)
        return;
    const QString problem = this->problem();
    showMessage(problem, isBlocked());
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(problem.isEmpty());
}

void FormDialog::finish(const QString& error)
{
    setBusy(false);
    if (error.isEmpty())
        return QDialog::accept();
    check();
    showMessage(error, true);
}

void FormDialog::accept()
{
    if (m_busy || !problem().isEmpty())
        return;
    setBusy(true);
    showMessage(tr("请稍候…"), false);
    submit();
}

void FormDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange && m_buttons) {
        retranslate();
        check();
    }
    QDialog::changeEvent(event);
}

void FormDialog::showMessage(const QString& text, bool isError)
{
    m_message->say(isError ? Tone::Error : Tone::Plain, text);
    layout()->activate();
    resize(width(), std::max(height(), layout()->totalHeightForWidth(width()))); // it grows with what it has to say
}

void FormDialog::setBusy(bool busy)
{
    m_busy = busy;
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!busy);
}
