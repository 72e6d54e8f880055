#pragma once

#include "common/AuditChange.h"

#include <QDialog>
#include <QHash>
#include <QPointer>

class AccessPolicy;
class Cell;
class CellLimits;
class IUserCtrl;
class LicenceDesk;
class LogPage;
class QHelpUI;
class QMainWindow;
class QTestWidget;
class ResultsDialog;
class StationPanels;
class Workspaces;
class ksGlobalConfig;
class ksImageCaliUI;
class ksImageCaliUI4P;
class ksSysConfig;

/// What the actions of the main window do: one table of names, who may, and what opens. Owns the dialogs that it opens,
/// each made when it is first wanted. GUI thread.
class WindowActions : public QObject
{
    Q_OBJECT

public:
    /// All outlive the actions.
    struct Parts
    {
        QMainWindow& window;
        Cell& cell;
        ksSysConfig& settings;
        ksGlobalConfig& config;
        AccessPolicy& policy;
        CellLimits& limits;
        QTestWidget& test;
        ksImageCaliUI& twoPoint;
        ksImageCaliUI4P& fourPoint;
        LicenceDesk& licence;
        IUserCtrl* userCtrl; ///< null without the module
        Workspaces& rooms;   ///< where the dialogs have their places
    };

    /// The level of IUserCtrl::sgCurrentUserInfo from which on everything may be opened; 0 is nobody.
    static constexpr int engineerLevel = 2;

    explicit WindowActions(const Parts& parts);
    ~WindowActions() override;

    /// The engine's list; with fewer than two entries the dialogs take their one-station form.
    void setEngineList(const QStringList& list) { m_engineList = list; }

    /// Models with changes in the designer, on the screen or not, that would be lost with the program.
    QStringList unsavedModels() const;

    /// Does what the stations' panels ask for; they outlive the actions.
    void serve(StationPanels& panels);

public slots:
    /// Gives the titles that a dialog has from its action, in the present language.
    void retranslate();
    /// Does what the action of that object name is for, or opens its page, if the present user may; an unknown name
    /// does nothing.
    void trigger(const QString& name);
    /// Writes who changed which setting from what to what into the system log.
    void logChanges(const AuditChanges& changes) const;
    QString currentUser() const;
    /// The day's parts of a station, or of them those that were not found or refused, in their page.
    void showParts(int station, bool failuresOnly);
    /// The part of a station at that moment (see PartTable) there.
    void showPart(int station, qint64 wall);

signals:
    /// Settings hold new values; names are the keys of their files.
    void settingsApplied(const AuditChanges& changes);
    /// A short text for the status bar.
    void message(const QString& text);

private:
    enum Who { Anybody, Engineers };
    struct Row
    {
        const char* action;
        Who who;
        void (*open)(WindowActions& own);
    };
    static const Row rows[];

    void logInOut();
    void showLogIn();
    void openCalibration();
    void openCalibrationGuide();
    void openSettings();
    void openReport();
    void openResults();
    void openLog();
    void openAlarms();
    void openBackup();
    void openTest();
    ResultsDialog* results();
    void resetShift(StationPanels& panels, int station);
    /// Runs a part's picture again, at the model that it had.
    void openInDesigner(const QString& picture, const QString& model, int station);
    QHelpUI* help();
    void openModels();
    void openIndexTable();
    void offerFirstStart();
    void openFirstStart();
    void openLibrary();
    void openTeaching(const QString& name);
    void openCamera(const QString& key);

    /// Whether what is for engineers may be open now.
    bool allowsEngineering() const;
    void askForRights();
    void onUserChanged(int level);
    /// Closes what only engineers may have open.
    void endEngineering();
    /// Shows by the actions what the present user may do.
    void showRights();
    /// Shows the dialog as the page of that action.
    void place(QDialog* dialog, const char* action);
    bool hasOneStation() const { return m_engineList.size() < 2; }
    /// The dialog of that class, made by `make` when there is none; `key` tells several of a class apart.
    template <typename Dialog, typename Make>
    Dialog* dialog(Who who, Make make, const QString& key = {});

    const Parts m_parts;
    QStringList m_engineList;
    QPointer<LogPage> m_log;
    int m_level = 0;
    QHash<QString, QPointer<QDialog>> m_dialogs; ///< by class and key
    QVector<QPointer<QDialog>> m_engineering;    ///< those of them that are for engineers, and the calibrations
};

template <typename Dialog, typename Make>
Dialog* WindowActions::dialog(Who who, Make make, const QString& key)
{
    QPointer<QDialog>& known = m_dialogs[QLatin1String(Dialog::staticMetaObject.className()) + QLatin1Char('/') + key];
    if (!known) {
        known = make();
        if (who == Engineers)
            m_engineering.append(known);
    }
    return static_cast<Dialog*>(known.data());
}
