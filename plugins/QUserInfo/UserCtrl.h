#pragma once

#include "accounts/IdleWatch.h"
#include "accounts/LogInRules.h"
#include "accounts/UserSession.h"

#include <valvecell/IUserCtrl.h>

#include <QDialog>
#include <QPointer>

/// The user control: users of "user/users.json", rules of "user/login.json", the dialogs to log in and to manage them,
/// and the automatic log-out. Dialogs are shown once;
/// asked for again, they come to the front.
class UserCtrl final : public IUserCtrl
{
    Q_OBJECT

public:
    UserCtrl();
    ~UserCtrl() override;

    void showLogInDialog(QWidget* parent) override;
    void showUserManager(QWidget* parent) override;
    void logOut() override;
    QString currentUserName() override;
    int state() override;

private:
    void onCurrentUserChanged(const QString& name, int level);
    QDialog* makeManager(QWidget* parent);
    void watchIdle();

    UserSession m_session;
    LogInRules m_rules;
    IdleWatch m_idle;
    QString m_lastName;              ///< who was logged in last
    QPointer<QDialog> m_logInDialog; ///< null or hidden when it is not on the screen
    QPointer<QDialog> m_manager;     ///< as above; what the present user may do decides which dialog it is
};
