#include "accounts/UserFile.h"

#include "accounts/PasswordHash.h"

#include <QJsonArray>

#include <algorithm>

namespace {

const auto usersKey = QStringLiteral("users");
const auto nameKey = QStringLiteral("name");
const auto roleKey = QStringLiteral("role");
const auto passwordKey = QStringLiteral("password");

Role roleOf(const QString& word)
{
    const auto roles = AccountRules::roles();
    const auto found =
        std::find_if(roles.begin(), roles.end(), [&](Role role) { return UserFile::roleWord(role) == word; });
    return found == roles.end() ? Role::None : *found;
}

/// What is wrong with an entry, given those before it; empty when nothing is.
QString entryProblem(const QVector<Account>& before, const Account& account)
{
    if (!AccountRules::nameProblem(account.name).isEmpty())
        return nameKey;
    if (UserFile::indexOf(before, account.name) >= 0)
        return nameKey + QStringLiteral(": ") + account.name;
    if (account.role == Role::None)
        return roleKey;
    return PasswordHash::isWellFormed(account.hash) ? QString() : passwordKey;
}

} // namespace

QJsonObject UserFile::toJson(const QVector<Account>& accounts)
{
    QJsonArray users;
    for (const Account& account : accounts)
        users.append(QJsonObject{{nameKey, account.name},
                                 {roleKey, roleWord(account.role)},
                                 {passwordKey, QString::fromLatin1(account.hash)}});
    return {{usersKey, users}};
}

bool UserFile::fromJson(const QJsonObject& file, QVector<Account>* accounts, QString* error)
{
    const QJsonArray users = file[usersKey].toArray();
    QVector<Account> read;
    for (int i = 0; i < users.size(); ++i) {
        const QJsonObject user = users[i].toObject();
        const Account account{user[nameKey].toString(), roleOf(user[roleKey].toString()),
                              user[passwordKey].toString().toLatin1()};
        const QString problem = entryProblem(read, account);
        if (!problem.isEmpty()) {
            *error = QStringLiteral("users[%1].%2").arg(i).arg(problem);
            return false;
        }
        read.append(account);
    }
    if (!hasAdministrator(read)) {
        *error = QStringLiteral("users: no administrator");
        return false;
    }
    *accounts = read;
    return true;
}

QString UserFile::roleWord(Role role)
{
    return role == Role::Administrator ? QStringLiteral("administrator")
           : role == Role::Engineer    ? QStringLiteral("engineer")
                                       : QStringLiteral("operator");
}

bool UserFile::hasAdministrator(const QVector<Account>& accounts)
{
    return std::any_of(accounts.begin(), accounts.end(),
                       [](const Account& account) { return account.role == Role::Administrator; });
}

int UserFile::indexOf(const QVector<Account>& accounts, const QString& name)
{
    for (int i = 0; i < accounts.size(); ++i)
        if (AccountRules::sameName(accounts[i].name, name))
            return i;
    return -1;
}
