#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>

class Database;

/// Who may see the page: accounts and their sessions, in the database. Any thread, each with a Database of its own.
class Accounts
{
public:
    struct Account
    {
        std::string name;
        bool isAdmin = false;
    };
    enum class Answer { Welcome, Wrong, TooManyAttempts };

    /// A new account, or a new password and role for one that is there. Its sessions end. Throws as the database does;
    /// std::runtime_error when name or password are not good enough.
    static void add(Database& database, const QString& name, const QString& password, bool admin);

    /// On Welcome, `token` is what the browser is given. After five wrong attempts from one address or for one name
    /// within five minutes no further one is looked at.
    Answer logIn(Database& database, const QString& name, const QString& password, const std::string& address,
                 std::string* token);
    static void logOut(Database& database, const std::string& token);
    static std::optional<Account> whoIs(Database& database, const std::string& token);

    static constexpr int shortestPassword = 10;
    static constexpr int sessionHours = 12;

private:
    using Clock = std::chrono::steady_clock;
    struct Attempts
    {
        int count = 0;
        Clock::time_point first;
    };

    bool mayTry(const std::string& key);
    void countFailure(const std::string& key);
    void forget(const std::string& key);

    std::mutex m_mutex; // protects the following
    std::map<std::string, Attempts> m_failures;
    std::mutex m_hashing; // held while a password is judged, which takes 64 MB
};
