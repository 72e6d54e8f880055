#include "UserCtrl.h"

#include "dialogs/LogInDialog.h"
#include "dialogs/NewUserDialog.h"
#include "dialogs/PasswordDialog.h"
#include "dialogs/UserManagerDialog.h"

#include <valvecell/Export.h>
#include <valvecell/HomeFiles.h>

#include <QMessageBox>
#include <QPushButton>

namespace {

/// A dialog that was closed is deleted a little later, and is no longer of use.
bool isOpen(const QDialog* dialog)
{
    return dialog && !dialog->isHidden();
}

void bringUp(QDialog* dialog)
{
    dialog->open();
    dialog->raise();
    dialog->activateWindow();
}

} // namespace

UserCtrl::UserCtrl()
    : m_session(HomeFiles::home() + QStringLiteral("/user/users.json"))
    , m_rules(HomeFiles::home() + QStringLiteral("/user/login.json"))
{
    connect(&m_session, &UserSession::currentUserChanged, this, &UserCtrl::onCurrentUserChanged);
    connect(&m_session, &UserSession::changed, this, &UserCtrl::report);
    connect(&m_idle, &IdleWatch::idle, &m_session, &UserSession::logOut);
}

UserCtrl::~UserCtrl()
{
    delete m_logInDialog;
    delete m_manager;
}

void UserCtrl::showLogInDialog(QWidget* parent)
{
    if (!isOpen(m_logInDialog)) {
        if (m_session.reload() == UserStore::FirstStart)
            m_logInDialog = new NewUserDialog(m_session, NewUserDialog::FirstAdministrator, parent);
        else
            m_logInDialog = new LogInDialog(m_session, m_lastName, parent);
    }
    bringUp(m_logInDialog);
}

void UserCtrl::showUserManager(QWidget* parent)
{
    if (!isOpen(m_manager))
        m_manager = makeManager(parent);
    m_managedBy = m_session.userName();
    bringUp(m_manager);
}

void UserCtrl::logOut()
{
    m_session.logOut();
}

QString UserCtrl::currentUserName()
{
    return m_session.userName();
}

int UserCtrl::state()
{
    return m_session.role() == Role::None ? LoggedOut : LoggedIn;
}

void UserCtrl::setListener(Listener listener)
{
    m_listener = std::move(listener);
}

void UserCtrl::report(const UserChange& change) const
{
    if (m_listener)
        m_listener(change);
}

void UserCtrl::onCurrentUserChanged(const QString& name, int level)
{
    if (!name.isEmpty())
        m_lastName = name;
    if (m_manager && name != m_managedBy)
        m_manager->reject(); // nobody finds another's dialog
    watchIdle();
    emit sgCurrentUserInfo(name, level, state());
}

void UserCtrl::onIdleLimitChanged(std::chrono::minutes before, std::chrono::minutes after)
{
    watchIdle();
    const auto number = [](std::chrono::minutes limit) { return QString::number(limit.count()); };
    report({m_session.userName(), QStringLiteral("login/idle_minutes"), number(before), number(after)});
}

void UserCtrl::watchIdle()
{
    m_idle.watch(m_session.role() == Role::None ? std::chrono::minutes(0) : m_rules.idleLimit());
}

/// Administrators manage the users, others their own password, and nobody nothing.
QDialog* UserCtrl::makeManager(QWidget* parent)
{
    m_session.reload();
    if (m_session.role() == Role::Administrator) {
        m_rules.load();
        auto* manager = new UserManagerDialog(m_session, m_rules, parent);
        connect(manager, &UserManagerDialog::idleLimitChanged, this, &UserCtrl::onIdleLimitChanged);
        return manager;
    }
    if (m_session.role() != Role::None)
        return new PasswordDialog(m_session, PasswordDialog::Own, m_session.userName(), parent);
    auto* box =
        new QMessageBox(QMessageBox::Information, tr("提示"), tr("请先以管理员身份登录。"), QMessageBox::Ok, parent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->button(QMessageBox::Ok)->setText(tr("确认"));
    return box;
}

VALVECELL_MODULE_EXPORT IUserCtrl* UserCtrlCreate()
{
    return new UserCtrl;
}
