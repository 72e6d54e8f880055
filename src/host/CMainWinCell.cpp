// The start-up of the main window: the steps that bring up the cell, from settings and log to stations.

#include "config/AccessPolicy.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "db/log/LogLine.h"
#include "db/log/WarningForward.h"
#include "db/log/ksSysLog.h"
#include "host/CMainWin.h"
#include "host/CellMonitor.h"
#include "host/DeviceActions.h"
#include "host/Messages.h"
#include "host/TestMode.h"
#include "host/WindowActions.h"
#include "panels/CellStatusBar.h"
#include "panels/StationPanels.h"
#include "platform/AppHome.h"
#include "ui_CMainWin.h"
#include "workflow/AutoTrigger.h"
#include "workflow/CZdCtrl.h"
#include "workflow/CellRecords.h"
#include "workflow/Station.h"
#include "workflow/StationAccounts.h"
#include "workflow/TriggerRoad.h"

#include <valvecell/IUserCtrl.h>

#include <QApplication>

#include <cstdlib>

namespace {
constexpr int kHeartbeatMs = 300;
} // namespace

void CMainWin::startSystemLog()
{
    SystemLog::ksSysLog::instance();
    m_warnings = std::make_unique<SystemLog::WarningForward>();
}

void CMainWin::loadSettings()
{
    ksSysConfig::instance()->load();
    ksSysConfig::instance()->save();
    AccessPolicy::instance()->load();
}

void CMainWin::loadGlobalConfig()
{
    ksGlobalConfig::instance()->load();
}

void CMainWin::createWorkflow()
{
    ksGlobalConfig& config = *ksGlobalConfig::instance();
    m_road = std::make_unique<TriggerRoad>(config, [this](const QString& key) {
        if (ICoreCtrl* core = m_modules.coreCtrl())
            core->trigger({key});
    });
    connect(&m_road->link(), &PlcLink::modelIndexReceived, this, [this] { m_status->linkAlive(); });
    connect(&m_road->link(), &PlcLink::shutdownReceived, qApp, &QApplication::closeAllWindows);
    connect(&m_road->dispatch(), &TriggerDispatch::sgShowLog, this, &CMainWin::sgShowLog);
    connect(&m_road->dispatch(), &TriggerDispatch::sgSystemLog, &SystemLog::information);
    connect(&m_road->dispatch(), &TriggerDispatch::sgSelModel, this, &CMainWin::onSelModel);
    connect(&m_road->results(), &ResultHandler::sgShowLog, this, &CMainWin::sgShowLog);
    connect(&m_road->results(), &ResultHandler::sgShowImg, this, qOverload<int, const QImage&>(&CMainWin::onShowImage));
    connect(&m_road->results(), &ResultHandler::sgShowSrcImg, this,
            qOverload<const QString&, const QImage&>(&CMainWin::onShowImage));
    connect(this, &CMainWin::sgShowLog, this, &CMainWin::onShowLog);

    m_monitor = std::make_unique<CellMonitor>(config, *m_panels, *m_ui->alarmStrip);
    m_monitor->alarms().setLog(&SystemLog::ksSysLog::instance()->database());
    m_monitor->follow(m_road->dispatch(), m_road->results());
    m_road->link().hold();
    m_monitor->showStarting(true);
}

void CMainWin::loadModules()
{
    const QString fatal = m_modules.start(m_road->imageCallback());
    if (!fatal.isEmpty()) {
        messages::fatal(fatal);
        m_modules.stop();
        SystemLog::ksSysLog::instance()->stop(); // no thread may outlive the databases, which go with the process
        std::exit(0);
    }
    m_road->setModules(m_modules.engine(), m_modules.designer());
    m_monitor->alarms().setCameras(m_modules.coreCtrl());
}

void CMainWin::openSerialPort()
{
    m_serialPort.reset(m_modules.createSerialPort());
    m_devices->setSerialPort(m_serialPort.get());
    if (!m_serialPort)
        return;
    connect(this, &CMainWin::sgRecvData, this, &CMainWin::onAppanalysis);
    connect(m_road->relay(), &ModuleRelay::frameReceived, this, &CMainWin::sgRecvData, Qt::QueuedConnection);
    m_serialPort->setReceiveCallback(this, m_road->frameCallback());
    m_road->link().setPort(m_serialPort.get());
    m_monitor->alarms().setPort(m_serialPort.get());
    const ksSysConfig& settings = *ksSysConfig::instance();
    const QString baudRate = QString::number(settings.baudRate);
    if (!m_serialPort->open(settings.comPort, baudRate))
        messages::portNotOpen(this, settings.comPort, baudRate);
    connect(&m_heartbeat, &QTimer::timeout, this, &CMainWin::onHeardBit);
    m_heartbeat.start(kHeartbeatMs);
}

void CMainWin::createUserControl()
{
    m_userCtrl.reset(m_modules.createUserCtrl());
    m_actions->setUserControl(m_userCtrl.get());
    if (m_userCtrl)
        connect(m_userCtrl.get(), &IUserCtrl::sgCurrentUserInfo, this, &CMainWin::onLogInOut);
}

void CMainWin::prepareImageFolders()
{
    m_records = std::make_unique<CellRecords>(platform::home(), *ksSysConfig::instance());
    m_records->prepareImageFolders();
}

void CMainWin::logSystemStart()
{
    SystemLog::LogLine(SystemLog::Information).stream() << "系统启动";
}

void CMainWin::openResultDatabase()
{
    m_records->openResultDatabase();
    m_road->results().setStore(m_records->store());
    m_monitor->alarms().setRecords(m_records.get());
    m_monitor->countOn(platform::inHome(QStringLiteral("\\DBFiles")));
}

void CMainWin::createAutoTrigger()
{
    m_autoTrigger = std::make_unique<AutoTrigger>();
    connect(m_autoTrigger.get(), &AutoTrigger::sgTrig, this, &CMainWin::onTrigImage);
    m_testMode = std::make_unique<TestMode>(*m_autoTrigger, m_road->dispatch());
}

void CMainWin::createController()
{
    m_controller = std::make_unique<CZdCtrl>(m_modules.engine(), platform::home());
    m_controller->initialise();
    m_road->dispatch().setController(m_controller.get());
    m_records->openModelLibrary(m_controller->plcIndices(), m_controller->stationNames());
    m_actions->setModels(m_records->models(), m_controller.get());
}

void CMainWin::connectStations()
{
    const QStringList names = m_controller->stationNames();
    for (const QString& name : names)
        connect(m_controller->stationObject(name), &Station::sgShowModeName, this, &CMainWin::onShowName);
    m_accounts = std::make_unique<StationAccounts>(*ksGlobalConfig::instance(), *m_controller, m_road->dispatch(),
                                                   m_road->router());
}

void CMainWin::selectRunModels()
{
    for (const StationConfig& station : ksGlobalConfig::instance()->stations)
        m_controller->selectModel(station.solution, station.runModel);
}

void CMainWin::enableStations()
{
    m_stationEnabled[0] = m_stationEnabled[1] = true;
}

/// Only now a trigger meets a whole cell: a controller that switches models, records that keep the answer.
void CMainWin::openRoad()
{
    m_monitor->showStarting(false);
    m_road->link().release();
}
