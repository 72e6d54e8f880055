#include "results/ResultsView.h"

#include "common/FingerSize.h"
#include "common/forms/DialogForm.h"
#include "results/charts/StatisticsPage.h"
#include "results/data/ShiftStore.h"
#include "results/logs/LogPage.h"
#include "results/parts/PartsPage.h"

#include <QCheckBox>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QShortcut>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr int autoRefreshMs = 5000;

} // namespace

ResultsView::ResultsView(QWidget* parent)
    : QTabWidget(parent)
    , m_parts(new PartsPage(this))
    , m_statistics(new StatisticsPage(this))
    , m_logs(new LogPage(this))
    , m_auto(new QCheckBox)
    , m_refresh(new QToolButton)
    , m_next(new QTimer(this))
    , m_shifts(Background::AtEnd::Abandon)
{
    addTab(m_parts, {});
    addTab(m_statistics, {});
    addTab(m_logs, {});
    buildCorner();
    retranslate();
    connectPages();
}

ResultsView::~ResultsView() = default;

void ResultsView::buildCorner()
{
    auto* corner = new QWidget(this);
    auto* row = new QHBoxLayout(corner);
    row->setContentsMargins(0, 2, 6, 2);
    row->addWidget(m_auto);
    row->addWidget(m_refresh);
    setCornerWidget(corner);
    m_next->setInterval(autoRefreshMs);
    connect(m_next, &QTimer::timeout, this, &ResultsView::follow);
    connect(m_auto, &QCheckBox::toggled, this, [this](bool on) {
        if (!on)
            return m_next->stop();
        m_next->start();
        refresh();
    });
    m_refresh->setMinimumHeight(fingerSize);
    connect(m_refresh, &QToolButton::clicked, this, &ResultsView::refresh);
    connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, this, &ResultsView::refresh);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        if (currentWidget() == m_logs)
            m_logs->find();
        else if (currentWidget() == m_parts)
            m_parts->find();
        else
            m_statistics->find();
    });
}

void ResultsView::connectPages()
{
    const auto showParts = [this](const QDateTime& from, const QDateTime& to) {
        m_parts->showTimes(from, to);
        setCurrentWidget(m_parts);
    };
    connect(this, &QTabWidget::currentChanged, this, &ResultsView::readShown);
    connect(m_logs, &LogPage::partsWanted, this, showParts);
    connect(m_statistics, &StatisticsPage::partsWanted, this, showParts);
    connect(m_statistics, &StatisticsPage::partWanted, this, [this](qint64 uid) {
        setCurrentWidget(m_parts);
        m_parts->showPart(uid);
    });
}

void ResultsView::setHome(const QString& home)
{
    m_home = home;
    m_parts->setHome(home);
    m_statistics->setHome(home);
    m_logs->setHome(home);
    refresh();
}

void ResultsView::readShifts()
{
    m_shifts.clear();
    m_shifts.run([home = m_home] { return ShiftStore::load(home); },
                 [this, number = ++m_number](const Shifts& shifts) {
                     if (number == m_number && shifts.toText() != m_shiftTimes)
                         setShifts(shifts);
                 });
}

void ResultsView::setShifts(const Shifts& shifts)
{
    m_shiftTimes = shifts.toText();
    m_parts->setShifts(shifts);
    m_statistics->setShifts(shifts);
    m_stale.insert(m_statistics);
    readShown();
}

void ResultsView::setUser(std::function<QString()> user)
{
    m_parts->setUser(std::move(user));
}

void ResultsView::refresh()
{
    m_stale = {m_parts, m_statistics, m_logs};
    readShifts();
    readShown();
}

void ResultsView::readShown()
{
    if (!isVisible() || m_home.isEmpty() || !m_stale.remove(currentWidget()))
        return;
    if (currentWidget() == m_parts)
        m_parts->refresh();
    else if (currentWidget() == m_statistics)
        m_statistics->refresh();
    else
        m_logs->refresh();
}

void ResultsView::follow()
{
    if (!isVisible())
        return;
    if (currentWidget() != m_parts)
        return refresh();
    m_stale = {m_statistics, m_logs};
    m_parts->follow();
}

void ResultsView::showDay(int station, bool failuresOnly)
{
    m_parts->showDay(station, failuresOnly);
    setCurrentWidget(m_parts);
}

void ResultsView::showPart(int station, qint64 wall)
{
    setCurrentWidget(m_parts); // which may have it read anew first
    m_parts->showPartAt(station, wall);
}

QSize ResultsView::usualSize()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? QSize(1200, 720).boundedTo(screen->availableSize() * 9 / 10) : QSize(1000, 640);
}

void ResultsView::retranslate()
{
    setTabText(indexOf(m_parts), tr("工件"));
    setTabText(indexOf(m_statistics), tr("统计"));
    setTabText(indexOf(m_logs), tr("日志"));
    m_auto->setText(tr("自动刷新"));
    m_refresh->setText(tr("刷新"));
    m_refresh->setToolTip(tr("重新读取（F5）"));
    // A corner as wide as its texts of before would cut the new ones.
    cornerWidget()->adjustSize();
}

void ResultsView::showEvent(QShowEvent* event)
{
    QTabWidget::showEvent(event);
    readShown();
}

void ResultsView::changeEvent(QEvent* event)
{
    QTabWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
