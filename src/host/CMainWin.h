#pragma once

#include "modules/ModuleSet.h"

#include <valvecell/SComFrame.h>

#include <QMainWindow>
#include <QTimer>
#include <QVariantMap>

#include <memory>

class AutoTrigger;
class CZdCtrl;
class CellMonitor;
class CellRecords;
class CellStatusBar;
class DeviceActions;
class LanguageSwitch;
class LicenceDesk;
class WindowLook;
class SettingsEffects;
class StationAccounts;
class StationPanels;
class TestMode;
class TriggerRoad;
class ViewMenu;
class WindowActions;
class ksImageCaliUI;
class ksImageCaliUI4P;
class ksImgViewer;

namespace SystemLog {
class WarningForward;
}

namespace Ui {
class CMainWin;
}

/// The operator's window: a shell that brings the cell up in its required order and hands every event on to the object
/// whose it is. GUI thread.
class CMainWin : public QMainWindow
{
    Q_OBJECT

public:
    /// Runs the whole start-up. A start-up that cannot go on ends the process.
    explicit CMainWin(QWidget* parent = nullptr);
    ~CMainWin() override;

signals:
    void sgRecvData(SComFrame frame);
    void sgShowLog(int station, const QString& text);

public slots:
    void onAppanalysis(SComFrame frame);
    void onHeardBit();
    void onShowImage(int station, const QImage& image);
    /// For the station with that solution.
    void onShowImage(const QString& solution, const QImage& image);
    void onShowLog(int station, const QString& text);
    void onShowName(const QString& station, const QString& label);
    void onSelModel(int station, const QString& model);
    /// The licence check or the registration dialog found the system registered, or not.
    void onLineseCheck(bool registered);
    void onLogInOut(const QString& name, int level, int state);
    void onImageScale(qreal scale);
    /// Opens the pop-up menu of the viewer that sends it.
    void onPopMenu(const QPoint& position);
    /// Switches the language of every open window, and keeps the choice.
    void onLanguageChange(const QString& language);
    void onActionClicked();
    /// One of QTestWidget::TestMode.
    void onTestMode(int mode);
    /// A trigger by software, at each station that is enabled.
    void onTrigImage();

protected:
    void closeEvent(QCloseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // The start-up, in its order; each step is a line of the constructor.
    void buildUi();
    void startSystemLog();
    void loadSettings();
    void loadGlobalConfig();
    void applyLanguage();
    void dress();
    void createWorkflow();
    void createInfoActions();
    void loadModules();
    void openSerialPort();
    void createUserControl();
    void connectViewers();
    void buildStatusBar();
    void prepareImageFolders();
    void logSystemStart();
    void openResultDatabase();
    void createAutoTrigger();
    void connectTestMode();
    void connectSettings();
    void createController();
    void connectStations();
    void selectRunModels();
    void createCalibrations();
    void checkLicence();
    void startStatusTick();
    void readEngineList();
    void enableStations();
    void layOutForCameras();
    void openRoad();

    std::unique_ptr<Ui::CMainWin> m_ui;
    std::unique_ptr<SystemLog::WarningForward> m_warnings;
    std::unique_ptr<LanguageSwitch> m_language;
    ModuleSet m_modules;
    std::unique_ptr<ISerialPort> m_serialPort;
    std::unique_ptr<IUserCtrl> m_userCtrl;

    std::unique_ptr<TriggerRoad> m_road;
    std::unique_ptr<CellRecords> m_records;
    std::unique_ptr<CZdCtrl> m_controller;
    std::unique_ptr<AutoTrigger> m_autoTrigger;
    std::unique_ptr<TestMode> m_testMode;

    std::unique_ptr<ksImageCaliUI> m_twoPoint;
    std::unique_ptr<ksImageCaliUI4P> m_fourPoint;
    std::unique_ptr<LicenceDesk> m_licence;
    std::unique_ptr<SettingsEffects> m_effects;
    std::unique_ptr<StationAccounts> m_accounts;
    std::unique_ptr<CellMonitor> m_monitor;
    ksImgViewer* m_ImgViewer_A = nullptr; ///< of station 1
    ksImgViewer* m_ImgViewer_B = nullptr; ///< of station 2
    StationPanels* m_panels = nullptr;
    ViewMenu* m_viewMenu = nullptr;
    WindowLook* m_look = nullptr;
    WindowActions* m_actions = nullptr;
    DeviceActions* m_devices = nullptr;
    CellStatusBar* m_status = nullptr;
    QTimer m_heartbeat;
    int m_statusTimer = 0;
    QStringList m_engineList;
    bool m_stationEnabled[2] = {false, false};
};
