#include "results/ResultsView.h"

#include "results/charts/StatisticsPage.h"
#include "results/logs/LogPage.h"
#include "results/parts/PartsPage.h"

#include <QEvent>

ResultsView::ResultsView(QWidget* parent)
    : QTabWidget(parent)
    , m_parts(new PartsPage(this))
    , m_statistics(new StatisticsPage(this))
    , m_logs(new LogPage(this))
{
    setDocumentMode(true);
    addTab(m_parts, {});
    addTab(m_statistics, {});
    addTab(m_logs, {});
    retranslate();
    const auto showParts = [this](const QDateTime& from, const QDateTime& to) {
        setCurrentWidget(m_parts);
        m_parts->showTimes(from, to);
    };
    connect(m_logs, &LogPage::partsWanted, this, showParts);
    connect(m_statistics, &StatisticsPage::partsWanted, this, showParts);
    connect(m_statistics, &StatisticsPage::partWanted, this, [this](qint64 uid) {
        setCurrentWidget(m_parts);
        m_parts->showPart(uid);
    });
}

void ResultsView::setHome(const QString& home)
{
    m_parts->setHome(home);
    m_statistics->setHome(home);
    m_logs->setHome(home);
}

void ResultsView::setShifts(const Shifts& shifts)
{
    m_parts->setShifts(shifts);
    m_statistics->setShifts(shifts);
}

void ResultsView::retranslate()
{
    setTabText(indexOf(m_parts), tr("工件"));
    setTabText(indexOf(m_statistics), tr("统计"));
    setTabText(indexOf(m_logs), tr("日志"));
}

void ResultsView::changeEvent(QEvent* event)
{
    QTabWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
