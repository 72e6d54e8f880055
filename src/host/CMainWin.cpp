#include "host/CMainWin.h"

#include "Resources.h"
#include "common/forms/DialogForm.h"
#include "config/AccessPolicy.h"
#include "config/CellLimits.h"
#include "config/IniFile.h"
#include "config/ksGlobalConfig.h"
#include "config/ksGlobalData.h"
#include "config/ksSysConfig.h"
#include "db/log/LogLine.h"
#include "db/log/ksSysLog.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "dialogs/registration/QCryptokeyUI.h"
#include "dialogs/testmode/QTestWidget.h"
#include "host/LicenceDesk.h"
#include "host/Messages.h"
#include "host/StartFailure.h"
#include "host/ViewMenu.h"
#include "host/WindowActions.h"
#include "host/WindowRooms.h"
#include "look/LanguageSwitch.h"
#include "look/WindowLook.h"
#include "modules/ModuleSet.h"
#include "panels/CellStatusBar.h"
#include "panels/StationPanels.h"
#include "platform/AppHome.h"
#include "ui_CMainWin.h"
#include "viewer/ksImgViewer.h"
#include "workflow/Cell.h"

#include <valvecell/IEngine.h>
#include <valvecell/IUserCtrl.h>

#include <QApplication>
#include <QCloseEvent>

#include <utility>

CMainWin::CMainWin(QWidget* parent)
    : QMainWindow(parent)
{
    buildUi();
    SystemLog::ksSysLog::instance()->start();
    m_warnings = std::make_unique<SystemLog::WarningForward>();
    loadSettings();
    ksGlobalConfig::instance()->load(&ksGlobalConfig::instance()->loadProblem);
    m_language = std::make_unique<LanguageSwitch>();
    onLanguageChange(ksSysConfig::instance()->language);
    dress();
    setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    createWorkflow();
    if (!loadModules())
        return;
    openSerialPort();
    createUserControl();
    connectViewers();
    buildStatusBar();
    m_cell->prepareImageFolders();
    SystemLog::information(QStringLiteral("系统启动"));
    m_cell->openResultDatabase();
    m_cell->createAutoTrigger();
    connectTestMode();
    m_cell->createController();
    m_cell->connectStations();
    m_cell->selectRunModels();
    m_twoPoint = std::make_unique<ksImageCaliUI>(this);
    m_fourPoint = std::make_unique<ksImageCaliUI4P>(this);
    m_licence = std::make_unique<LicenceDesk>(this);
    connect(m_licence.get(), &LicenceDesk::judged, this, &CMainWin::onLineseCheck);
    connect(m_licence->dialog(), &QCryptokeyUI::sgRegisterFinish, this, &CMainWin::onLineseCheck);
    m_licence->checkDaily();
    createActions();
    m_statusTimer = startTimer(1000, Qt::CoarseTimer);
    m_cell->startStatusTick();
    readEngineList();
    m_cell->enableStations();
    layOutForCameras();
    m_cell->openRoad();
}

CMainWin::~CMainWin()
{
    DialogForm::takeDown(this);
    if (m_statusTimer)
        killTimer(m_statusTimer);
    m_look->takeOff();
}

void CMainWin::buildUi()
{
    initResources();
    qRegisterMetaType<SComFrame>();
    m_ui = std::make_unique<Ui::CMainWin>();
    m_ui->setupUi(this);
    m_ui->central->setAttribute(Qt::WA_StyledBackground);
    m_panels = new StationPanels({m_ui->stationView1, m_ui->logPanel1}, {m_ui->stationView2, m_ui->logPanel2}, this);
    m_test = new QTestWidget(this);
    m_viewMenu = new ViewMenu(this);
    const QList<QAction*> actions = furnishRooms(*this, m_viewMenu->menuAction());
    for (QAction* action : actions)
        connect(action, &QAction::triggered, this, &CMainWin::onActionClicked);
}

void CMainWin::loadSettings()
{
    ksSysConfig::instance()->load(&ksSysConfig::instance()->loadProblem);
    ksSysConfig::instance()->save();
    AccessPolicy::instance()->load();
    CellLimits::instance()->load();
}

void CMainWin::dress()
{
    m_look = new WindowLook(this);
    m_look->load();
    m_look->dress(m_ui->central);
    m_viewMenu->setLook(m_look->kind());
    connect(m_viewMenu, &ViewMenu::lookChosen, m_look, &WindowLook::choose);
    connect(m_ui->workspaces, &Workspaces::locksChanged, m_look, &WindowLook::dressIcons);
}

void CMainWin::createWorkflow()
{
    SystemLog::ksLogDB* const log = &SystemLog::ksSysLog::instance()->database();
    m_cell =
        std::make_unique<Cell>(Cell::Ground{platform::home(), *ksSysConfig::instance(), *ksGlobalConfig::instance(),
                                            *CellLimits::instance(), log, Scheduler::system()},
                               std::make_unique<ModuleSet>());
    m_ui->alarmStrip->setBook(&m_cell->alarms());
    connect(m_cell.get(), &Cell::linkAlive, this, [this] { m_status->linkAlive(); });
    connect(m_cell.get(), &Cell::shutdownReceived, this, [this] {
        if (!m_asksToClose) // closing all would take the question for answered
            QApplication::closeAllWindows();
    });
    m_ui->stateBar->follow(*m_cell, *ksGlobalConfig::instance(), *ksSysConfig::instance());
    connect(m_cell.get(), &Cell::sgShowLog, this, &CMainWin::sgShowLog);
    connect(this, &CMainWin::sgShowLog, this, &CMainWin::onShowLog);
    connect(m_cell.get(), &Cell::sgShowImg, this, qOverload<int, const QImage&>(&CMainWin::onShowImage));
    connect(m_cell.get(), &Cell::sgShowSrcImg, this, qOverload<const QString&, const QImage&>(&CMainWin::onShowImage));
    connect(m_cell.get(), &Cell::sgShowModeName, this, &CMainWin::onShowName);
}

bool CMainWin::loadModules()
{
    const QString fatal = m_cell->loadModules();
    m_problem = fatal.isEmpty() ? fatal : StartFailure::report(fatal, m_cell);
    return m_problem.isEmpty();
}

void CMainWin::openSerialPort()
{
    connect(this, &CMainWin::sgRecvData, this, &CMainWin::onAppanalysis);
    if (m_cell->openSerialPort([this](const SComFrame& frame) { emit sgRecvData(frame); }))
        return;
    const ksSysConfig& settings = *ksSysConfig::instance();
    messages::portNotOpen(this, settings.comPort, QString::number(settings.baudRate));
}

void CMainWin::createUserControl()
{
    m_userCtrl.reset(m_cell->modules().createUserCtrl());
    if (m_userCtrl)
        connect(m_userCtrl.get(), &IUserCtrl::sgCurrentUserInfo, this, &CMainWin::onLogInOut);
}

void CMainWin::connectViewers()
{
    m_panels->follow(*m_cell, platform::home()); // reads on threads: not while a start can still end the process
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
    onLineseCheck(ksGlobalData::instance()->registered);
}

void CMainWin::createActions()
{
    m_actions = std::make_unique<WindowActions>(WindowActions::Parts{
        *this, *m_cell, *ksSysConfig::instance(), *ksGlobalConfig::instance(), *AccessPolicy::instance(),
        *CellLimits::instance(), *m_test, *m_twoPoint, *m_fourPoint, *m_licence, m_userCtrl.get(), *m_ui->workspaces});
    m_actions->serve(*m_panels);
    connect(m_actions.get(), &WindowActions::message, m_status,
            [this](const QString& text) { m_status->showMessage(text, 5000); });
    connect(m_actions.get(), &WindowActions::settingsApplied, m_cell.get(), &Cell::applySettings);
    connect(m_actions.get(), &WindowActions::settingsApplied, this, [this](const AuditChanges& changes) {
        if (touches(changes, ksSysConfig::languageGroup))
            onLanguageChange(ksSysConfig::instance()->language);
    });
}

void CMainWin::connectTestMode()
{
    connect(m_viewMenu, &ViewMenu::sgChangeLanguage, this, &CMainWin::onLanguageChange);
    connect(m_test, &QTestWidget::intervalChanged, m_cell.get(), &Cell::setTestInterval);
    connect(m_test, &QTestWidget::sgTestMode, this, &CMainWin::onTestMode);
}

void CMainWin::readEngineList()
{
    const QStringList solutions = m_cell->modules().engine()->taskList()->list();
    m_actions->setEngineList(solutions);
    if (solutions.size() < 2)
        m_ui->stationView2->hideReading();
}

void CMainWin::layOutForCameras()
{
    ICoreCtrl* const core = m_cell->modules().coreCtrl();
    const bool single = core && core->cameraKeys().size() == 1;
    m_ui->singleStationHint->setVisible(single);
    m_panels->showSecond(!single);
    m_ui->stateBar->setStations(single ? 1 : 2);
    m_ui->grid->setColumnStretch(1, single ? 0 : 1);
    m_ui->grid->setHorizontalSpacing(single ? 0 : m_ui->grid->verticalSpacing());
}

void CMainWin::onAppanalysis(SComFrame frame)
{
    m_cell->receive(frame);
}

void CMainWin::onHeardBit()
{
    m_cell->sendHeartbeat();
}

void CMainWin::onShowImage(int station, const QImage& image)
{
    m_panels->showImage(station, image);
}

void CMainWin::onShowImage(const QString& solution, const QImage& image)
{
    m_panels->showImage(ksGlobalConfig::instance()->stationOfSolution(solution), image);
}

void CMainWin::onShowLog(int station, const QString& text)
{
    m_panels->showLog(station, text);
}

void CMainWin::onShowName(const QString& station, const QString& label)
{
    m_panels->showModelLabel(ksGlobalConfig::instance()->stationOfSolution(station), label);
}

void CMainWin::onSelModel(int station, const QString& model)
{
    m_cell->selectModel(station, model);
}

void CMainWin::onLineseCheck(bool registered)
{
    ksGlobalData::instance()->registered = registered;
    m_status->setRegistered(registered);
    m_ui->stateBar->setRegistered(registered);
}

void CMainWin::onLogInOut(const QString& name, int, int)
{
    m_status->setUserName(name);
    m_ui->stateBar->setUser(name);
    m_cell->setUser(name);
}

void CMainWin::onImageScale(qreal scale)
{
    if (sender() == m_ImgViewer_A)
        saveViewerScale(QStringLiteral("ScaleA"), scale);
    else if (sender() == m_ImgViewer_B)
        saveViewerScale(QStringLiteral("ScaleB"), scale);
}

void CMainWin::onPopMenu(const QPoint& position)
{
    if (auto* viewer = qobject_cast<ksImgViewer*>(sender()))
        viewer->popUpMenu(viewer->viewport()->mapToGlobal(position));
}

void CMainWin::onLanguageChange(const QString& language)
{
    m_language->choose(language);
    m_viewMenu->setLanguage(language);
}

void CMainWin::onActionClicked()
{
    if (m_actions) // the toolbar is there before what it opens
        m_actions->trigger(sender()->objectName());
}

void CMainWin::onTestMode(int mode)
{
    m_cell->enterTestMode(mode);
}

void CMainWin::onTrigImage()
{
    m_cell->triggerStations();
}

/// With the window goes what it has opened: nothing may stay on the screen of a cell that ends.
void CMainWin::closeEvent(QCloseEvent* event)
{
    if (std::exchange(m_asksToClose, true))
        return event->ignore();
    const bool closes = messages::confirmClose(this, m_actions->unsavedModels(), event->spontaneous());
    m_asksToClose = false;
    event->setAccepted(closes);
    if (closes)
        DialogForm::hideWindowsOf(this);
}

void CMainWin::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_statusTimer)
        return QMainWindow::timerEvent(event);
    m_status->tick(ksGlobalConfig::instance()->onlineMode);
    m_ui->stateBar->setLink(m_status->isLinkUp());
    m_licence->checkDaily();
}

void CMainWin::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::LanguageChange && m_ui)
        m_ui->retranslateUi(this);
    if (event->type() == QEvent::LanguageChange && m_actions)
        m_actions->retranslate();
}
