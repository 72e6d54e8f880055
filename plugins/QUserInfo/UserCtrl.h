#pragma once

#include "accounts/IdleWatch.h"
#include "accounts/LogInRules.h"
#include "accounts/UserSession.h"

#include <valvecell/IUserAudit.h>
#include <valvecell/IUserCtrl.h>

#include <QDialog>
#include <QPointer>

/// The user control: users of "user/users.json", rules of "user/login.json", the dialogs to log in and to manage them,
/// and the automatic log-out. Dialogs are shown once;
/// asked for again, they come to the front.
class UserCtrl final : public IUserCtrl, public IUserAudit
{
    Q_OBJECT
    Q_INTERFACES(IUserAudit)

public:
    UserCtrl();
    ~UserCtrl() override;

    void showLogInDialog(QWidget* parent) override;
    void showUserManager(QWidget* parent) override;
    void logOut() override;
    QString currentUserName() override;
    int state() override;
    void setListener(Listener listener) override;

private:
    void onCurrentUserChanged(const QString& name, int level);
    QDialog* makeManager(QWidget* parent);
    void onIdleLimitChanged(std::chrono::minutes before, std::chrono::minutes after);
    void watchIdle();
    void report(const UserChange& change) const;

    UserSession m_session;
    LogInRules m_rules;
    IdleWatch m_idle;
    Listener m_listener;
    QString m_lastName;              ///< who was logged in last
    QPointer<QDialog> m_logInDialog; ///< null or hidden when it is not on the screen
    QString m_managedBy;             ///< who opened the next
    QPointer<QDialog> m_manager;     ///< as above; what the present user may do decides which dialog it is
};
