#include "Harness.h"
#include "accounts/LogInRules.h"
#include "accounts/UserFile.h"
#include "accounts/UserStore.h"

/// Users, rules of the log-in and the wait after wrong passwords, each from the same text.
FUZZ_TARGET(users)
{
    const QString path = fuzz::homeFile("/user/users.json", bytes);
    const UserStore store(path);
    const bool ready = store.state() == UserStore::Ready;
    fuzz::require(ready == store.damage().isEmpty(), "damage has its reason");
    fuzz::require(ready == UserFile::hasAdministrator(store.accounts()), "nobody is known without an administrator");
    for (const Account& account : store.accounts())
        fuzz::require(store.find(account.name)->hash == account.hash, "a name means one user");
    QVector<Account> again;
    QString error;
    fuzz::require(!ready || UserFile::fromJson(UserFile::toJson(store.accounts()), &again, &error),
                  "what is read can be written and read again");
    const LogInRules rules(path);
    fuzz::require(rules.idleLimit().count() >= 0 && rules.idleLimit().count() <= LogInRules::maxIdleMinutes,
                  "the idle time stays in its range");
    const RetryDelay delay(path);
    fuzz::require(delay.left(RetryDelay::Clock::now()) <= std::chrono::minutes(1), "a wait is bearable");
}
