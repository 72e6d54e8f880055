#include "accounts/UserStore.h"

#include "accounts/UserFile.h"

#include <valvecell/HomeFiles.h>

UserStore::UserStore(QString path)
    : m_path(std::move(path))
{
    load();
}

UserStore::State UserStore::load()
{
    m_accounts.clear();
    m_damage.clear();
    const auto file = HomeFiles::readJson(m_path);
    QString error = file.error;
    if (file.state == HomeFiles::JsonRead::Missing) {
        m_state = HomeFiles::isGone(m_path) ? Damaged : FirstStart;
        if (m_state == Damaged) {
            m_damage =
                tr("用户文件已被删除，不能登录：\n%1\n请由本机的管理人员恢复该文件；同时删除%2后可重新创建管理员。")
                    .arg(m_path, QFileInfo(HomeFiles::markOf(m_path)).fileName());
            qWarning("user file %s was deleted", qUtf8Printable(m_path));
        }
    } else if (file.state == HomeFiles::JsonRead::Good && UserFile::fromJson(file.object, &m_accounts, &error)) {
        m_state = Ready;
        HomeFiles::markPresent(m_path);
    } else {
        m_state = Damaged;
        const QString place = error.startsWith(m_path) ? error : QStringLiteral("%1, %2").arg(m_path, error);
        m_damage = tr("用户文件已损坏，不能登录：\n%1\n请由本机的管理人员恢复该文件；删除它和%2后可重新创建管理员。")
                       .arg(place, QFileInfo(HomeFiles::markOf(m_path)).fileName());
        HomeFiles::markPresent(m_path);
        qWarning("user file %s", qUtf8Printable(place));
    }
    return m_state;
}

const Account* UserStore::find(const QString& name) const
{
    const int index = UserFile::indexOf(m_accounts, name);
    return index < 0 ? nullptr : &m_accounts[index];
}

bool UserStore::add(const Account& account, QString* error)
{
    load();
    *error = AccountRules::nameProblem(account.name);
    if (error->isEmpty() && find(account.name))
        *error = tr("用户“%1”已存在").arg(account.name);
    return error->isEmpty() && write(m_accounts + Accounts{account}, error);
}

bool UserStore::setRole(const QString& name, Role role, QString* error)
{
    return change(name, error, [role](Accounts& accounts, int index) { accounts[index].role = role; });
}

bool UserStore::setHash(const QString& name, const QByteArray& hash, QString* error)
{
    return change(name, error, [&hash](Accounts& accounts, int index) { accounts[index].hash = hash; });
}

bool UserStore::remove(const QString& name, QString* error)
{
    return change(name, error, [](Accounts& accounts, int index) { accounts.remove(index); });
}

bool UserStore::change(const QString& name, QString* error, const std::function<void(Accounts&, int)>& edit)
{
    load();
    Accounts next = m_accounts;
    const int index = UserFile::indexOf(next, name);
    if (index < 0) {
        *error = m_state == Damaged ? m_damage : tr("没有用户“%1”").arg(name);
        return false;
    }
    edit(next, index);
    return write(next, error);
}

bool UserStore::write(const Accounts& accounts, QString* error)
{
    if (m_state == Damaged)
        *error = m_damage;
    else if (!UserFile::hasAdministrator(accounts))
        *error = tr("至少要保留一名管理员");
    else if (HomeFiles::writeJson(m_path, UserFile::toJson(accounts), error)) {
        if (m_state == FirstStart) // later writes keep the rights that the file has
            QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner);
        HomeFiles::markPresent(m_path);
        m_accounts = accounts;
        m_state = Ready;
        return true;
    }
    return false;
}
