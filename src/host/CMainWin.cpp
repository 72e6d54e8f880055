#include "host/CMainWin.h"

#include "common/forms/DialogForm.h"
#include "config/IniFile.h"
#include "config/ksGlobalConfig.h"
#include "config/ksGlobalData.h"
#include "db/log/WarningForward.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "host/CellMonitor.h"
#include "host/DeviceActions.h"
#include "host/LanguageSwitch.h"
#include "host/LicenceDesk.h"
#include "host/Messages.h"
#include "host/SettingsEffects.h"
#include "host/TestMode.h"
#include "host/ViewMenu.h"
#include "host/WindowActions.h"
#include "panels/CellStatusBar.h"
#include "panels/StationPanels.h"
#include "ui_CMainWin.h"
#include "viewer/ksImgViewer.h"
#include "workflow/AutoTrigger.h"
#include "workflow/CZdCtrl.h"
#include "workflow/CellRecords.h"
#include "workflow/StationAccounts.h"
#include "workflow/TriggerRoad.h"

#include <valvecell/IUserCtrl.h>

#include <QCloseEvent>

CMainWin::CMainWin(QWidget* parent)
    : QMainWindow(parent)
{
    buildUi();
    startSystemLog();
    loadSettings();
    loadGlobalConfig();
    applyLanguage();
    dress();
    setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    createWorkflow();
    createInfoActions();
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
    connectSettings();
    createController();
    connectStations();
    selectRunModels();
    createCalibrations();
    checkLicence();
    startStatusTick();
    readEngineList();
    enableStations();
    layOutForCameras();
    openRoad();
}

CMainWin::~CMainWin()
{
    DialogForm::takeDown(this);
    killTimer(m_statusTimer);
    m_effects.reset();
    m_devices->close();
    m_actions->setUserControl(nullptr);
    m_userCtrl.reset();
    m_road->link().setPort(nullptr);
    m_monitor.reset();
    if (m_serialPort) {
        m_heartbeat.stop();
        m_serialPort->close();
        m_serialPort.reset();
    }
    m_road->setModules(nullptr, nullptr);
    m_modules.stop();
    m_road->results().setStore(nullptr);
    m_actions->setModels(nullptr, nullptr);
    m_records.reset();
    m_accounts.reset();
    m_controller.reset();
    m_actions->setCalibrations(nullptr, nullptr);
    m_twoPoint.reset();
    m_fourPoint.reset();
    m_licence.reset();
}

void CMainWin::onAppanalysis(SComFrame frame)
{
    m_road->link().receive(frame);
}

void CMainWin::onHeardBit()
{
    m_road->link().sendHeartbeat();
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
    m_controller->selectModel(ksGlobalConfig::instance()->station(station).solution, model);
}

void CMainWin::onLineseCheck(bool registered)
{
    ksGlobalData::instance()->registered = registered;
    m_status->setRegistered(registered);
}

void CMainWin::onLogInOut(const QString& name, int, int)
{
    m_status->setUserName(name);
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
    m_actions->trigger(sender()->objectName());
}

void CMainWin::onTestMode(int mode)
{
    m_testMode->enter(mode);
}

void CMainWin::onTrigImage()
{
    for (int station = 1; station <= 2; ++station) {
        if (m_stationEnabled[station - 1])
            m_road->dispatch().onTrigger(station);
    }
}

void CMainWin::closeEvent(QCloseEvent* event)
{
    const auto mayLose = [this](const QStringList& models) {
        return models.isEmpty() || messages::confirmLoss(this, models);
    };
    event->setAccepted(messages::confirmClose(this) && mayLose(m_actions->unsavedModels()));
}

void CMainWin::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_statusTimer)
        return QMainWindow::timerEvent(event);
    m_status->tick(ksGlobalConfig::instance()->onlineMode);
    m_monitor->tick();
}

void CMainWin::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::LanguageChange && m_ui)
        m_ui->retranslateUi(this);
}
