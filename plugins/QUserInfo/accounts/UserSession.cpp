#include "accounts/UserSession.h"

#include "accounts/PasswordHash.h"
#include "accounts/UserFile.h"

#include <QFileInfo>
#include <QPointer>

#include <cmath>

namespace {

UserChange roleChange(const QString& by, const QString& name, Role before, Role after)
{
    const auto word = [](Role role) { return role == Role::None ? QString() : UserFile::roleWord(role); };
    return {by, QStringLiteral("user/%1/role").arg(name), word(before), word(after)};
}

} // namespace

UserSession::UserSession(const QString& usersFile)
    : m_store(usersFile)
    , m_delay(QFileInfo(usersFile).path() + QStringLiteral("/retry.json"))
{
}

void UserSession::logIn(const QString& name, const QString& password, QObject* context, const Done& done)
{
    const QString refusal = refuseAttempt();
    if (!refusal.isEmpty())
        return done(refusal);
    const Account* found = m_store.find(name);
    const Account account = found ? *found : Account();
    m_checking = true;
    const auto check = [account, password] {
        // An unknown name takes as long as a wrong password, so that names cannot be told apart by time.
        return account.hash.isEmpty() ? PasswordHash::make(password).isNull()
                                      : PasswordHash::matches(account.hash, password);
    };
    m_background.run(check, [this, account, guard = QPointer<QObject>(context), done](bool right) {
        m_checking = false;
        right = right && !account.hash.isEmpty();
        right ? m_delay.succeeded() : m_delay.failed(RetryDelay::Clock::now());
        if (!guard)
            return;
        if (right)
            enter(account);
        done(right ? QString() : tr("用户名或密码错误"));
    });
}

void UserSession::logOut()
{
    if (m_user.role != Role::None)
        enter({});
}

void UserSession::createAdministrator(const QString& name, const QString& password, QObject* context, const Done& done)
{
    const auto store = [this, name](const QByteArray& hash) {
        if (m_store.load() != UserStore::FirstStart)
            return m_store.state() == UserStore::Damaged ? m_store.damage() : tr("已经有用户，请登录");
        const Account account{name, Role::Administrator, hash};
        QString error;
        const bool added = m_store.add(account, &error);
        if (added)
            enter(account);
        return reported(added, error, roleChange({}, name, Role::None, account.role));
    };
    const QString problem = AccountRules::passwordProblem(name, password);
    problem.isEmpty() ? withHash(password, context, store, done) : done(problem);
}

void UserSession::changeOwnPassword(const QString& present, const QString& next, QObject* context, const Done& done)
{
    QString refusal = m_user.role == Role::None ? tr("请先登录") : refuseAttempt();
    if (refusal.isEmpty())
        refusal = AccountRules::passwordProblem(m_user.name, next);
    if (!refusal.isEmpty())
        return done(refusal);
    const QPointer<QObject> guard(context);
    m_checking = true;
    const auto work = [hash = m_user.hash, present] { return PasswordHash::matches(hash, present); };
    m_background.run(work, [this, name = m_user.name, next, guard, done](bool right) {
        m_checking = false;
        right ? m_delay.succeeded() : m_delay.failed(RetryDelay::Clock::now());
        if (!guard)
            return;
        if (!right)
            return done(tr("现在的密码错误"));
        const auto store = [this, name](const QByteArray& hash) {
            QString error;
            const bool stored = m_store.setHash(name, hash, &error);
            if (stored && name == m_user.name) // who may have logged out meanwhile
                m_user.hash = hash;
            return reported(stored, error, passwordChange(name, name));
        };
        withHash(next, guard, store, done);
    });
}

void UserSession::addUser(const QString& name, Role role, const QString& password, QObject* context, const Done& done)
{
    const auto store = [this, name, role](const QByteArray& hash) {
        QString error = refuseManaging();
        const bool added = error.isEmpty() && m_store.add({name, role, hash}, &error);
        return reported(added, error, roleChange(m_user.name, name, Role::None, role));
    };
    const QString problem = AccountRules::passwordProblem(name, password);
    problem.isEmpty() ? withHash(password, context, store, done) : done(problem);
}

void UserSession::resetPassword(const QString& name, const QString& password, QObject* context, const Done& done)
{
    const auto store = [this, name](const QByteArray& hash) {
        QString error = refuseManaging();
        const bool stored = error.isEmpty() && m_store.setHash(name, hash, &error);
        if (stored && AccountRules::sameName(name, m_user.name))
            m_user.hash = hash;
        return reported(stored, error, passwordChange(m_user.name, name));
    };
    const QString problem = AccountRules::passwordProblem(name, password);
    problem.isEmpty() ? withHash(password, context, store, done) : done(problem);
}

bool UserSession::setRole(const QString& name, Role role, QString* error)
{
    *error = refuseManaging();
    const UserChange change = roleChange(m_user.name, storedName(name), storedRole(name), role);
    const bool stored = error->isEmpty() && m_store.setRole(name, role, error);
    if (stored && AccountRules::sameName(name, m_user.name))
        enter({m_user.name, role, m_user.hash});
    return reported(stored, *error, change).isEmpty();
}

bool UserSession::removeUser(const QString& name, QString* error)
{
    *error = refuseManaging();
    if (error->isEmpty() && AccountRules::sameName(name, m_user.name))
        *error = tr("不能删除当前登录的用户");
    const UserChange change = roleChange(m_user.name, storedName(name), storedRole(name), Role::None);
    return reported(error->isEmpty() && m_store.remove(name, error), *error, change).isEmpty();
}

void UserSession::enter(const Account& account)
{
    m_user = account;
    emit currentUserChanged(account.name, int(account.role));
}

QString UserSession::refuseAttempt() const
{
    if (m_store.state() == UserStore::Damaged)
        return m_store.damage();
    const double seconds = std::ceil(wait().count() / 1000.0);
    if (seconds > 0)
        return tr("请等待 %1 秒后再试").arg(seconds);
    return m_checking ? tr("正在检查密码…") : QString();
}

QString UserSession::refuseManaging() const
{
    return m_user.role == Role::Administrator ? QString() : tr("只有管理员可以管理用户");
}

void UserSession::withHash(const QString& password, QObject* context, const Store& store, const Done& done)
{
    const auto work = [password] { return PasswordHash::make(password); };
    m_background.run(work, [guard = QPointer<QObject>(context), store, done](const QByteArray& hash) {
        if (guard)
            done(hash.isEmpty() ? tr("内存不足，无法处理密码") : store(hash));
    });
}

UserChange UserSession::passwordChange(const QString& by, const QString& name) const
{
    return {by, QStringLiteral("user/%1/password").arg(storedName(name)), IUserAudit::secret(), IUserAudit::secret()};
}

/// As the user's account has it, whatever its case here.
QString UserSession::storedName(const QString& name) const
{
    const Account* account = m_store.find(name);
    return account ? account->name : name;
}

Role UserSession::storedRole(const QString& name) const
{
    const Account* account = m_store.find(name);
    return account ? account->role : Role::None;
}

/// Emits a change that was stored; returns the error of one that was not.
QString UserSession::reported(bool stored, const QString& error, const UserChange& change)
{
    if (!stored)
        return error;
    emit usersChanged();
    if (change.before != change.after || change.before == IUserAudit::secret())
        emit changed(change);
    return {};
}
