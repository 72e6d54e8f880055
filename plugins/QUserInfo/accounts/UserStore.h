#pragma once

#include "accounts/Account.h"

#include <functional>

/// The users of this cell, in one file of the home:
///
///     {"users": [{"name": "张工", "role": "engineer", "password": "$argon2id$..."}, ...]}
///
/// A missing file means the first start, and the first user has to be an administrator; one that was deleted (see
/// HomeFiles::markPresent()) is none. Anything else that is not a
/// whole list with an administrator in it is Damaged: nobody can be found in it, and nothing is written, so that a
/// spoiled file can never be traded for a new administrator from within the program. It stays where it is until
/// somebody who may do so on this machine restores it, or removes it and its mark to begin anew.
///
/// Each change reads the file first and is refused when the file has gone bad meanwhile. One thread.
class UserStore
{
    Q_DECLARE_TR_FUNCTIONS(UserStore)

public:
    enum State { FirstStart, Ready, Damaged };

    explicit UserStore(QString path);

    /// Reads the file anew. Pointers from find() end with it, as they do with each change.
    State load();
    State state() const { return m_state; }
    /// What is wrong when Damaged: file, place and what to do, in the operator's language.
    QString damage() const { return m_damage; }

    const QVector<Account>& accounts() const { return m_accounts; }
    /// The account of a name, by AccountRules::sameName(); null for a name that is not there.
    const Account* find(const QString& name) const;

    /// On failure nothing is changed, in the file or here, false is returned and `error` (never null) says why. Refused
    /// are a name that is taken or not there, and what would leave no administrator.
    bool add(const Account& account, QString* error);
    bool setRole(const QString& name, Role role, QString* error);
    bool setHash(const QString& name, const QByteArray& hash, QString* error);
    bool remove(const QString& name, QString* error);

private:
    using Accounts = QVector<Account>;

    bool change(const QString& name, QString* error, const std::function<void(Accounts&, int)>& edit);
    bool write(const Accounts& accounts, QString* error);

    const QString m_path;
    State m_state = FirstStart;
    QString m_damage;
    Accounts m_accounts;
};
