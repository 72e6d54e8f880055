#include "results/ResultsDialog.h"

#include "common/forms/DialogForm.h"

#include <QEvent>
#include <QVBoxLayout>

ResultsDialog::ResultsDialog(QWidget* parent)
    : QDialog(parent, Qt::Window)
    , m_view(new ResultsView(this))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_view);
    resize(ResultsView::usualSize());
    setWindowTitle(tr("检测结果"));
}

ResultsDialog::~ResultsDialog()
{
    DialogForm::takeDown(this);
}

void ResultsDialog::open()
{
    if (!isVisible() && !m_view->home().isEmpty())
        m_view->refresh();
    show();
    raise();
    activateWindow();
}

void ResultsDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        setWindowTitle(tr("检测结果"));
}
