#include "host/CellMonitor.h"

#include "host/AlarmStrip.h"
#include "host/StationPanels.h"
#include "workflow/EarlierCounts.h"
#include "workflow/ResultHandler.h"
#include "workflow/TriggerDispatch.h"

CellMonitor::CellMonitor(const ksGlobalConfig& config, StationPanels& panels, AlarmStrip& strip)
    : m_panels(panels)
    , m_watch(config, m_book)
{
    strip.setBook(&m_book);
    connect(&m_counts, &DayCounts::changed, this,
            [this](int station) { m_panels.showCount(station, m_counts.of(station)); });
}

CellMonitor::~CellMonitor() = default;

void CellMonitor::follow(const TriggerDispatch& dispatch, const ResultHandler& results)
{
    connect(&dispatch, &TriggerDispatch::captureStarted, &m_panels, &StationPanels::showTrigger);
    connect(&dispatch, &TriggerDispatch::captureRefused, &m_panels, &StationPanels::showRefusal);
    connect(&dispatch, &TriggerDispatch::captureRefused, &m_counts, &DayCounts::onRefused);
    connect(&results, &ResultHandler::readingChanged, &m_panels, &StationPanels::showReading);
    connect(&results, &ResultHandler::readingChanged, &m_counts, &DayCounts::onReading);
}

void CellMonitor::countOn(const QString& database)
{
    m_earlier = std::make_unique<EarlierCounts>(database);
    connect(m_earlier.get(), &EarlierCounts::counted, &m_counts, &DayCounts::addEarlier);
    m_earlier->start();
}

void CellMonitor::tick()
{
    m_counts.checkDay();
    m_watch.check();
}
