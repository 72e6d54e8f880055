#include "host/WindowActions.h"

#include "common/Step.h"
#include "config/AccessPolicy.h"
#include "config/ShiftConfig.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "db/log/ChangeLine.h"
#include "db/log/LogLine.h"
#include "dialogs/about/QAboutUI.h"
#include "dialogs/backup/QBackupUI.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "dialogs/cameras/QCameraManagerUI.h"
#include "dialogs/cameras/QCameraSettingsUI.h"
#include "dialogs/devices/QDeviceManagerUI.h"
#include "dialogs/help/QHelpUI.h"
#include "dialogs/models/QModelMangerUI.h"
#include "dialogs/models/QPlcIndexUI.h"
#include "dialogs/plcmonitor/QPlcMonitorUI.h"
#include "dialogs/settings/QSystemSettingUI.h"
#include "dialogs/testmode/QTestWidget.h"
#include "host/LicenceDesk.h"
#include "host/Messages.h"
#include "look/LanguageSwitch.h"
#include "panels/AlarmHistory.h"
#include "panels/StationPanels.h"
#include "platform/AppHome.h"
#include "results/ResultsDialog.h"
#include "results/logs/LogPage.h"
#include "results/parts/PartsPage.h"
#include "shell/Workspaces.h"
#include "workflow/CZdCtrl.h"
#include "workflow/Cell.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IDesignerEdits.h>
#include <valvecell/IDesignerImage.h>
#include <valvecell/ISerialPorts.h>
#include <valvecell/IUserAudit.h>
#include <valvecell/IUserCtrl.h>

#include <QCoreApplication>
#include <QMainWindow>
#include <QProcess>
#include <QTimer>

namespace {

/// The two pages that take longest to make are made while nobody waits, and before the cell is at work.
constexpr int warmUpMs = 1500;

bool startReport()
{
    const QString folder = platform::programFolder();
    return QProcess::startDetached(platform::programFile(folder, QStringLiteral("Report")), {}, folder);
}

void logChange(const AuditChange& change, const QString& user)
{
    const QString whose = user.isEmpty() ? QStringLiteral("无") : user;
    SystemLog::information(SystemLog::ChangeLine{change.name, change.before, change.after, whose}.text());
}

} // namespace

const WindowActions::Row WindowActions::rows[] = {
    {"actionSetting", Engineers,
     [](WindowActions& own) {
         if (IDesigner* designer = own.m_parts.cell.modules().designer())
             designer->openDesigner(&own.m_parts.window);
     }},
    {"actionManage", Engineers, [](WindowActions& own) { own.openModels(); }},
    {"actionTest", Engineers, [](WindowActions& own) { own.openTest(); }},
    {"actionHelp", Anybody, [](WindowActions& own) { own.place(own.help(), "actionHelp"); }},
    {"action_Check", Anybody, [](WindowActions& own) { own.openReport(); }},
    {"actionResults", Anybody, [](WindowActions& own) { own.openResults(); }},
    {"actionLog", Anybody, [](WindowActions& own) { own.openLog(); }},
    {"actionAlarms", Anybody, [](WindowActions& own) { own.openAlarms(); }},
    {"actionIndexTable", Engineers, [](WindowActions& own) { own.openIndexTable(); }},
    {"actionSystem", Engineers, [](WindowActions& own) { own.openSettings(); }},
    {"main_Login_action", Anybody, [](WindowActions& own) { own.logInOut(); }},
    {"main_action_userManager", Anybody,
     [](WindowActions& own) {
         if (IUserCtrl* const user = own.m_parts.userCtrl)
             own.m_parts.cell.calls().run(
                 "QUserInfo: showUserManager()", [&] { user->showUserManager(&own.m_parts.window); }, CallWatch::Takes);
         else
             messages::notEnabled();
     }},
    {"actionStandard", Engineers, [](WindowActions& own) { own.openCalibration(); }},
    {"actionRegister", Anybody, [](WindowActions& own) { own.m_parts.licence.openDialog(); }},
    {"actionCamera", Engineers,
     [](WindowActions& own) {
         ICoreCtrl* const core = own.m_parts.cell.modules().coreCtrl();
         if (!core)
             return;
         const auto make = [&own, core] {
             auto* made = new QCameraManagerUI(*core, own.m_parts.config, &own.m_parts.window);
             connect(made, &QCameraManagerUI::camerasApplied, &own, &WindowActions::logChanges);
             connect(made, &QCameraManagerUI::settingsWanted, &own, &WindowActions::openCamera);
             return made;
         };
         own.place(own.dialog<QCameraManagerUI>(Engineers, make), "actionCamera");
     }},
    {"actionDevice", Anybody,
     [](WindowActions& own) {
         const auto make = [&own] {
             Cell& cell = own.m_parts.cell;
             return new QDeviceManagerUI({[&cell] { return cell.modules().report(); }, [&cell] { return cell.port(); }},
                                         own.m_parts.settings, &own.m_parts.window);
         };
         own.place(own.dialog<QDeviceManagerUI>(Anybody, make), "actionDevice");
     }},
    {"actionPlc", Anybody,
     [](WindowActions& own) {
         const auto make = [&own] { return new QPlcMonitorUI(own.m_parts.cell.link(), &own.m_parts.window); };
         own.place(own.dialog<QPlcMonitorUI>(Anybody, make), "actionPlc");
     }},
    {"actionBackup", Engineers, [](WindowActions& own) { own.openBackup(); }},
    {"actionAssistant", Engineers, [](WindowActions& own) { own.openFirstStart(); }},
    {"actionGuide", Engineers, [](WindowActions& own) { own.openCalibrationGuide(); }},
    {"actionTeach", Engineers, [](WindowActions& own) { own.openTeaching({}); }},
    {"actionLibrary", Engineers, [](WindowActions& own) { own.openLibrary(); }},
    {"actionAbout", Anybody,
     [](WindowActions& own) {
         own.place(own.dialog<QAboutUI>(Anybody, [&own] { return new QAboutUI(&own.m_parts.window); }), "actionAbout");
     }},
};

WindowActions::WindowActions(const Parts& parts)
    : m_parts(parts)
    , m_engineering({&parts.test, &parts.twoPoint, &parts.fourPoint})
{
    for (CalibrationDialog* dialog : std::initializer_list<CalibrationDialog*>{&parts.twoPoint, &parts.fourPoint}) {
        connect(dialog, &CalibrationDialog::calibrationApplied, this, &WindowActions::logChanges);
        connect(dialog, &CalibrationDialog::guideWanted, this, &WindowActions::openCalibrationGuide);
        dialog->setUser([this] { return currentUser(); });
    }
    QTimer::singleShot(warmUpMs, this, &WindowActions::results);
    QTimer::singleShot(2 * warmUpMs, this, &WindowActions::help);
    showRights();
    connect(&parts.rooms, &Workspaces::actionWanted, this, &WindowActions::trigger);
    connect(this, &WindowActions::settingsApplied, this, &WindowActions::showRights);
    QTimer::singleShot(0, this, &WindowActions::offerFirstStart);
    if (!parts.userCtrl)
        return;
    connect(parts.userCtrl, &IUserCtrl::sgCurrentUserInfo, this,
            [this](const QString&, int level) { onUserChanged(level); });
    if (auto* audit = qobject_cast<IUserAudit*>(parts.userCtrl)) {
        audit->setListener([](const UserChange& change) {
            logChange({change.name, change.before, change.after}, change.by);
        });
    }
}

WindowActions::~WindowActions()
{
    for (const QPointer<QDialog>& dialog : qAsConst(m_dialogs))
        delete dialog;
}

bool WindowActions::allowsEngineering() const
{
    return !m_parts.policy.engineerOnly || m_level >= engineerLevel;
}

void WindowActions::trigger(const QString& name)
{
    const Step step("action of the window");
    const auto* row = std::find_if(std::begin(rows), std::end(rows),
                                   [&name](const Row& each) { return name == QLatin1String(each.action); });
    const bool isKnown = row != std::end(rows);
    const bool engineers = isKnown ? row->who == Engineers : m_parts.rooms.isForEngineers(name);
    if (engineers && !allowsEngineering())
        return askForRights();
    if (isKnown)
        row->open(*this);
    else
        m_parts.rooms.openPage(name);
}

void WindowActions::showRights()
{
    for (const Row& row : rows)
        m_parts.rooms.setLocked(QLatin1String(row.action), row.who == Engineers && !allowsEngineering());
    m_parts.rooms.lockEngineers(!allowsEngineering());
}

void WindowActions::place(QDialog* dialog, const char* action)
{
    m_parts.rooms.open(dialog, QLatin1String(action));
}

void WindowActions::askForRights()
{
    emit message(tr("需要工程师权限，请先登录"));
    if (m_parts.userCtrl)
        showLogIn();
    else
        messages::notEnabled();
}

void WindowActions::onUserChanged(int level)
{
    m_level = level;
    showRights();
    if (!allowsEngineering())
        endEngineering();
}

/// The designer keeps its edits; of the cameras, what was not applied is gone.
void WindowActions::endEngineering()
{
    const auto dialogs = m_engineering;
    for (const QPointer<QDialog>& dialog : dialogs) {
        if (!dialog)
            continue;
        const auto choosers = dialog->findChildren<QDialog*>();
        for (QDialog* chooser : choosers)
            chooser->reject();
        dialog->reject();
        if (dialog && (qobject_cast<QCameraManagerUI*>(dialog) || qobject_cast<QCameraSettingsUI*>(dialog)))
            delete dialog;
    }
    m_engineering.removeAll(nullptr);
    if (auto* edits = extensionOf<IDesignerEdits>(m_parts.cell.modules().designer()))
        edits->hideDesigner();
}

QStringList WindowActions::unsavedModels() const
{
    auto* edits = extensionOf<IDesignerEdits>(m_parts.cell.modules().designer());
    return edits ? edits->unsaved() : QStringList();
}

void WindowActions::logInOut()
{
    IUserCtrl* const user = m_parts.userCtrl;
    if (!user)
        return messages::notEnabled();
    CallWatch& calls = m_parts.cell.calls();
    if (calls.run("QUserInfo: state()", [user] { return user->state(); }) != IUserCtrl::LoggedIn)
        showLogIn();
    else if (messages::confirmLogOut(&m_parts.window, currentUser()))
        calls.run("QUserInfo: logOut()", [user] { user->logOut(); });
}

void WindowActions::showLogIn()
{
    m_parts.cell.calls().run(
        "QUserInfo: showLogInDialog()", [this] { m_parts.userCtrl->showLogInDialog(&m_parts.window); },
        CallWatch::Takes);
}

void WindowActions::openCalibration()
{
    const auto open = [this](auto& dialog) {
        if (hasOneStation())
            dialog.setOneStation(true);
        place(&dialog, "actionStandard");
    };
    retranslate();
    if (m_parts.config.use4pointstand)
        open(m_parts.fourPoint);
    else
        open(m_parts.twoPoint);
}

void WindowActions::retranslate()
{
    m_parts.fourPoint.setWindowTitle(tr("图像标定 4点标定"));
    m_parts.twoPoint.setWindowTitle(tr("图像标定 2点标定"));
}

void WindowActions::openSettings()
{
    auto* settings = dialog<QSystemSettingUI>(Engineers, [this] {
        ShiftConfig& shifts = *ShiftConfig::instance();
        shifts.load();
        auto* made = new QSystemSettingUI(m_parts.settings, m_parts.config, m_parts.policy, m_parts.limits, shifts,
                                          &m_parts.window);
        connect(made, &QSystemSettingUI::settingsApplied, this, &WindowActions::logChanges);
        connect(made, &QSystemSettingUI::settingsApplied, this, &WindowActions::settingsApplied);
        return made;
    });
    ICoreCtrl* core = m_parts.cell.modules().coreCtrl();
    settings->setCameras(core ? core->cameraKeys() : QStringList());
    settings->setSolutions(m_engineList);
    settings->setLanguages(LanguageSwitch::available());
    settings->setPorts(extensionOf<ISerialPorts>(m_parts.cell.port()));
    settings->setOneStation(hasOneStation());
    if (const CellRecords* records = m_parts.cell.records())
        settings->setImageDisk(records->health().freeMiB, records->isKeepingShortened());
    place(settings, "actionSystem");
}

/// A plant without the program reads its results here.
void WindowActions::openReport()
{
    if (startReport())
        return;
    emit message(tr("报表程序无法启动，已在本窗口中打开"));
    openResults();
}

void WindowActions::openResults()
{
    place(results(), "actionResults");
    results()->open();
}

void WindowActions::openLog()
{
    if (!m_log) {
        m_log = new LogPage(&m_parts.rooms);
        m_log->setHome(platform::home());
        connect(m_log, &LogPage::partsWanted, this, [this](const QDateTime& from, const QDateTime& to) {
            openResults();
            results()->view().parts().showTimes(from, to);
            results()->view().setCurrentWidget(&results()->view().parts());
        });
    }
    m_log->refresh();
    m_parts.rooms.open(m_log, QStringLiteral("actionLog"));
}

void WindowActions::openAlarms()
{
    place(dialog<AlarmHistory>(Anybody, [this] { return new AlarmHistory(m_parts.cell.alarms(), &m_parts.window); }),
          "actionAlarms");
}

void WindowActions::openBackup()
{
    const auto make = [this] {
        auto* made = new QBackupUI(platform::home(), &m_parts.window);
        connect(made, &QBackupUI::done, this, [this](const QString& what, const QString& file) {
            logChanges({{what, QString(), file}});
        });
        return made;
    };
    place(dialog<QBackupUI>(Engineers, make), "actionBackup");
}

/// Beside the stations, so that one sees what a test does.
void WindowActions::openTest()
{
    m_parts.test.setOneStation(hasOneStation());
    m_parts.rooms.openTool(&m_parts.test);
}

QHelpUI* WindowActions::help()
{
    const QString guides = platform::programFolder() + QStringLiteral("/docs");
    return dialog<QHelpUI>(Anybody, [&] {
        auto* made = new QHelpUI(guides, &m_parts.window);
        connect(made, &QHelpUI::assistantWanted, this, [this] { trigger(QStringLiteral("actionAssistant")); });
        return made;
    });
}

ResultsDialog* WindowActions::results()
{
    return dialog<ResultsDialog>(Anybody, [this] {
        auto* made = new ResultsDialog(&m_parts.window);
        made->view().setUser([this] { return currentUser(); });
        made->view().setHome(platform::home());
        made->view().parts().setDesigner(extensionOf<IDesignerImage>(m_parts.cell.modules().designer()));
        connect(&made->view().parts(), &PartsPage::designerWanted, this, &WindowActions::openInDesigner);
        connect(this, &WindowActions::settingsApplied, made, [made] { made->view().readShifts(); });
        return made;
    });
}

void WindowActions::openInDesigner(const QString& picture, const QString& model, int station)
{
    if (!allowsEngineering())
        return askForRights();
    auto* designer = extensionOf<IDesignerImage>(m_parts.cell.modules().designer());
    const QString solution = m_parts.config.station(station).solution;
    m_parts.cell.calls().run(
        "ksdesigner: openImage()", [&] { designer->openImage(&m_parts.window, solution, model, picture); },
        CallWatch::Takes);
}

void WindowActions::showParts(int station, bool failuresOnly)
{
    openResults();
    results()->view().showDay(station, failuresOnly);
}

void WindowActions::showPart(int station, qint64 wall)
{
    openResults();
    results()->view().showPart(station, wall);
}

void WindowActions::serve(StationPanels& panels)
{
    connect(&panels, &StationPanels::partsWanted, this, &WindowActions::showParts);
    connect(&panels, &StationPanels::partWanted, this, &WindowActions::showPart);
    connect(&panels, &StationPanels::shiftResetWanted, this,
            [this, &panels](int station) { resetShift(panels, station); });
}

void WindowActions::resetShift(StationPanels& panels, int station)
{
    if (!allowsEngineering())
        return askForRights();
    if (messages::confirmShiftReset(&m_parts.window, station))
        logChanges(panels.resetShift(station));
}

void WindowActions::openModels()
{
    Cell& cell = m_parts.cell;
    if (!cell.models())
        return;
    const auto make = [this, &cell] {
        auto* made = new QModelMangerUI(*cell.models(), cell.modules().engine(), &m_parts.window);
        connect(made, &QModelMangerUI::modelsChanged, this, &WindowActions::logChanges);
        connect(made, &QModelMangerUI::indexTableWanted, this, &WindowActions::openIndexTable);
        connect(made, &QModelMangerUI::teachingWanted, this, &WindowActions::openTeaching);
        connect(made, &QModelMangerUI::libraryWanted, this, &WindowActions::openLibrary);
        return made;
    };
    place(dialog<QModelMangerUI>(Engineers, make), "actionManage");
}

void WindowActions::openIndexTable()
{
    Cell& cell = m_parts.cell;
    if (!cell.models())
        return;
    auto* table = dialog<QPlcIndexUI>(Engineers, [this, &cell] {
        auto* made = new QPlcIndexUI(*cell.models(), cell.controller()->plcIndices(), &m_parts.window);
        connect(made, &QPlcIndexUI::tablesApplied, this, &WindowActions::logChanges);
        return made;
    });
    table->setStations(cell.controller()->stationNames());
    place(table, "actionIndexTable");
}

void WindowActions::openCamera(const QString& key)
{
    ICoreCtrl* const core = m_parts.cell.modules().coreCtrl();
    if (!core)
        return;
    const auto make = [this, core, key] {
        auto* made = new QCameraSettingsUI(*core, m_parts.config, key, &m_parts.window);
        made->setAttribute(Qt::WA_DeleteOnClose); // there may be many cameras, and each dialog holds a picture
        connect(made, &QCameraSettingsUI::settingsApplied, this, &WindowActions::logChanges);
        return made;
    };
    place(dialog<QCameraSettingsUI>(Engineers, make, key), "actionCamera");
}

void WindowActions::logChanges(const AuditChanges& changes) const
{
    for (const AuditChange& change : changes)
        logChange(change, currentUser());
}

QString WindowActions::currentUser() const
{
    IUserCtrl* const user = m_parts.userCtrl;
    return user ? m_parts.cell.calls().run("QUserInfo: currentUserName()", [user] { return user->currentUserName(); })
                : QString();
}
