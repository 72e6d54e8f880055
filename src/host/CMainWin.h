#pragma once

#include "modules/ModuleSet.h"

#include <valvecell/SComFrame.h>

#include <QMainWindow>
#include <QTimer>
#include <QVariantMap>

#include <memory>

class AutoTrigger;
class CZdCtrl;
class CellRecords;
class CellStatusBar;
class ImageRouter;
class LanguageSwitch;
class ModuleRelay;
class PlcLink;
class ResultHandler;
class RoadTimer;
class TriggerDispatch;
class WindowActions;
class ksImageCaliUI;
class ksImageCaliUI4P;
struct StationReading;

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
    void onShowLog(int station, const QString& text);
    void onShowName(const QString& station, const QString& label);
    void onSelModel(int station, const QString& model);
    void onLogInOut(const QString& name, int level, int state);
    void onImageScale(qreal scale);
    void onSystemLog(const QString& text);
    void onActionClicked();
    /// One of QTestWidget::TestMode.
    void onTestMode(int mode);
    /// A trigger by software, at each station that is enabled.
    void onTrigImage();

protected:
    void closeEvent(QCloseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    // The start-up, in its order; each step is a line of the constructor.
    void buildUi();
    void startSystemLog();
    void loadSettings();
    void loadGlobalConfig();
    void applyLanguage();
    void createWorkflow();
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
    void createController();
    void connectStations();
    void selectRunModels();
    void createCalibrations();
    void startStatusTick();
    void readEngineList();
    void enableStations();
    void layOutForCameras();

    void onReading(int station, const StationReading& reading);
    QStringList cameraKeys() const;

    std::unique_ptr<Ui::CMainWin> m_ui;
    std::unique_ptr<SystemLog::WarningForward> m_warnings;
    std::unique_ptr<LanguageSwitch> m_language;
    std::shared_ptr<ModuleRelay> m_relay; ///< shared with the modules' callbacks
    ModuleSet m_modules;
    std::unique_ptr<ISerialPort> m_serialPort;
    std::unique_ptr<IUserCtrl> m_userCtrl;

    std::unique_ptr<PlcLink> m_link;
    std::unique_ptr<TriggerDispatch> m_dispatch;
    std::unique_ptr<ImageRouter> m_router;
    std::unique_ptr<ResultHandler> m_results;
    std::unique_ptr<RoadTimer> m_road;
    std::unique_ptr<CellRecords> m_records;
    std::unique_ptr<CZdCtrl> m_controller;
    std::unique_ptr<AutoTrigger> m_autoTrigger;

    std::unique_ptr<ksImageCaliUI> m_twoPoint;
    std::unique_ptr<ksImageCaliUI4P> m_fourPoint;
    WindowActions* m_actions = nullptr;
    CellStatusBar* m_status = nullptr;
    QTimer m_heartbeat;
    int m_statusTimer = 0;
    QStringList m_engineList;
    int m_testIntervalMs = 1000;
    bool m_stationEnabled[2] = {false, false};
};
