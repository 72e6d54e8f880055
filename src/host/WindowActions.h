#pragma once

#include "common/AuditChange.h"
#include "host/AccessGate.h"

#include <QObject>
#include <QStringList>

class CZdCtrl;
class IUserCtrl;
class ModelManager;
class ModuleSet;
class QMainWindow;
class QModelMangerUI;
class QPlcIndexUI;
class QSystemSettingUI;
class QTestWidget;
class ksImageCaliUI;
class ksImageCaliUI4P;

/// What the actions of the main window do, by the object name of the action. GUI thread.
class WindowActions : public QObject
{
    Q_OBJECT

public:
    /// All outlive the actions. The dialogs that they show are children of `window`.
    WindowActions(QMainWindow* window, const ModuleSet& modules);
    ~WindowActions() override;

    /// Null without one, or once it goes. Actions for engineers, if the policy says so, then ask for a log-in, and what
    /// they opened closes when the user goes.
    void setUserControl(IUserCtrl* userCtrl);
    void setCalibrations(ksImageCaliUI* twoPoint, ksImageCaliUI4P* fourPoint);
    /// The models and the controller that has their index tables; both null once they go, which ends their dialogs.
    void setModels(ModelManager* models, CZdCtrl* controller);
    /// The engine's list; with fewer than two entries the dialogs take their one-station form.
    void setEngineList(const QStringList& list) { m_engineList = list; }

    /// Models with changes in the designer, on the screen or not, that would be lost with the program.
    QStringList unsavedModels() const;

    /// Does what the action of that object name is for, if the present user may; an unknown name is handed on.
    void trigger(const QString& name);

public slots:
    /// Writes who changed which setting from what to what into the system log.
    void logChanges(const AuditChanges& changes);

signals:
    /// An action that is another's to carry out; whoever knows the name acts.
    void otherTriggered(const QString& name);
    /// The test-mode widget wants one of QTestWidget::TestMode; another interval, in milliseconds, comes before a
    /// start.
    void sgTestMode(int mode);
    void testIntervalChanged(int milliseconds);
    /// Settings hold new values; names are the keys of their files.
    void settingsApplied(const AuditChanges& changes);
    /// What is for engineers has to close: their user has gone.
    void engineeringEnded();
    /// A short text for the status bar.
    void message(const QString& text);

private:
    void askForRights();
    void onUserChanged(int level);
    void openDesigner();
    void startReport();
    void logInOut();
    void showUserManager();
    void openCalibration();
    void openSettings();
    void openTest();
    void openModels();
    void openIndexTable();
    bool hasOneStation() const { return m_engineList.size() < 2; }

    QMainWindow* m_window;
    const ModuleSet& m_modules;
    AccessGate m_gate;
    IUserCtrl* m_userCtrl = nullptr;
    ksImageCaliUI* m_twoPoint = nullptr;
    ksImageCaliUI4P* m_fourPoint = nullptr;
    QStringList m_engineList;
    ModelManager* m_models = nullptr;
    CZdCtrl* m_controller = nullptr;
    QModelMangerUI* m_modelManager = nullptr; ///< these are children of the window, made when they are first wanted
    QPlcIndexUI* m_indexTable = nullptr;
    QTestWidget* m_test;                    ///< child of the window
    QSystemSettingUI* m_settings = nullptr; ///< child of the window; made when it is first wanted
};
