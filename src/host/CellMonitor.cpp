#include "host/CellMonitor.h"

#include "panels/AlarmStrip.h"
#include "panels/StationPanels.h"
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

void CellMonitor::countOn(const QString& folder)
{
    const QString file = folder + QStringLiteral("/dayCounts.json");
    m_file = std::make_unique<DayCountsFile>(m_counts, file);
    m_earlier = std::make_unique<EarlierCounts>(folder + QStringLiteral("/Pellix.db"), file);
    connect(m_earlier.get(), &EarlierCounts::counted, &m_counts, &DayCounts::addEarlier);
    connect(m_earlier.get(), &EarlierCounts::finished, m_file.get(), &DayCountsFile::begin);
    m_earlier->start();
}

void CellMonitor::showStarting(bool starting)
{
    m_book.set(starting, Alarm::Starting, {}, {});
}

void CellMonitor::tick()
{
    m_counts.checkDay();
    m_watch.check();
    if (m_file)
        m_file->tick();
}
