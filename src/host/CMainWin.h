#pragma once

#include <valvecell/SComFrame.h>

#include <QMainWindow>

#include <memory>

class Cell;
class CellStatusBar;
class IUserCtrl;
class LanguageSwitch;
class LicenceDesk;
class QTestWidget;
class StationPanels;
class ViewMenu;
class WindowActions;
class WindowLook;
class ksImageCaliUI;
class ksImageCaliUI4P;
class ksImgViewer;

namespace SystemLog {
class WarningForward;
}

namespace Ui {
class CMainWin;
}

/// The operator's window: a view of the cell, which it brings up in the required order. GUI thread.
class CMainWin : public QMainWindow
{
    Q_OBJECT

public:
    /// Runs the whole start-up. One that cannot go on ends the process, or leaves the window with a problem().
    explicit CMainWin(QWidget* parent = nullptr);
    ~CMainWin() override;
    const QString& problem() const { return m_problem; }

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
    /// One of TestMode.
    void onTestMode(int mode);
    /// A trigger by software, at each station that is enabled.
    void onTrigImage();

protected:
    void closeEvent(QCloseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // The start-up, in its order; each step is a line of the constructor, those of the cell among them.
    void buildUi();
    void loadSettings();
    void dress();
    void createWorkflow();
    bool loadModules();
    void openSerialPort();
    void createUserControl();
    void connectViewers();
    void buildStatusBar();
    void connectTestMode();
    void createActions();
    void readEngineList();
    void layOutForCameras();

    std::unique_ptr<Ui::CMainWin> m_ui;
    std::unique_ptr<SystemLog::WarningForward> m_warnings;
    std::unique_ptr<LanguageSwitch> m_language;
    std::unique_ptr<ksImageCaliUI> m_twoPoint;
    std::unique_ptr<ksImageCaliUI4P> m_fourPoint;
    std::unique_ptr<LicenceDesk> m_licence;
    // Destroyed from the last to the first: what shows the cell goes before it.
    std::unique_ptr<Cell> m_cell;
    std::unique_ptr<IUserCtrl> m_userCtrl;
    std::unique_ptr<WindowActions> m_actions;
    ksImgViewer* m_ImgViewer_A = nullptr; ///< of station 1
    ksImgViewer* m_ImgViewer_B = nullptr; ///< of station 2
    StationPanels* m_panels = nullptr;
    ViewMenu* m_viewMenu = nullptr;
    QTestWidget* m_test = nullptr;
    WindowLook* m_look = nullptr;
    CellStatusBar* m_status = nullptr;
    int m_statusTimer = 0;
    QString m_problem;
    bool m_asksToClose = false;
};
