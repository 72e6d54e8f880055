#pragma once

#include "accounts/UserSession.h"

#include <valvecell/IUserCtrl.h>

#include <QDialog>
#include <QPointer>

/// The user control: users of "user/users.json", and the dialogs to log in and to manage them. Dialogs are shown once;
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

    UserSession m_session;
    QString m_lastName;              ///< who was logged in last
    QPointer<QDialog> m_logInDialog; ///< null or hidden when it is not on the screen
    QPointer<QDialog> m_manager;     ///< as above; what the present user may do decides which dialog it is
};
