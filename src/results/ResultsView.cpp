#include "results/ResultsView.h"

#include "results/parts/PartsPage.h"

#include <QEvent>

ResultsView::ResultsView(QWidget* parent)
    : QTabWidget(parent)
    , m_parts(new PartsPage(this))
{
    setDocumentMode(true);
    addTab(m_parts, {});
    retranslate();
}

void ResultsView::setHome(const QString& home)
{
    m_parts->setHome(home);
}

void ResultsView::setShifts(const Shifts& shifts)
{
    m_parts->setShifts(shifts);
}

void ResultsView::retranslate()
{
    setTabText(indexOf(m_parts), tr("工件"));
}

void ResultsView::changeEvent(QEvent* event)
{
    QTabWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
