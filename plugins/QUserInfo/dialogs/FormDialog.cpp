#include "dialogs/FormDialog.h"

#include "dialogs/ErrorInk.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QLabel>
#include <QLayout>
#include <QPushButton>

#include <algorithm>

FormDialog::FormDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setAttribute(Qt::WA_DeleteOnClose);
}

void FormDialog::setUpForm(QLabel* message, QDialogButtonBox* buttons)
{
    m_message = message;
    m_buttons = buttons;
    connect(buttons, &QDialogButtonBox::accepted, this, &FormDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &FormDialog::reject);
    const auto all = buttons->buttons();
    for (QAbstractButton* button : all)
        button->setMinimumHeight(36); // as the fields: made for fingers
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
    // Long paths may be broken after a separator; and the dialog grows with what it has to say.
    QString breakable = text;
    m_message->setText(breakable.replace(QLatin1Char('/'), QStringLiteral("/\u200b")));
    m_message->setStyleSheet(isError ? errorInk(*this) + QStringLiteral("font-weight: bold;") : QString());
    layout()->activate();
    resize(width(), std::max(height(), layout()->totalHeightForWidth(width())));
}

void FormDialog::setBusy(bool busy)
{
    m_busy = busy;
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!busy);
}
