#pragma once

#include "common/AuditChange.h"
#include "modules/GuardedModules.h"
#include "workflow/AlarmBook.h"
#include "workflow/AlarmWatch.h"
#include "workflow/CTrigDetector.h"
#include "workflow/CellRecords.h"
#include "workflow/DayCounts.h"
#include "workflow/TriggerRoad.h"
#include "workflow/Watchdog.h"

class CZdCtrl;
class CellForwarding;
class CellLimits;
class DayCountsFile;
class ReportSchedule;
class ksGlobalConfig;
class ksSysConfig;

/// The whole cell without a window: modules, serial line, the road of a trigger, records, stations, test triggers,
/// heartbeat, alarms and day counts, made and connected in the steps of the start-up. Deleting it takes all down: the
/// line first, then the modules, then what kept their results. GUI thread; nothing waits.
class Cell : public QObject
{
    Q_OBJECT

public:
    /// What it stands on besides its modules; all outlive it.
    struct Ground
    {
        QString home; ///< without a separator at its end
        const ksSysConfig& settings;
        ksGlobalConfig& config;
        const CellLimits& limits;
        SystemLog::ksLogDB*
            systemLog; ///< whose faults are alarms, and whose lines are kept as the records; may be null
        Scheduler& scheduler;
    };

    /// The road of a trigger, which answers none before openRoad(); an alarm says so.
    Cell(Ground ground, std::unique_ptr<IModules> modules, QObject* parent = nullptr);
    ~Cell() override;

    // The start-up, in this order; others' steps may come between.

    /// Returns why the program cannot go on; empty when all is well.
    QString loadModules();
    /// Frames go to `receiver` on the GUI thread, whose last word is receive(). Returns false when there is a port that
    /// does not open; the heartbeat beats all the same.
    bool openSerialPort(std::function<void(const SComFrame&)> receiver);
    void prepareImageFolders();
    void openResultDatabase();
    void createAutoTrigger();
    void createController();
    void connectStations();
    void selectRunModels();
    void startStatusTick();
    void enableStations();
    void openRoad();

    IModules& modules() { return m_modules; }
    /// For calls into the log-in module.
    CallWatch& calls() { return m_calls; }
    /// Null when there is no serial module.
    ISerialPort* port() const { return m_port.get(); }
    const PlcLink& link() { return m_road.link(); }
    AlarmBook& alarms() { return m_alarms; }
    const DayCounts& counts() const { return m_counts; }
    /// Null before createController().
    CZdCtrl* controller() const { return m_controller.get(); }
    /// Null before prepareImageFolders().
    const CellRecords* records() const { return m_records.get(); }
    /// Null before openRoad(), and where the program was built without it.
    const CellForwarding* forwarding() const { return m_forwarding.get(); }
    ModelManager* models() const { return m_records ? m_records->models() : nullptr; }

    /// Logs what holds up the GUI thread, and answers for it what is overdue. Called by a thread that watches; any
    /// thread.
    void lookAfterGuiThread();

public slots:
    /// A frame of the PLC.
    void receive(const SComFrame& frame);
    void sendHeartbeat();
    /// A picture for a test, at each station that is enabled; answered to nobody.
    void triggerStations();
    void selectModel(int station, const QString& model);
    /// Who is logged in, for the records; empty for nobody.
    void setUser(const QString& name);
    /// One of TestMode.
    void enterTestMode(int mode);
    void setTestInterval(int ms) { m_testIntervalMs = ms; }
    /// Settings hold new values: the line and the disk cleaners take theirs at once, all others are read each time that
    /// they are needed. `changes` name the keys.
    void applySettings(const AuditChanges& changes);

signals:
    /// The PLC was heard, by a model-index frame.
    void linkAlive();
    void shutdownReceived();
    /// A line for the station's log panel.
    void sgShowLog(int station, const QString& text);
    /// The picture of a result, and one of which there is no result, for the station with that solution.
    void sgShowImg(int station, const QImage& image);
    void sgShowSrcImg(const QString& solution, const QImage& image);
    /// The model of the part whose picture was emitted just now.
    void pictureNamed(int station, const QString& model);
    /// The station's name and its model label as rich text.
    void sgShowModeName(const QString& station, const QString& label);
    /// The index that the PLC gave a station last means no model.
    void modelMissing(int station, int plcIndex);
    /// Repeated triggers of a test began or ended.
    void testRunningChanged(bool running);
    void captureStarted(int station);
    void captureRefused(int station, const StationReading& reading);
    /// What was answered, and how the day stands since.
    void readingChanged(int station, const StationReading& reading);
    void countChanged(int station, const DayCount& count);

private:
    void connectRoad();
    void startReports();
    void raiseAlarms();
    /// The station of the solution that a station of the cell has; null without one.
    class Station* stationObject(int station) const;
    void reopenPort();
    void markRunModels();
    void tick();

    const Ground m_ground;
    // Destroyed from the last to the first: who uses something goes before it.
    CallWatch m_calls;
    GuardedModules m_modules;
    std::unique_ptr<ISerialPort> m_port;
    AlarmBook m_alarms;
    DayCounts m_counts;
    TriggerRoad m_road;
    std::unique_ptr<CellRecords> m_records;
    std::unique_ptr<CZdCtrl> m_controller;
    std::unique_ptr<AutoTrigger> m_autoTrigger;
    AlarmWatch m_watch;
    std::unique_ptr<DayCountsFile> m_countsFile;
    std::unique_ptr<ReportSchedule> m_reports;
    std::unique_ptr<CellForwarding> m_forwarding;
    std::unique_ptr<Scheduler::Timer> m_heartbeat;
    std::unique_ptr<Scheduler::Timer> m_tick;
    Watchdog m_watchdog;
    int m_testIntervalMs = 1000;
    bool m_stationEnabled[2] = {false, false};
};
