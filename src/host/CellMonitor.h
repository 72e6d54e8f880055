#pragma once

#include "workflow/AlarmBook.h"
#include "workflow/AlarmWatch.h"
#include "workflow/DayCounts.h"
#include "workflow/DayCountsFile.h"

#include <memory>

class AlarmStrip;
class EarlierCounts;
class ResultHandler;
class StationPanels;
class TriggerDispatch;

/// Shows how the cell does: each station's last reading and day, and the alarms. GUI thread.
class CellMonitor : public QObject
{
    Q_OBJECT

public:
    /// All outlive the monitor.
    CellMonitor(const ksGlobalConfig& config, StationPanels& panels, AlarmStrip& strip);
    ~CellMonitor() override;

    /// Shows and counts what comes of the triggers. Both outlive the monitor.
    void follow(const TriggerDispatch& dispatch, const ResultHandler& results);
    /// Counts on from what the records of this folder have of the present day, and keeps the counts there.
    void countOn(const QString& folder);

    /// Whether the cell is on its way up and answers no trigger.
    void showStarting(bool starting);

    AlarmWatch& alarms() { return m_watch; }

    /// To be called once a second.
    void tick();

private:
    StationPanels& m_panels;
    DayCounts m_counts;
    AlarmBook m_book;
    AlarmWatch m_watch;
    std::unique_ptr<DayCountsFile> m_file;
    std::unique_ptr<EarlierCounts> m_earlier;
};
