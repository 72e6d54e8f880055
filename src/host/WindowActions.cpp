#include "host/WindowActions.h"

#include "common/Step.h"
#include "config/AccessPolicy.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
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
#include "platform/AppHome.h"
#include "results/ResultsDialog.h"
#include "workflow/CZdCtrl.h"
#include "workflow/Cell.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IDesignerEdits.h>
#include <valvecell/ISerialPorts.h>
#include <valvecell/IUserAudit.h>
#include <valvecell/IUserCtrl.h>

#include <QCoreApplication>
#include <QMainWindow>
#include <QProcess>

namespace {

/// Shows a dialog, or brings the one that is open to the front.
void show(QDialog* dialog)
{
    if (!dialog->isVisible())
        dialog->setWindowFlags(Qt::Dialog | Qt::WindowCloseButtonHint);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

bool startReport()
{
    const QString folder = platform::programFolder();
    return QProcess::startDetached(platform::programFile(folder, QStringLiteral("Report")), {}, folder);
}

void logChange(const AuditChange& change, const QString& user)
{
    SystemLog::information(
        QStringLiteral("设置更改[%1]:%2 → %3,用户:%4")
            .arg(change.name, change.before, change.after, user.isEmpty() ? QStringLiteral("无") : user));
}

} // namespace

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

const WindowActions::Row WindowActions::rows[] = {
    {"actionSetting", Engineers,
     [](WindowActions& own) {
         if (IDesigner* designer = own.m_parts.cell.modules().designer())
             designer->openDesigner(&own.m_parts.window);
     }},
    {"actionManage", Engineers, [](WindowActions& own) { own.openModels(); }},
    {"actionTest", Engineers,
     [](WindowActions& own) {
         own.m_parts.test.setOneStation(own.hasOneStation());
         show(&own.m_parts.test);
     }},
    {"actionHelp", Anybody,
     [](WindowActions& own) {
         const QString guides = platform::programFolder() + QStringLiteral("/docs");
         show(own.dialog<QHelpUI>(Anybody, [&] { return new QHelpUI(guides, &own.m_parts.window); }));
     }},
    {"action_Check", Anybody, [](WindowActions& own) { own.openReport(); }},
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
         show(own.dialog<QCameraManagerUI>(Engineers, [&own, core] {
             auto* made = new QCameraManagerUI(*core, own.m_parts.config, &own.m_parts.window);
             connect(made, &QCameraManagerUI::camerasApplied, &own, &WindowActions::logChanges);
             connect(made, &QCameraManagerUI::settingsWanted, &own, &WindowActions::openCamera);
             return made;
         }));
     }},
    {"actionDevice", Anybody,
     [](WindowActions& own) {
         show(own.dialog<QDeviceManagerUI>(Anybody, [&own] {
             Cell& cell = own.m_parts.cell;
             return new QDeviceManagerUI({[&cell] { return cell.modules().report(); }, [&cell] { return cell.port(); }},
                                         own.m_parts.settings, &own.m_parts.window);
         }));
     }},
    {"actionPlc", Anybody,
     [](WindowActions& own) {
         show(own.dialog<QPlcMonitorUI>(
             Anybody, [&own] { return new QPlcMonitorUI(own.m_parts.cell.link(), &own.m_parts.window); }));
     }},
    {"actionBackup", Engineers,
     [](WindowActions& own) {
         show(own.dialog<QBackupUI>(Engineers, [&own] {
             auto* made = new QBackupUI(platform::home(), &own.m_parts.window);
             connect(made, &QBackupUI::done, &own, [&own](const QString& what, const QString& file) {
                 own.logChanges({{what, QString(), file}});
             });
             return made;
         }));
     }},
    {"actionAbout", Anybody,
     [](WindowActions& own) {
         show(own.dialog<QAboutUI>(Anybody, [&own] { return new QAboutUI(&own.m_parts.window); }));
     }},
};

WindowActions::WindowActions(const Parts& parts)
    : m_parts(parts)
    , m_engineering({&parts.test, &parts.twoPoint, &parts.fourPoint})
{
    for (CalibrationDialog* dialog : std::initializer_list<CalibrationDialog*>{&parts.twoPoint, &parts.fourPoint}) {
        connect(dialog, &CalibrationDialog::calibrationApplied, this, &WindowActions::logChanges);
        dialog->setUser([this] { return currentUser(); });
    }
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
    if (row == std::end(rows))
        return;
    if (row->who == Engineers && !allowsEngineering())
        return askForRights();
    row->open(*this);
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
        show(&dialog);
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
        auto* made =
            new QSystemSettingUI(m_parts.settings, m_parts.config, m_parts.policy, m_parts.limits, &m_parts.window);
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
    show(settings);
}

/// A plant without the program reads its results here.
void WindowActions::openReport()
{
    if (startReport())
        return;
    emit message(tr("报表程序无法启动，已在本窗口中打开"));
    results()->open();
}

ResultsDialog* WindowActions::results()
{
    return dialog<ResultsDialog>(Anybody, [this] {
        auto* made = new ResultsDialog(&m_parts.window);
        made->view().setUser([this] { return currentUser(); });
        made->view().setHome(platform::home());
        return made;
    });
}

void WindowActions::showParts(int station, bool failuresOnly)
{
    ResultsDialog* own = results();
    own->open();
    own->view().showDay(station, failuresOnly);
}

void WindowActions::openModels()
{
    Cell& cell = m_parts.cell;
    if (!cell.models())
        return;
    show(dialog<QModelMangerUI>(Engineers, [this, &cell] {
        auto* made = new QModelMangerUI(*cell.models(), cell.modules().engine(), &m_parts.window);
        connect(made, &QModelMangerUI::modelsChanged, this, &WindowActions::logChanges);
        connect(made, &QModelMangerUI::indexTableWanted, this, &WindowActions::openIndexTable);
        return made;
    }));
}

void WindowActions::openIndexTable()
{
    Cell& cell = m_parts.cell;
    auto* table = dialog<QPlcIndexUI>(Engineers, [this, &cell] {
        auto* made = new QPlcIndexUI(*cell.models(), cell.controller()->plcIndices(), &m_parts.window);
        connect(made, &QPlcIndexUI::tablesApplied, this, &WindowActions::logChanges);
        return made;
    });
    table->setStations(cell.controller()->stationNames());
    show(table);
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
    show(dialog<QCameraSettingsUI>(Engineers, make, key));
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
