// The start-up of the main window: the steps of its constructor, in their order.

#include "Resources.h"
#include "config/AccessPolicy.h"
#include "config/ksGlobalConfig.h"
#include "config/ksGlobalData.h"
#include "config/ksSysConfig.h"
#include "db/log/LogLine.h"
#include "db/log/WarningForward.h"
#include "db/log/ksSysLog.h"
#include "dialogs/calibration/ksImageCaliUI.h"
#include "dialogs/calibration/ksImageCaliUI4P.h"
#include "dialogs/registration/QCryptokeyUI.h"
#include "host/CMainWin.h"
#include "host/CellMonitor.h"
#include "host/CellStatusBar.h"
#include "host/DeviceActions.h"
#include "host/InfoActions.h"
#include "host/LanguageSwitch.h"
#include "host/LicenceDesk.h"
#include "host/Messages.h"
#include "host/SettingsEffects.h"
#include "host/StationPanels.h"
#include "host/StationView.h"
#include "host/TestMode.h"
#include "host/ViewMenu.h"
#include "host/WindowActions.h"
#include "host/WindowLook.h"
#include "platform/AppHome.h"
#include "ui_CMainWin.h"
#include "viewer/ksImgViewer.h"
#include "workflow/AutoTrigger.h"
#include "workflow/CZdCtrl.h"
#include "workflow/CellRecords.h"
#include "workflow/Station.h"
#include "workflow/StationAccounts.h"
#include "workflow/TriggerRoad.h"

#include <valvecell/IEngine.h>
#include <valvecell/IUserCtrl.h>

#include <QApplication>

#include <cstdlib>

namespace {
constexpr int kHeartbeatMs = 300;
constexpr int kStatusTickMs = 1000;
} // namespace

void CMainWin::buildUi()
{
    initResources();
    qRegisterMetaType<SComFrame>();
    m_ui = std::make_unique<Ui::CMainWin>();
    m_ui->setupUi(this);
    m_panels = new StationPanels({m_ui->stationView1, m_ui->logPanel1}, {m_ui->stationView2, m_ui->logPanel2}, this);
    m_actions = new WindowActions(this, m_modules);
    const QList<QAction*> actions = m_ui->toolBar->actions();
    for (QAction* action : actions)
        connect(action, &QAction::triggered, this, &CMainWin::onActionClicked);
    m_viewMenu = new ViewMenu(this);
    m_viewMenu->addTo(m_ui->toolBar);
}

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

void CMainWin::applyLanguage()
{
    m_language = std::make_unique<LanguageSwitch>();
    onLanguageChange(ksSysConfig::instance()->language);
}

void CMainWin::dress()
{
    m_look = new WindowLook(this);
    m_look->load();
    m_look->dress(m_ui->toolBar);
    m_look->dress(m_ui->central);
    m_viewMenu->setDark(m_look->isDark());
    connect(m_viewMenu, &ViewMenu::darkChosen, m_look, &WindowLook::choose);
}

void CMainWin::createWorkflow()
{
    ksGlobalConfig& config = *ksGlobalConfig::instance();
    m_road = std::make_unique<TriggerRoad>(config, [this](const QString& key) {
        if (ICoreCtrl* core = m_modules.coreCtrl())
            core->trigger({key});
    });
    connect(&m_road->link(), &PlcLink::modelIndexReceived, this, [this] {
        if (m_status) // a frame may come while a box of the start-up is open
            m_status->linkAlive();
    });
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
    m_monitor->follow(m_road->dispatch(), m_road->results());
}

void CMainWin::createInfoActions()
{
    connect(m_actions, &WindowActions::otherTriggered, new InfoActions(this, m_road->link()), &InfoActions::trigger);
    m_devices = new DeviceActions(this, m_modules);
    connect(m_actions, &WindowActions::otherTriggered, m_devices, &DeviceActions::trigger);
    connect(m_devices, &DeviceActions::changed, m_actions, &WindowActions::logChanges);
    connect(m_actions, &WindowActions::engineeringEnded, m_devices, &DeviceActions::closeCameras);
}

void CMainWin::loadModules()
{
    const QString fatal = m_modules.start(m_road->imageCallback());
    if (!fatal.isEmpty()) {
        messages::fatal(fatal);
        m_modules.stop();
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

void CMainWin::connectViewers()
{
    m_ImgViewer_A = m_ui->stationView1->viewer();
    m_ImgViewer_B = m_ui->stationView2->viewer();
    for (ksImgViewer* viewer : {m_ImgViewer_A, m_ImgViewer_B}) {
        connect(viewer, &ksImgViewer::sgImageScale, this, &CMainWin::onImageScale);
        connect(viewer, &ksImgViewer::customContextMenuRequested, this, &CMainWin::onPopMenu);
    }
}

void CMainWin::buildStatusBar()
{
    m_status = new CellStatusBar(this);
    setStatusBar(m_status);
    m_look->dress(m_status);
    m_status->setRegistered(ksGlobalData::instance()->registered);
    connect(m_actions, &WindowActions::message, m_status,
            [this](const QString& text) { m_status->showMessage(text, 5000); });
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
    m_monitor->countOn(platform::inHome(QStringLiteral("\\DBFiles\\Pellix.db")));
}

void CMainWin::createAutoTrigger()
{
    m_autoTrigger = std::make_unique<AutoTrigger>();
    connect(m_autoTrigger.get(), &AutoTrigger::sgTrig, this, &CMainWin::onTrigImage);
    m_testMode = std::make_unique<TestMode>(*m_autoTrigger, m_road->dispatch());
}

void CMainWin::connectTestMode()
{
    connect(m_actions, &WindowActions::sgTestMode, this, &CMainWin::onTestMode);
    connect(m_viewMenu, &ViewMenu::sgChangeLanguage, this, &CMainWin::onLanguageChange);
    connect(m_actions, &WindowActions::testIntervalChanged, this, [this](int ms) { m_testMode->setInterval(ms); });
}

void CMainWin::connectSettings()
{
    m_effects = std::make_unique<SettingsEffects>(*ksSysConfig::instance());
    m_effects->setPort(m_serialPort.get());
    m_effects->setRecords(m_records.get());
    connect(m_actions, &WindowActions::settingsApplied, m_effects.get(), &SettingsEffects::apply);
    connect(m_effects.get(), &SettingsEffects::sgChangeLanguage, this, &CMainWin::onLanguageChange);
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

void CMainWin::createCalibrations()
{
    m_twoPoint = std::make_unique<ksImageCaliUI>();
    m_fourPoint = std::make_unique<ksImageCaliUI4P>();
    m_actions->setCalibrations(m_twoPoint.get(), m_fourPoint.get());
}

void CMainWin::checkLicence()
{
    m_licence = std::make_unique<LicenceDesk>(this);
    onLineseCheck(m_licence->check());
    connect(m_licence->dialog(), &QCryptokeyUI::sgRegisterFinish, this, &CMainWin::onLineseCheck);
    connect(m_actions, &WindowActions::otherTriggered, m_licence.get(), &LicenceDesk::trigger);
}

void CMainWin::startStatusTick()
{
    m_statusTimer = startTimer(kStatusTickMs, Qt::CoarseTimer);
}

void CMainWin::readEngineList()
{
    m_engineList = m_modules.engine()->taskList()->list();
    m_actions->setEngineList(m_engineList);
    if (m_engineList.size() < 2)
        m_ui->stationView2->hideReading();
}

void CMainWin::enableStations()
{
    m_stationEnabled[0] = m_stationEnabled[1] = true;
}

void CMainWin::layOutForCameras()
{
    ICoreCtrl* const core = m_modules.coreCtrl();
    const bool single = core && core->cameraKeys().size() == 1;
    m_ui->singleStationHint->setVisible(single);
    m_panels->showSecond(!single);
    m_ui->grid->setColumnStretch(1, single ? 0 : 1);
    m_ui->grid->setHorizontalSpacing(single ? 0 : m_ui->grid->verticalSpacing());
}
