#include "results/ResultsView.h"

#include "results/logs/LogPage.h"
#include "results/parts/PartsPage.h"

#include <QEvent>

ResultsView::ResultsView(QWidget* parent)
    : QTabWidget(parent)
    , m_parts(new PartsPage(this))
    , m_logs(new LogPage(this))
{
    setDocumentMode(true);
    addTab(m_parts, {});
    addTab(m_logs, {});
    retranslate();
    connect(m_logs, &LogPage::partsWanted, this, [this](const QDateTime& from, const QDateTime& to) {
        setCurrentWidget(m_parts);
        m_parts->showTimes(from, to);
    });
}

void ResultsView::setHome(const QString& home)
{
    m_parts->setHome(home);
    m_logs->setHome(home);
}

void ResultsView::setShifts(const Shifts& shifts)
{
    m_parts->setShifts(shifts);
}

void ResultsView::retranslate()
{
    setTabText(indexOf(m_parts), tr("工件"));
    setTabText(indexOf(m_logs), tr("日志"));
}

void ResultsView::changeEvent(QEvent* event)
{
    QTabWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
