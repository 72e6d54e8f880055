#pragma once

#include "accounts/LogInRules.h"
#include "accounts/UserStore.h"
#include "common/Background.h"

#include <valvecell/IUserAudit.h>

#include <QObject>

#include <functional>

/// Who is logged in, and what he may do with the users. One thread, with an event loop.
///
/// Operations that need a hash run it elsewhere and answer later: `done` is called with an empty text on success, else
/// with what went wrong in the operator's language. It is called at most once, and neither called nor anything changed
/// when `context` (the dialog that asked) is gone by then.
class UserSession : public QObject
{
    Q_OBJECT

public:
    using Done = std::function<void(const QString& error)>;

    explicit UserSession(const QString& usersFile);

    const UserStore& users() const { return m_store; }
    /// Reads the users anew; what was changed by hand is seen.
    UserStore::State reload() { return m_store.load(); }

    /// The present user; empty name and Role::None when nobody is logged in.
    QString userName() const { return m_user.name; }
    Role role() const { return m_user.role; }

    /// How long logIn() will refuse everybody, after wrong passwords.
    std::chrono::milliseconds wait() const { return m_delay.left(RetryDelay::Clock::now()); }

    /// Refused while another check runs, while wait() is not over, and while the user file is damaged. A wrong password
    /// and an unknown name get the same answer after the same time.
    void logIn(const QString& name, const QString& password, QObject* context, const Done& done);
    /// Does nothing when nobody is logged in.
    void logOut();
    /// Creates the first user and logs him in; refused when there is a user file, whatever is in it.
    void createAdministrator(const QString& name, const QString& password, QObject* context, const Done& done);
    /// Checks the present password first; a wrong one counts as a wrong log-in.
    void changeOwnPassword(const QString& present, const QString& next, QObject* context, const Done& done);

    /// For administrators. The last administrator can be neither removed nor made anything less, and nobody removes
    /// himself.
    void addUser(const QString& name, Role role, const QString& password, QObject* context, const Done& done);
    void resetPassword(const QString& name, const QString& password, QObject* context, const Done& done);
    bool setRole(const QString& name, Role role, QString* error);
    bool removeUser(const QString& name, QString* error);

signals:
    /// The present user, or his role, changed.
    void currentUserChanged(const QString& name, int level);
    /// The list of users changed: somebody came or went, or got another role or password.
    void usersChanged();
    /// What changed of a user was stored.
    void changed(const UserChange& change);

private:
    using Store = std::function<QString(const QByteArray& hash)>;

    void enter(const Account& account);
    QString refuseAttempt() const;
    QString refuseManaging() const;
    void withHash(const QString& password, QObject* context, const Store& store, const Done& done);
    UserChange passwordChange(const QString& by, const QString& name) const;
    QString storedName(const QString& name) const;
    Role storedRole(const QString& name) const;
    QString reported(bool stored, const QString& error, const UserChange& change);

    UserStore m_store;
    Account m_user;
    RetryDelay m_delay;
    bool m_checking = false; ///< a password is being checked; one at a time
    Background m_background{Background::AtEnd::Wait};
};
