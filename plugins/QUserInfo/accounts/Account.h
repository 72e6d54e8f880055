#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QVector>

/// What a user may do; each role includes those below. The numbers are the levels of IUserCtrl::sgCurrentUserInfo.
enum class Role : int { None = 0, Operator = 1, Engineer = 2, Administrator = 3 };

struct Account
{
    QString name;
    Role role = Role::None; ///< None only as long as there is no such user
    QByteArray hash;        ///< of the password, as PasswordHash makes it
};

/// Rules and names of accounts, in the operator's language. Any thread.
class AccountRules
{
    Q_DECLARE_TR_FUNCTIONS(AccountRules)

public:
    static constexpr int maxNameLength = 32;
    static constexpr int minPasswordLength = 8;
    static constexpr int maxPasswordLength = 128;

    static QVector<Role> roles() { return {Role::Operator, Role::Engineer, Role::Administrator}; }
    static QString roleText(Role role);

    /// What is wrong with a name; empty when nothing is. A name has 1 to maxNameLength printable characters, no blank
    /// at either end, and none that has a meaning in paths, SQL texts or tables.
    static QString nameProblem(const QString& name);
    /// What is wrong with a password; empty when nothing is. It has minPasswordLength to maxPasswordLength characters,
    /// at least two different ones, and is not the user's name.
    static QString passwordProblem(const QString& name, const QString& password);
    /// As above, for a password that was typed twice.
    static QString passwordProblem(const QString& name, const QString& password, const QString& again);

    /// Whether two names are the same to a reader: case and full-width forms do not tell users apart.
    static bool sameName(const QString& a, const QString& b);
};
