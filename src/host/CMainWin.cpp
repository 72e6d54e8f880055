#include "host/CMainWin.h"

#include "Resources.h"
#include "config/IniFile.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "db/log/LogLine.h"
#include "db/log/WarningForward.h"
#include "db/log/ksSysLog.h"
#include "dialogs/calibration/ksImageCaliUI.h"
#include "dialogs/calibration/ksImageCaliUI4P.h"
#include "dialogs/testmode/QTestWidget.h"
#include "host/CellStatusBar.h"
#include "host/LanguageSwitch.h"
#include "host/Messages.h"
#include "host/WindowActions.h"
#include "platform/AppHome.h"
#include "ui_CMainWin.h"
#include "workflow/AutoTrigger.h"
#include "workflow/CZdCtrl.h"
#include "workflow/CellRecords.h"
#include "workflow/ImageRouter.h"
#include "workflow/ModuleRelay.h"
#include "workflow/PlcLink.h"
#include "workflow/ResultHandler.h"
#include "workflow/RoadTimer.h"
#include "workflow/Station.h"
#include "workflow/TriggerDispatch.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IEngine.h>
#include <valvecell/IImageWatch.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/IUserCtrl.h>

#include <QApplication>
#include <QCloseEvent>

#include <cstdlib>

namespace {
constexpr int kHeartbeatMs = 300;
constexpr int kStatusTickMs = 1000;
} // namespace

CMainWin::CMainWin(QWidget* parent)
    : QMainWindow(parent)
{
    buildUi();
    startSystemLog();
    loadSettings();
    loadGlobalConfig();
    applyLanguage();
    setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    createWorkflow();
    loadModules();
    openSerialPort();
    createUserControl();
    connectViewers();
    buildStatusBar();
    prepareImageFolders();
    logSystemStart();
    openResultDatabase();
    createAutoTrigger();
    connectTestMode();
    createController();
    connectStations();
    selectRunModels();
    createCalibrations();
    startStatusTick();
    readEngineList();
    enableStations();
    layOutForCameras();
}

CMainWin::~CMainWin()
{
    killTimer(m_statusTimer);
    m_actions->setUserControl(nullptr);
    m_userCtrl.reset();
    m_link->setPort(nullptr);
    if (m_serialPort) {
        m_heartbeat.stop();
        m_serialPort->close();
        m_serialPort.reset();
    }
    m_router->setEngine(nullptr);
    m_modules.stop();
    m_results->setStore(nullptr);
    m_actions->setModels(nullptr, nullptr);
    m_records.reset();
    m_controller.reset();
    m_actions->setCalibrations(nullptr, nullptr);
    m_twoPoint.reset();
    m_fourPoint.reset();
}

void CMainWin::buildUi()
{
    initResources();
    qRegisterMetaType<SComFrame>();
    m_ui = std::make_unique<Ui::CMainWin>();
    m_ui->setupUi(this);
    m_ui->stationView1->setStation(1);
    m_ui->stationView2->setStation(2);
    m_actions = new WindowActions(this, m_modules);
    const QList<QAction*> actions = m_ui->toolBar->actions();
    for (QAction* action : actions)
        connect(action, &QAction::triggered, this, &CMainWin::onActionClicked);
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
}

void CMainWin::loadGlobalConfig()
{
    ksGlobalConfig::instance()->load();
}

void CMainWin::applyLanguage()
{
    m_language = std::make_unique<LanguageSwitch>();
    m_language->apply(ksSysConfig::instance()->language);
}

void CMainWin::createWorkflow()
{
    ksGlobalConfig& config = *ksGlobalConfig::instance();
    m_relay = std::make_shared<ModuleRelay>();
    m_link = std::make_unique<PlcLink>();
    m_dispatch = std::make_unique<TriggerDispatch>(config, *m_link, [this](const QString& key) {
        if (ICoreCtrl* core = m_modules.coreCtrl())
            core->trigger({key});
    });
    m_router = std::make_unique<ImageRouter>(
        config, [relay = m_relay](const QVariantMap& result) { emit relay->taskFinished(result); });
    m_results = std::make_unique<ResultHandler>(config, *m_link);
    m_road = std::make_unique<RoadTimer>();

    connect(m_link.get(), &PlcLink::modelIndexReceived, m_dispatch.get(), &TriggerDispatch::onModelIndices);
    connect(m_link.get(), &PlcLink::modelIndexReceived, this, [this] {
        if (m_status) // a frame may come while a box of the start-up is open
            m_status->linkAlive();
    });
    connect(m_link.get(), &PlcLink::triggerReceived, m_dispatch.get(), &TriggerDispatch::onTrigger);
    connect(m_link.get(), &PlcLink::shutdownReceived, qApp, &QApplication::closeAllWindows);
    connect(m_relay.get(), &ModuleRelay::imageReceived, m_router.get(), &ImageRouter::onImage, Qt::QueuedConnection);
    connect(m_relay.get(), &ModuleRelay::taskFinished, m_results.get(), &ResultHandler::onResult, Qt::QueuedConnection);

    connect(m_dispatch.get(), &TriggerDispatch::captureStarted, m_road.get(), &RoadTimer::onCaptureStarted);
    connect(m_router.get(), &ImageRouter::imageArrived, m_road.get(), &RoadTimer::onImageArrived);
    connect(m_results.get(), &ResultHandler::replied, m_road.get(), &RoadTimer::onReplied);

    connect(m_dispatch.get(), &TriggerDispatch::sgShowLog, this, &CMainWin::sgShowLog);
    connect(m_dispatch.get(), &TriggerDispatch::sgSystemLog, this, &CMainWin::onSystemLog);
    connect(m_dispatch.get(), &TriggerDispatch::sgSelModel, this, &CMainWin::onSelModel);
    connect(m_results.get(), &ResultHandler::sgShowLog, this, &CMainWin::sgShowLog);
    connect(m_results.get(), &ResultHandler::sgShowImg, this, &CMainWin::onShowImage);
    connect(m_results.get(), &ResultHandler::readingChanged, this, &CMainWin::onReading);
    connect(this, &CMainWin::sgShowLog, this, &CMainWin::onShowLog);
}

void CMainWin::loadModules()
{
    const QString fatal = m_modules.start(
        [relay = m_relay](const QString& key, const QImage& image) { emit relay->imageReceived(key, image); });
    if (!fatal.isEmpty()) {
        messages::fatal(fatal);
        m_modules.stop();
        std::exit(0);
    }
    m_router->setEngine(m_modules.engine());
    if (auto* watch = extensionOf<IImageWatch>(m_modules.designer())) {
        const auto show = [watch](const QString& key, const QImage& image) { watch->imageCaptured(key, image); };
        connect(m_relay.get(), &ModuleRelay::imageReceived, this, show, Qt::QueuedConnection);
    }
}

void CMainWin::openSerialPort()
{
    m_serialPort.reset(ModuleSet::createSerialPort());
    if (!m_serialPort)
        return;
    connect(this, &CMainWin::sgRecvData, this, &CMainWin::onAppanalysis);
    connect(m_relay.get(), &ModuleRelay::frameReceived, this, &CMainWin::sgRecvData, Qt::QueuedConnection);
    m_serialPort->setReceiveCallback(this, [relay = m_relay](SComFrame frame) { emit relay->frameReceived(frame); });
    m_link->setPort(m_serialPort.get());
    const ksSysConfig& settings = *ksSysConfig::instance();
    const QString baudRate = QString::number(settings.baudRate);
    if (!m_serialPort->open(settings.comPort, baudRate))
        messages::portNotOpen(this, settings.comPort, baudRate);
    connect(&m_heartbeat, &QTimer::timeout, this, &CMainWin::onHeardBit);
    m_heartbeat.start(kHeartbeatMs);
}

void CMainWin::createUserControl()
{
    m_userCtrl.reset(ModuleSet::createUserCtrl());
    m_actions->setUserControl(m_userCtrl.get());
    if (m_userCtrl)
        connect(m_userCtrl.get(), &IUserCtrl::sgCurrentUserInfo, this, &CMainWin::onLogInOut);
}

void CMainWin::connectViewers()
{
    connect(m_ui->stationView1, &StationView::sgImageScale, this, &CMainWin::onImageScale);
    connect(m_ui->stationView2, &StationView::sgImageScale, this, &CMainWin::onImageScale);
}

void CMainWin::buildStatusBar()
{
    m_status = new CellStatusBar(this);
    setStatusBar(m_status);
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
    m_results->setStore(m_records->store());
}

void CMainWin::createAutoTrigger()
{
    m_autoTrigger = std::make_unique<AutoTrigger>();
    connect(m_autoTrigger.get(), &AutoTrigger::sgTrig, this, &CMainWin::onTrigImage);
}

void CMainWin::connectTestMode()
{
    connect(m_actions, &WindowActions::sgTestMode, this, &CMainWin::onTestMode);
    connect(m_actions, &WindowActions::testIntervalChanged, this, [this](int ms) { m_testIntervalMs = ms; });
}

void CMainWin::createController()
{
    m_controller = std::make_unique<CZdCtrl>(m_modules.engine(), platform::home());
    m_controller->initialise();
    m_dispatch->setController(m_controller.get());
    m_records->openModelLibrary(m_controller->plcIndices(), m_controller->stationNames());
    m_actions->setModels(m_records->models(), m_controller.get());
}

void CMainWin::connectStations()
{
    const QStringList names = m_controller->stationNames();
    for (const QString& name : names)
        connect(m_controller->stationObject(name), &Station::sgShowModeName, this, &CMainWin::onShowName);
    // The account of a station: triggers that its camera was given against images that came.
    const auto account = [this](int station) {
        return m_controller->stationObject(ksGlobalConfig::instance()->station(station).solution);
    };
    connect(m_dispatch.get(), &TriggerDispatch::captureStarted, m_controller.get(), [account](int station) {
        if (Station* own = account(station))
            emit own->sgaddTrigCount(1);
    });
    connect(m_router.get(), &ImageRouter::imageArrived, m_controller.get(), [account](int station) {
        if (Station* own = account(station))
            emit own->sgaddRevCount(1);
    });
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
    const bool single = cameraKeys().size() == 1;
    m_ui->singleStationHint->setVisible(single);
    m_ui->stationView2->setVisible(!single);
    m_ui->logPanel2->setVisible(!single);
}

QStringList CMainWin::cameraKeys() const
{
    ICoreCtrl* core = m_modules.coreCtrl();
    return core ? core->cameraKeys() : QStringList();
}

void CMainWin::onAppanalysis(SComFrame frame)
{
    m_link->receive(frame);
}

void CMainWin::onHeardBit()
{
    m_link->sendHeartbeat();
}

void CMainWin::onShowImage(int station, const QImage& image)
{
    if (station == 1)
        m_ui->stationView1->setImage(image);
    else if (station == 2)
        m_ui->stationView2->setImage(image);
}

void CMainWin::onReading(int station, const StationReading& reading)
{
    if (station == 1)
        m_ui->stationView1->setReading(reading);
    else if (station == 2)
        m_ui->stationView2->setReading(reading);
}

void CMainWin::onShowLog(int station, const QString& text)
{
    if (station == 1)
        m_ui->logPanel1->append(text);
    else if (station == 2)
        m_ui->logPanel2->append(text);
}

void CMainWin::onShowName(const QString& station, const QString& label)
{
    const int number = ksGlobalConfig::instance()->stationOfSolution(station);
    if (number == 1)
        m_ui->stationView1->setModelLabel(label);
    else if (number == 2)
        m_ui->stationView2->setModelLabel(label);
}

void CMainWin::onSelModel(int station, const QString& model)
{
    m_controller->selectModel(ksGlobalConfig::instance()->station(station).solution, model);
}

void CMainWin::onLogInOut(const QString& name, int, int)
{
    m_status->setUserName(name);
}

void CMainWin::onImageScale(qreal scale)
{
    if (sender() == m_ui->stationView1)
        saveViewerScale(QStringLiteral("ScaleA"), scale);
    else if (sender() == m_ui->stationView2)
        saveViewerScale(QStringLiteral("ScaleB"), scale);
}

void CMainWin::onActionClicked()
{
    m_actions->trigger(sender()->objectName());
}

void CMainWin::onTestMode(int mode)
{
    switch (mode) {
    case QTestWidget::Start:
        m_autoTrigger->start(m_testIntervalMs);
        break;
    case QTestWidget::SnapStation1:
        m_dispatch->onTrigger(1);
        break;
    case QTestWidget::SnapStation2:
        m_dispatch->onTrigger(2);
        break;
    default:
        m_autoTrigger->stop();
        break;
    }
}

void CMainWin::onTrigImage()
{
    for (int station = 1; station <= 2; ++station) {
        if (m_stationEnabled[station - 1])
            m_dispatch->onTrigger(station);
    }
}

void CMainWin::onSystemLog(const QString& text)
{
    SystemLog::information(text);
}

void CMainWin::closeEvent(QCloseEvent* event)
{
    event->setAccepted(messages::confirmClose(this));
}

void CMainWin::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_statusTimer)
        m_status->tick(ksGlobalConfig::instance()->onlineMode);
    else
        QMainWindow::timerEvent(event);
}
