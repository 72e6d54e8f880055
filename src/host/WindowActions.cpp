#include "host/WindowActions.h"

#include "config/AccessPolicy.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "dialogs/models/QModelMangerUI.h"
#include "dialogs/models/QPlcIndexUI.h"
#include "dialogs/settings/QSystemSettingUI.h"
#include "dialogs/testmode/QTestWidget.h"
#include "host/AuditLine.h"
#include "host/Messages.h"
#include "host/ShowDialog.h"
#include "modules/ModuleSet.h"
#include "platform/ModuleFiles.h"
#include "workflow/CZdCtrl.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IDesignerEdits.h>
#include <valvecell/IUserAudit.h>
#include <valvecell/IUserCtrl.h>

#include <QCoreApplication>
#include <QMainWindow>
#include <QProcess>

WindowActions::WindowActions(QMainWindow* window, const ModuleSet& modules)
    : QObject(window)
    , m_window(window)
    , m_modules(modules)
    , m_gate(*AccessPolicy::instance())
    , m_test(new QTestWidget(window))
{
    connect(m_test, &QTestWidget::sgTestMode, this, &WindowActions::sgTestMode);
    connect(m_test, &QTestWidget::intervalChanged, this, &WindowActions::testIntervalChanged);
}

WindowActions::~WindowActions() = default;

void WindowActions::setCalibrations(ksImageCaliUI* twoPoint, ksImageCaliUI4P* fourPoint)
{
    m_twoPoint = twoPoint;
    m_fourPoint = fourPoint;
    for (CalibrationDialog* dialog : std::initializer_list<CalibrationDialog*>{twoPoint, fourPoint}) {
        if (dialog)
            connect(dialog, &CalibrationDialog::calibrationApplied, this, &WindowActions::logChanges);
    }
}

void WindowActions::setUserControl(IUserCtrl* userCtrl)
{
    m_userCtrl = userCtrl;
    if (!userCtrl)
        return;
    connect(userCtrl, &IUserCtrl::sgCurrentUserInfo, this, [this](const QString&, int level) { onUserChanged(level); });
    if (auto* audit = qobject_cast<IUserAudit*>(userCtrl)) {
        audit->setListener([](const UserChange& change) {
            logAudit({change.name, change.before, change.after}, change.by);
        });
    }
}

void WindowActions::onUserChanged(int level)
{
    m_gate.setLevel(level);
    if (m_gate.allowsEngineering())
        return;
    for (QDialog* dialog :
         std::initializer_list<QDialog*>{m_indexTable, m_modelManager, m_settings, m_twoPoint, m_fourPoint}) {
        if (dialog)
            dialog->reject();
    }
    if (auto* edits = extensionOf<IDesignerEdits>(m_modules.designer()))
        edits->hideDesigner();
    emit engineeringEnded();
}

void WindowActions::askForRights()
{
    emit message(tr("需要工程师权限，请先登录"));
    if (m_userCtrl)
        m_userCtrl->showLogInDialog(m_window);
    else
        messages::notEnabled();
}

void WindowActions::trigger(const QString& name)
{
    static const QPair<const char*, void (WindowActions::*)()> actions[] = {
        {"actionSetting", &WindowActions::openDesigner},
        {"actionManage", &WindowActions::openModels},
        {"actionTest", &WindowActions::openTest},
        {"action_Check", &WindowActions::startReport},
        {"actionSystem", &WindowActions::openSettings},
        {"main_Login_action", &WindowActions::logInOut},
        {"main_action_userManager", &WindowActions::showUserManager},
        {"actionStandard", &WindowActions::openCalibration},
    };
    if (!m_gate.allows(name))
        return askForRights();
    for (const auto& [known, act] : actions) {
        if (name == QLatin1String(known))
            return (this->*act)();
    }
    emit otherTriggered(name);
}

void WindowActions::openDesigner()
{
    if (IDesigner* designer = m_modules.designer())
        designer->openDesigner(m_window);
}

QStringList WindowActions::unsavedModels() const
{
    auto* edits = extensionOf<IDesignerEdits>(m_modules.designer());
    return edits ? edits->unsaved() : QStringList();
}

void WindowActions::startReport()
{
    const QString folder = QCoreApplication::applicationDirPath();
    if (!QProcess::startDetached(platform::programFile(folder, QStringLiteral("Report")), {}, folder))
        emit message(tr("报表程序无法启动"));
}

void WindowActions::logInOut()
{
    if (!m_userCtrl)
        messages::notEnabled();
    else if (m_userCtrl->state() != IUserCtrl::LoggedIn)
        m_userCtrl->showLogInDialog(m_window);
    else if (messages::confirmLogOut(m_window, m_userCtrl->currentUserName()))
        m_userCtrl->logOut();
}

void WindowActions::showUserManager()
{
    if (m_userCtrl)
        m_userCtrl->showUserManager(m_window);
    else
        messages::notEnabled();
}

void WindowActions::openCalibration()
{
    const auto open = [this](auto* dialog, const QString& title) {
        if (!dialog)
            return;
        if (hasOneStation())
            dialog->setOneStation(true);
        dialog->setWindowTitle(title);
        showDialog(dialog);
    };
    if (ksGlobalConfig::instance()->use4pointstand)
        open(m_fourPoint, tr("图像标定 4点标定"));
    else
        open(m_twoPoint, tr("图像标定 2点标定"));
}

void WindowActions::openTest()
{
    m_test->setOneStation(hasOneStation());
    showDialog(m_test);
}

void WindowActions::openSettings()
{
    if (!m_settings) {
        m_settings = new QSystemSettingUI(*ksSysConfig::instance(), *ksGlobalConfig::instance(),
                                          *AccessPolicy::instance(), m_window);
        connect(m_settings, &QSystemSettingUI::settingsApplied, this, &WindowActions::logChanges);
        connect(m_settings, &QSystemSettingUI::settingsApplied, this, &WindowActions::settingsApplied);
    }
    ICoreCtrl* core = m_modules.coreCtrl();
    m_settings->setCameras(core ? core->cameraKeys() : QStringList());
    m_settings->setSolutions(m_engineList);
    m_settings->setOneStation(hasOneStation());
    showDialog(m_settings);
}

void WindowActions::setModels(ModelManager* models, CZdCtrl* controller)
{
    delete m_indexTable;
    delete m_modelManager;
    m_indexTable = nullptr;
    m_modelManager = nullptr;
    m_models = models;
    m_controller = controller;
}

void WindowActions::openModels()
{
    if (!m_models)
        return;
    if (!m_modelManager) {
        m_modelManager = new QModelMangerUI(*m_models, m_modules.engine(), m_window);
        connect(m_modelManager, &QModelMangerUI::modelsChanged, this, &WindowActions::logChanges);
        connect(m_modelManager, &QModelMangerUI::indexTableWanted, this, &WindowActions::openIndexTable);
    }
    showDialog(m_modelManager);
}

void WindowActions::openIndexTable()
{
    if (!m_indexTable) {
        m_indexTable = new QPlcIndexUI(*m_models, m_controller->plcIndices(), m_window);
        connect(m_indexTable, &QPlcIndexUI::tablesApplied, this, &WindowActions::logChanges);
    }
    m_indexTable->setStations(m_controller->stationNames());
    showDialog(m_indexTable);
}

void WindowActions::logChanges(const AuditChanges& changes)
{
    const QString user = m_userCtrl ? m_userCtrl->currentUserName() : QString();
    for (const AuditChange& change : changes)
        logAudit(change, user);
}
