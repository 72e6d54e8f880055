// The start-up of the main window: the steps that make the screen and what it opens.

#include "Resources.h"
#include "config/ksGlobalData.h"
#include "config/ksSysConfig.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "dialogs/registration/QCryptokeyUI.h"
#include "host/CMainWin.h"
#include "host/DeviceActions.h"
#include "host/InfoActions.h"
#include "host/LanguageSwitch.h"
#include "host/LicenceDesk.h"
#include "host/SettingsEffects.h"
#include "host/TestMode.h"
#include "host/ViewMenu.h"
#include "host/WindowActions.h"
#include "host/WindowLook.h"
#include "panels/CellStatusBar.h"
#include "panels/StationPanels.h"
#include "panels/StationView.h"
#include "ui_CMainWin.h"
#include "viewer/ksImgViewer.h"
#include "workflow/CellRecords.h"
#include "workflow/TriggerRoad.h"

#include <valvecell/IEngine.h>

namespace {
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

void CMainWin::createInfoActions()
{
    connect(m_actions, &WindowActions::otherTriggered, new InfoActions(this, m_road->link()), &InfoActions::trigger);
    m_devices = new DeviceActions(this, m_modules);
    connect(m_actions, &WindowActions::otherTriggered, m_devices, &DeviceActions::trigger);
    connect(m_devices, &DeviceActions::changed, m_actions, &WindowActions::logChanges);
    connect(m_actions, &WindowActions::engineeringEnded, m_devices, &DeviceActions::closeCameras);
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

void CMainWin::layOutForCameras()
{
    ICoreCtrl* const core = m_modules.coreCtrl();
    const bool single = core && core->cameraKeys().size() == 1;
    m_ui->singleStationHint->setVisible(single);
    m_panels->showSecond(!single);
    m_ui->grid->setColumnStretch(1, single ? 0 : 1);
    m_ui->grid->setHorizontalSpacing(single ? 0 : m_ui->grid->verticalSpacing());
}
