#pragma once

#include <QObject>
#include <QString>

class QWidget;

/// Operator log-in. Module file "QUserInfo", factory symbol "UserCtrlCreate".
///
/// GUI thread throughout. The caller owns the object and deletes it. The class has a signal, so a module that
/// implements it lists this header among its sources for Qt's meta-object compiler.
class IUserCtrl : public QObject
{
    Q_OBJECT

public:
    enum State : int {
        LoggedIn = 0, ///< somebody is logged in
        LoggedOut = 1
    };

    /// Shows the log-in dialog; returns when it is on the screen or closed, as the module likes.
    virtual void showLogInDialog(QWidget* parent) = 0;
    /// Shows the user manager.
    virtual void showUserManager(QWidget* parent) = 0;
    /// Logs the present user out; does nothing when nobody is logged in.
    virtual void logOut() = 0;
    /// The present user's name; empty when nobody is logged in.
    virtual QString currentUserName() = 0;
    /// One of State.
    virtual int state() = 0;

Q_SIGNALS:
    /// The present user changed. `level`: 0 nobody, 1 operator, 2 engineer, 3 administrator; `state`: one of State.
    void sgCurrentUserInfo(QString name, int level, int state);
};

/// The signature of "UserCtrlCreate".
using UserCtrlCreateFunction = IUserCtrl* (*)();
