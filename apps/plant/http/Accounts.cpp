#include "http/Accounts.h"

#include "accounts/PasswordHash.h"
#include "db/Database.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <pqxx/pqxx>

namespace {

constexpr int mostAttempts = 5;
constexpr auto attemptsForget = std::chrono::minutes(5);
constexpr size_t mostKeys = 10000;

std::string digestOf(const std::string& token)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(token), QCryptographicHash::Sha256).toHex().toStdString();
}

std::string newToken()
{
    quint32 words[8];
    QRandomGenerator::system()->fillRange(words);
    return QByteArray(reinterpret_cast<const char*>(words), sizeof words).toHex().toStdString();
}

/// What an unknown name's password is compared with, so that it takes as long as a known one's.
const QByteArray& nobodysHash()
{
    static const QByteArray hash = PasswordHash::make(QString::fromStdString(newToken()));
    return hash;
}

} // namespace

void Accounts::add(Database& database, const QString& name, const QString& password, bool admin)
{
    if (name.trimmed().isEmpty() || name.size() > 64)
        throw std::runtime_error("a name of 1 to 64 characters is needed");
    if (password.size() < shortestPassword)
        throw std::runtime_error("a password of at least " + std::to_string(shortestPassword) +
                                 " characters is needed");
    pqxx::work work(database.connection());
    work.exec_params("INSERT INTO account (name, role, hash) VALUES ($1, $2, $3) ON CONFLICT (name) DO UPDATE SET "
                     "role = excluded.role, hash = excluded.hash",
                     name.toStdString(), admin ? "admin" : "viewer", PasswordHash::make(password).toStdString());
    work.exec_params("DELETE FROM session WHERE account = $1", name.toStdString());
    work.commit();
}

Accounts::Answer Accounts::logIn(Database& database, const QString& name, const QString& password,
                                 const std::string& address, std::string* token)
{
    const std::string keys[] = {"name " + name.left(64).toStdString(), "from " + address};
    if (!mayTry(keys[0]) || !mayTry(keys[1]))
        return Answer::TooManyAttempts;
    pqxx::nontransaction work(database.connection());
    const pqxx::result rows = work.exec_params("SELECT hash FROM account WHERE name = $1", name.toStdString());
    const QByteArray hash = rows.empty() ? nobodysHash() : QByteArray(rows[0][0].c_str());
    bool good = false;
    {
        const std::lock_guard<std::mutex> lock(m_hashing);
        good = password.size() <= 1024 && PasswordHash::matches(hash, password) && !rows.empty();
    }
    for (const std::string& key : keys)
        good ? forget(key) : countFailure(key);
    if (!good)
        return Answer::Wrong;
    *token = newToken();
    work.exec_params("INSERT INTO session VALUES (decode($1, 'hex'), $2, now() + make_interval(hours => $3))",
                     digestOf(*token), name.toStdString(), sessionHours);
    return Answer::Welcome;
}

void Accounts::logOut(Database& database, const std::string& token)
{
    pqxx::nontransaction(database.connection())
        .exec_params("DELETE FROM session WHERE token = decode($1, 'hex')", digestOf(token));
}

std::optional<Accounts::Account> Accounts::whoIs(Database& database, const std::string& token)
{
    if (token.empty())
        return std::nullopt;
    pqxx::nontransaction work(database.connection());
    const pqxx::result rows =
        work.exec_params("SELECT a.name, a.role = 'admin' FROM session AS s JOIN account AS a ON a.name = s.account "
                         "WHERE s.token = decode($1, 'hex') AND s.expires > now()",
                         digestOf(token));
    if (rows.empty())
        return std::nullopt;
    return Account{rows[0][0].as<std::string>(), rows[0][1].as<bool>()};
}

bool Accounts::mayTry(const std::string& key)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_failures.find(key);
    if (found == m_failures.end())
        return true;
    if (Clock::now() - found->second.first > attemptsForget) {
        m_failures.erase(found);
        return true;
    }
    return found->second.count < mostAttempts;
}

void Accounts::countFailure(const std::string& key)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_failures.size() >= mostKeys)
        m_failures.clear();
    Attempts& attempts = m_failures[key];
    if (attempts.count++ == 0)
        attempts.first = Clock::now();
}

void Accounts::forget(const std::string& key)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_failures.erase(key);
}
