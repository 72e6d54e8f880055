#include "workflow/Cell.h"

#include "config/CellLimits.h"
#include "config/ForwardConfig.h"
#include "config/ShiftConfig.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "db/log/LogLine.h"
#include "results/export/ReportSchedule.h"
#include "workflow/CZdCtrl.h"
#include "workflow/CellForwarding.h"
#include "workflow/DayCountsFile.h"
#include "workflow/ModelManager.h"

#include <valvecell/Extension.h>
#include <valvecell/ISerialReopen.h>
#include <valvecell/ISerialUrgent.h>

namespace {

constexpr int heartbeatMs = 300;
constexpr int tickMs = 1000;

} // namespace

Cell::Cell(Ground ground, std::unique_ptr<IModules> modules, QObject* parent)
    : QObject(parent)
    , m_ground(std::move(ground))
    , m_calls(m_ground.scheduler, [&limits = m_ground.limits] { return limits.moduleCallLimitMs; })
    , m_modules(std::move(modules), m_calls)
    , m_alarms(m_ground.scheduler)
    , m_counts(m_ground.scheduler)
    , m_road(m_ground.config, m_ground.scheduler, [&limits = m_ground.limits] { return limits.answerDeadlineMs; })
    , m_watch(m_ground.config, m_ground.settings, m_alarms)
    , m_heartbeat(m_ground.scheduler.timer(Scheduler::Repeating, [this] { sendHeartbeat(); }))
    , m_tick(m_ground.scheduler.timer(Scheduler::Repeating, [this] { tick(); }))
    , m_watchdog(m_ground.scheduler, [this] { lookAfterGuiThread(); })
{
    m_watch.setLog(m_ground.systemLog);
    m_watch.checkFiles(m_ground.home, m_ground.scheduler);
    connectRoad();
    raiseAlarms();
    m_road.link().hold();
    m_alarms.raise(Alarm::Starting, {}, {});
    for (const auto& [file, problem] : {std::pair("systemConfig.ini", m_ground.settings.loadProblem),
                                        std::pair("globalConfig.json", m_ground.config.loadProblem)}) {
        if (!problem.isEmpty())
            m_alarms.raise(Alarm::ConfigDamaged, QLatin1String(file), problem.section(QLatin1Char('\n'), 0, 0));
    }
}

Cell::~Cell()
{
    m_heartbeat.reset();
    m_road.standIn().setPort(nullptr);
    if (m_port)
        m_port->close();
    m_port.reset();
    m_modules.stop();
}

void Cell::connectRoad()
{
    const PlcLink& link = m_road.link();
    connect(&link, &PlcLink::modelIndexReceived, this, &Cell::linkAlive);
    connect(&link, &PlcLink::shutdownReceived, this, &Cell::shutdownReceived);
    connect(&link, &PlcLink::frameSeen, &m_watch, [this](const SComFrame&, bool received) {
        if (received)
            m_watch.heard();
    });

    const TriggerDispatch& dispatch = m_road.dispatch();
    connect(&dispatch, &TriggerDispatch::sgShowLog, this, &Cell::sgShowLog);
    connect(&dispatch, &TriggerDispatch::sgSystemLog, &SystemLog::information);
    connect(&dispatch, &TriggerDispatch::sgSelModel, this, &Cell::selectModel);
    connect(&dispatch, &TriggerDispatch::modelMissing, this, &Cell::modelMissing);
    connect(&m_road.inHand(), &TriggersInHand::captureStarted, this,
            [this](const Trigger& trigger) { emit captureStarted(trigger.station); });

    const ResultHandler& results = m_road.results();
    connect(&results, &ResultHandler::sgShowLog, this, &Cell::sgShowLog);
    connect(&results, &ResultHandler::sgShowImg, this, &Cell::sgShowImg);
    connect(&results, &ResultHandler::sgShowSrcImg, this, &Cell::sgShowSrcImg);
    connect(&results, &ResultHandler::pictureNamed, this, &Cell::pictureNamed);
    connect(&results, &ResultHandler::readingChanged, this, &Cell::readingChanged);
    connect(&results, &ResultHandler::readingChanged, &m_counts, &DayCounts::onReading);
    connect(&results, &ResultHandler::refused, this, &Cell::captureRefused);
    connect(&results, &ResultHandler::refused, &m_counts, &DayCounts::onRefused);
    connect(&m_counts, &DayCounts::changed, this,
            [this](int station) { emit countChanged(station, m_counts.of(station)); });
}

/// What keeps a station's parts from being answered lasts until one is.
void Cell::raiseAlarms()
{
    const auto station = [](const Trigger& trigger) { return QString::number(trigger.station); };
    connect(&m_road.inHand(), &TriggersInHand::failed, this,
            [this, station](const Trigger& trigger, Failure failure, const QString& reason) {
                const bool noResult = failure == Failure::NoResult;
                m_alarms.raise(noResult ? Alarm::NoResult : Alarm::NoImage, station(trigger), reason);
            });
    connect(&m_road.inHand(), &TriggersInHand::imageArrived, this,
            [this, station](const Trigger& trigger) { m_alarms.clear(Alarm::NoImage, station(trigger)); });
    connect(&m_road.inHand(), &TriggersInHand::finished, this,
            [this, station](const Trigger& trigger) { m_alarms.clear(Alarm::NoResult, station(trigger)); });
    connect(&m_road.results(), &ResultHandler::calibrationJudged, this, [this](int number, const QString& problem) {
        m_alarms.set(!problem.isEmpty(), Alarm::CalibrationUnusable, QString::number(number), problem);
    });
    connect(&m_calls, &CallWatch::broken, this,
            [this](const QString& call, const QString& problem) { m_alarms.raise(Alarm::ModuleFault, call, problem); });
    connect(&m_alarms, &AlarmBook::acknowledged, this, [this](const Alarm& alarm) {
        if (alarm.kind == Alarm::ClockJumped)
            m_records->acceptClock();
    });
}

QString Cell::loadModules()
{
    const QString fatal = m_modules.start({m_road.imageCallback(), m_road.cameraCallback(), m_road.captureCallback()});
    if (!fatal.isEmpty())
        return fatal;
    m_road.setModules(m_modules.coreCtrl(), m_modules.engine(), m_modules.designer());
    m_watch.setCameras(m_modules.coreCtrl());
    return {};
}

bool Cell::openSerialPort(std::function<void(const SComFrame&)> receiver)
{
    m_port.reset(m_modules.createSerialPort());
    if (!m_port)
        return true;
    const auto handOver = [this, receiver = std::move(receiver)](const SComFrame& frame, quint64 session, qint64 ns) {
        m_road.link().setIncoming(session, ns);
        receiver(frame);
    };
    connect(m_road.relay(), &ModuleRelay::frameReceived, this, handOver, Qt::QueuedConnection);
    m_port->setReceiveCallback(this, m_road.frameCallback(m_port.get()));
    m_road.link().setPort(m_port.get());
    m_road.standIn().setPort(extensionOf<ISerialUrgent>(m_port.get()));
    m_watch.setPort(m_port.get());
    const bool open = m_port->open(m_ground.settings.comPort, QString::number(m_ground.settings.baudRate));
    m_heartbeat->start(heartbeatMs);
    return open;
}

void Cell::prepareImageFolders()
{
    m_records = std::make_unique<CellRecords>(m_ground.home, m_ground.settings, m_ground.scheduler);
    m_records->prepareImageFolders();
}

void Cell::openResultDatabase()
{
    m_records->setLog(m_ground.systemLog);
    m_records->openResultDatabase();
    m_road.results().setStore(m_records->store());
    m_watch.setRecords(m_records.get());
    const QString folder = m_ground.home + QStringLiteral("/DBFiles");
    const DayCountsFile::Places places{folder + QStringLiteral("/Pellix.db"),
                                       folder + QStringLiteral("/dayCounts.json")};
    m_countsFile = std::make_unique<DayCountsFile>(m_counts, places, m_ground.scheduler);
    const auto count = [this, start = m_ground.scheduler.now()] {
        if (m_records->hasEarlierRows())
            m_countsFile->start(start);
    };
    connect(m_records.get(), &CellRecords::retried, m_countsFile.get(), count);
    count();
    startReports();
}

void Cell::startReports()
{
    m_reports = std::make_unique<ReportSchedule>(m_ground.home, m_ground.scheduler);
    connect(m_reports.get(), &ReportSchedule::alarmChanged, this,
            [this](const QString& text) { m_alarms.set(!text.isEmpty(), Alarm::ReportUnwritten, {}, text); });
    m_reports->start();
}

void Cell::createAutoTrigger()
{
    m_autoTrigger = std::make_unique<AutoTrigger>(m_ground.scheduler);
    connect(m_autoTrigger.get(), &AutoTrigger::sgTrig, this, &Cell::triggerStations);
}

void Cell::createController()
{
    const ksSysConfig& settings = m_ground.settings;
    m_controller =
        std::make_unique<CZdCtrl>(m_modules.engine(), m_ground.home,
                                  CZdCtrl::Accounting{m_ground.scheduler, [&settings] { return settings.filterTime; }});
    m_controller->initialise();
    m_road.dispatch().setController(m_controller.get());
    m_records->openModelLibrary(m_controller->plcIndices(), m_controller->stationNames());
    connect(m_records->models(), &ModelManager::changed, this, [this] { m_road.dispatch().forgetLastIndices(); });
}

void Cell::connectStations()
{
    const QStringList names = m_controller->stationNames();
    for (const QString& name : names) {
        connect(m_controller->stationObject(name), &Station::sgShowModeName, this, &Cell::sgShowModeName);
        connect(m_controller->stationObject(name), &Station::sgShowModeName, this, &Cell::markRunModels);
    }
    connect(&m_road.inHand(), &TriggersInHand::captureStarted, this, [this](const Trigger& trigger) {
        if (Station* own = stationObject(trigger.station))
            emit own->sgaddTrigCount(1);
    });
    connect(&m_road.inHand(), &TriggersInHand::imageArrived, this, [this](const Trigger& trigger) {
        if (Station* own = stationObject(trigger.station))
            emit own->sgaddRevCount(1);
    });
}

void Cell::selectRunModels()
{
    for (const StationConfig& station : m_ground.config.stations)
        m_controller->selectModel(station.solution, station.runModel);
}

/// The list of models shows them.
void Cell::markRunModels()
{
    QStringList models;
    for (int station = 1; station <= 2; ++station) {
        if (const Station* own = stationObject(station); own && !own->currentModel().isEmpty())
            models << own->currentModel();
    }
    if (ModelManager* const list = this->models())
        list->setCurrentModels(models);
}

void Cell::startStatusTick()
{
    m_tick->start(tickMs);
}

void Cell::enableStations()
{
    m_stationEnabled[0] = m_stationEnabled[1] = true;
}

/// Only now a trigger meets a whole cell: a controller that switches models, records that keep the answer.
void Cell::openRoad()
{
    m_alarms.clear(Alarm::Starting, {});
    m_road.link().release();
    if (m_ground.scheduler.usesThreads())
        m_forwarding = CellForwarding::make(m_ground.home, *this, m_ground.config);
}

void Cell::receive(const SComFrame& frame)
{
    const Step step("frame of the PLC");
    m_road.link().receive(frame);
}

void Cell::sendHeartbeat()
{
    m_road.link().sendHeartbeat();
}

void Cell::triggerStations()
{
    for (int station = 1; station <= 2; ++station) {
        if (m_stationEnabled[station - 1])
            m_road.dispatch().onTestTrigger(station);
    }
}

void Cell::selectModel(int station, const QString& model)
{
    m_controller->selectModel(m_ground.config.station(station).solution, model);
}

Station* Cell::stationObject(int station) const
{
    return m_controller->stationObject(m_ground.config.station(station).solution);
}

void Cell::setUser(const QString& name)
{
    if (m_records)
        m_records->setUser(name);
}

void Cell::enterTestMode(int mode)
{
    switch (mode) {
    case TestMode::Start:
        m_autoTrigger->start(m_testIntervalMs);
        return emit testRunningChanged(true);
    case TestMode::SnapStation1:
        return m_road.dispatch().onTestTrigger(1);
    case TestMode::SnapStation2:
        return m_road.dispatch().onTestTrigger(2);
    default:
        m_autoTrigger->stop();
        return emit testRunningChanged(false);
    }
}

void Cell::applySettings(const AuditChanges& changes)
{
    if (touches(changes, ksSysConfig::lineGroup))
        reopenPort();
    if (m_records && touches(changes, ksSysConfig::cleanerGroup))
        m_records->applySettings();
    if (m_reports && (touches(changes, ShiftConfig::shiftGroup) || touches(changes, ShiftConfig::reportGroup)))
        m_reports->check();
    if (m_forwarding && touches(changes, ForwardConfig::keyGroup))
        m_forwarding->applySettings();
    if (touches(changes, "station_solution"))
        m_road.dispatch().forgetLastIndices();
}

void Cell::reopenPort()
{
    const QString& port = m_ground.settings.comPort;
    const QString baudRate = QString::number(m_ground.settings.baudRate);
    if (auto* line = extensionOf<ISerialReopen>(m_port.get())) {
        line->reopen(port, baudRate);
    } else if (m_port) { // a module without it promises to wait for nothing in these
        m_port->close();
        m_port->open(port, baudRate);
    }
}

void Cell::lookAfterGuiThread()
{
    m_calls.look();
    m_road.standIn().look();
}

void Cell::tick()
{
    const Step step("look at the cell's state");
    m_counts.checkDay();
    m_watch.check();
    m_watch.checkFlood(m_road.takeUnasked());
    if (m_countsFile)
        m_countsFile->tick();
    if (m_forwarding)
        m_forwarding->tick();
}
