#include "accounts/IdleWatch.h"
#include "accounts/PasswordHash.h"
#include "accounts/UserSession.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <QtTest>
#include <qtestspontaneevent.h>

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const QString userFile = QStringLiteral("/user/users.json");
const QString goodPassword = QStringLiteral("Pass-wörd 密码");

/// A session in a home of its own, asked synchronously.
class Cell
{
public:
    TempHome home;
    QObject context;
    std::unique_ptr<UserSession> session = std::make_unique<UserSession>(home.path(userFile));

    static UserSession::Done into(QString* answer)
    {
        return [answer](const QString& error) { *answer = error.isNull() ? QString("") : error; };
    }
    template <typename Ask>
    QString ask(Ask send)
    {
        QString answer;
        send(into(&answer));
        return QTest::qWaitFor([&] { return !answer.isNull(); }, 30'000) ? answer : QStringLiteral("no answer");
    }
    QString logIn(const QString& name, const QString& password)
    {
        return ask([&](const auto& done) { session->logIn(name, password, &context, done); });
    }
    QString createAdministrator(const QString& name)
    {
        return ask([&](const auto& done) { session->createAdministrator(name, goodPassword, &context, done); });
    }
    QString addUser(const QString& name, Role role)
    {
        return ask([&](const auto& done) { session->addUser(name, role, goodPassword, &context, done); });
    }
    QString resetPassword(const QString& name, const QString& password)
    {
        return ask([&](const auto& done) { session->resetPassword(name, password, &context, done); });
    }
    QString changeOwnPassword(const QString& present, const QString& next)
    {
        return ask([&](const auto& done) { session->changeOwnPassword(present, next, &context, done); });
    }
};

QByteArray userEntry(const char* name, const char* role, const QByteArray& hash)
{
    return QByteArray(R"({"name":")") + name + R"(","role":")" + role + R"(","password":")" + hash + "\"}";
}

} // namespace

class AccountsTest : public QObject
{
    Q_OBJECT

private slots:
    void userWhoLeavesIsLoggedOutAndOneWhoWorksIsNot()
    {
        auto now = IdleWatch::TimePoint();
        IdleWatch watch([&now] { return now; });
        QSignalSpy idle(&watch, &IdleWatch::idle);
        const auto after = [&](int seconds) {
            now += std::chrono::seconds(seconds);
            watch.check();
            return idle.size();
        };
        QObject window;
        const auto touch = [&window](bool byHand) {
            QEvent event(QEvent::MouseMove);
            if (byHand)
                QSpontaneKeyEvent::setSpontaneous(&event);
            QCoreApplication::instance()->notify(&window, &event); // sendEvent() would take the hand for its own
        };
        watch.watch(std::chrono::minutes(5));
        QCOMPARE(after(299), 0);
        touch(true);
        QCOMPARE(after(299), 0);
        touch(false);
        QCOMPARE(after(2), 1);
        QCOMPARE(after(3600), 1);
        watch.watch(std::chrono::minutes(0));
        QCOMPARE(after(3600), 1);
    }

    void firstStartMakesOneAdministratorWithItsOwnPassword()
    {
        Cell cell;
        QCOMPARE(cell.session->users().state(), UserStore::FirstStart);
        QVERIFY(!cell.logIn("admin", "admin").isEmpty());
        QCOMPARE(cell.createAdministrator(QStringLiteral("张工")), QString());
        QCOMPARE(cell.session->userName(), QStringLiteral("张工"));
        QCOMPARE(cell.session->role(), Role::Administrator);
        QCOMPARE(QFileInfo(cell.home.path(userFile)).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
        const QByteArray file = cell.home.read(userFile);
        QVERIFY(file.contains("$argon2id$") && !file.contains(goodPassword.toUtf8()));
        QVERIFY(cell.createAdministrator("second").contains(QStringLiteral("已经有用户")));

        UserSession restarted(cell.home.path(userFile));
        QCOMPARE(restarted.role(), Role::None);
        QCOMPARE(restarted.users().accounts().size(), 1);
    }

    void deletedUserFileIsNoWayIn()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator(QStringLiteral("张工")), QString());
        QVERIFY(QFile::remove(cell.home.path(userFile)));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("users\\.json was deleted"));
        QCOMPARE(cell.session->reload(), UserStore::Damaged);
        QVERIFY(cell.createAdministrator("mallory").contains(QStringLiteral("已被删除")));
        QVERIFY(cell.logIn("mallory", goodPassword).contains(QStringLiteral("已被删除")));
        QVERIFY(!QFile::exists(cell.home.path(userFile)));
        QVERIFY(QFile::remove(cell.home.path(userFile + ".present"))); // on purpose
        QCOMPARE(cell.session->reload(), UserStore::FirstStart);
    }

    void waitAfterWrongPasswordsGrowsAndOutlivesTheProgram()
    {
        const TempHome home;
        const QString file = home.path("/user/retry.json");
        const auto now = RetryDelay::Clock::now();
        RetryDelay first(file);
        QCOMPARE(first.left(now) + RetryDelay().left(now), milliseconds(0));
        for (int expected : {1, 2, 4, 8, 16, 32, 60, 60}) {
            first.failed(now);
            QCOMPARE(first.left(now), milliseconds(seconds(expected)));
            QCOMPARE(first.left(now + seconds(expected)).count(), 0);
        }
        QVERIFY(RetryDelay(file).left(now) > seconds(30));
        home.write("/user/retry.json",
                   R"({"failures": 7, "wait_until": "2999-01-01T00:00:00Z"})"); // the clock was ahead
        RetryDelay again(file);
        QVERIFY(again.left(now) > seconds(30) && again.left(now) <= seconds(62));
        again.succeeded();
        QCOMPARE(again.left(now) + RetryDelay(file).left(now), milliseconds(0));
        home.write("/user/retry.json", R"({"failures": -3, "wait_until": 7})");
        QCOMPARE(RetryDelay(file).left(now), milliseconds(0));
    }

    void damagedUserFileLetsNobodyInAndStaysAsItIs_data()
    {
        const QByteArray hash = PasswordHash::make(goodPassword);
        const QByteArray good = userEntry("boss", "administrator", hash);
        const auto file = [](const QByteArray& entries) -> QByteArray { return R"({"users":[)" + entries + "]}"; };
        const QByteArray costly = QByteArray(hash).replace("m=65536", "m=9999999");
        Table::of<QByteArray, QString>(
            {{"empty", "", "line 1"},
             {"cut off", file(good).chopped(3), "line 1"},
             {"list", "[]", "top level"},
             {"no users", "{}", "no administrator"},
             {"wrong type", R"({"users":"boss"})", "no administrator"},
             {"no administrator", file(userEntry("op", "operator", hash)), "no administrator"},
             {"blank password", file(good + ',' + userEntry("op", "operator", "")), "users[1].password"},
             {"unknown role", file(userEntry("boss", "root", hash)), "users[0].role"},
             {"number for a name", file(good + R"(,{"name":7})"), "users[1].name"},
             {"same name twice", file(good + ',' + userEntry("ＢＯＳＳ", "operator", hash)), "users[1].name"},
             {"check that would eat all memory", file(userEntry("boss", "administrator", costly)),
              "users[0].password"}});
    }
    void damagedUserFileLetsNobodyInAndStaysAsItIs()
    {
        const auto [users, place] = Table::row<QByteArray, QString>();
        Cell cell;
        cell.home.write(userFile, users);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file .*users.json"));
        QCOMPARE(cell.session->reload(), UserStore::Damaged);
        const QString damage = cell.session->users().damage();
        QVERIFY2(damage.contains(cell.home.path(userFile)) && damage.contains(place), qPrintable(damage));
        QCOMPARE(cell.logIn("boss", goodPassword), damage);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file"));
        QCOMPARE(cell.createAdministrator("thief"), damage);
        QCOMPARE(cell.home.read(userFile), users);
        QCOMPARE(cell.home.keptAside(userFile), QStringList());
        QCOMPARE(cell.session->role(), Role::None);
    }

    void userFileSpoiledWhileRunningIsNotOverwritten()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        const QByteArray good = cell.home.read(userFile);
        cell.home.write(userFile, "{oops");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file"));
        QVERIFY(cell.addUser("op", Role::Operator).contains("users.json"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file"));
        QVERIFY(cell.resetPassword("boss", goodPassword).contains("users.json"));
        QCOMPARE(cell.home.read(userFile), QByteArray("{oops"));
        cell.home.write(userFile, good);
        QCOMPARE(cell.session->reload(), UserStore::Ready);
        QCOMPARE(cell.logIn("boss", goodPassword), QString());
    }

    void usersLogInWithTheirRole()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        QCOMPARE(cell.addUser(QStringLiteral("王 师傅"), Role::Operator), QString());
        QCOMPARE(cell.addUser("eng", Role::Engineer), QString());
        QVERIFY(cell.addUser("ENG", Role::Operator).contains(QStringLiteral("已存在")));
        cell.session->logOut();
        QCOMPARE(cell.session->userName(), QString());
        QCOMPARE(cell.logIn(QStringLiteral(" 王 师傅"), goodPassword), QString());
        QCOMPARE(cell.session->role(), Role::Operator);
        QCOMPARE(cell.logIn("Eng", goodPassword), QString());
        QCOMPARE(cell.session->userName(), QStringLiteral("eng"));
        QCOMPARE(cell.session->role(), Role::Engineer);
    }

    void wrongPasswordAndUnknownNameGetTheSameAnswerAndAWait()
    {
        for (const char* name : {"boss", "nobody"}) {
            Cell cell;
            QCOMPARE(cell.createAdministrator("boss"), QString());
            cell.session->logOut();
            QString again;
            const QString first = cell.ask([&](const auto& done) {
                cell.session->logIn(name, "wrong", &cell.context, [&, done](const QString& error) {
                    done(error);
                    cell.session->logIn("boss", goodPassword, &cell.context, Cell::into(&again));
                });
            });
            QCOMPARE(first, QStringLiteral("用户名或密码错误"));
            QVERIFY2(again.contains(QStringLiteral("等待")), qPrintable(again));
            QCOMPARE(cell.session->role(), Role::None);
        }
    }

    void lastAdministratorStays()
    {
        Cell cell;
        QString error;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        QVERIFY(!cell.session->setRole("boss", Role::Engineer, &error));
        QVERIFY(!cell.session->removeUser("boss", &error));
        QCOMPARE(cell.addUser("deputy", Role::Administrator), QString());
        QVERIFY2(cell.session->setRole("boss", Role::Engineer, &error), qPrintable(error));
        QCOMPARE(cell.session->role(), Role::Engineer);
        QCOMPARE(cell.logIn("deputy", goodPassword), QString());
        QVERIFY2(cell.session->removeUser("boss", &error), qPrintable(error));
        QVERIFY(!cell.session->setRole("deputy", Role::Operator, &error) && !error.isEmpty());
        QCOMPARE(UserSession(cell.home.path(userFile)).users().accounts().size(), 1);
    }

    void onlyAdministratorsManage()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        QCOMPARE(cell.addUser("eng", Role::Engineer), QString());
        QCOMPARE(cell.logIn("eng", goodPassword), QString());
        const QByteArray before = cell.home.read(userFile);
        for (int i = 0; i < 2; ++i) {
            QString error;
            QVERIFY(!cell.addUser("friend", Role::Administrator).isEmpty());
            QVERIFY(!cell.resetPassword("boss", goodPassword + "2").isEmpty());
            QVERIFY(!cell.session->setRole("eng", Role::Administrator, &error));
            QVERIFY(!cell.session->removeUser("boss", &error));
            cell.session->logOut();
        }
        QCOMPARE(cell.home.read(userFile), before);
    }

    void ownPasswordNeedsThePresentOne()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        QVERIFY(cell.changeOwnPassword(goodPassword, "short").contains("8"));
        QCOMPARE(cell.changeOwnPassword(goodPassword, "another one"), QString());
        QCOMPARE(cell.changeOwnPassword("another one", goodPassword), QString());
        QCOMPARE(cell.changeOwnPassword("another one", "a third one"), QStringLiteral("现在的密码错误"));
        QVERIFY(cell.session->wait().count() > 0);
    }

    void cancelledDialogChangesNothing()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        cell.session->logOut();
        const QByteArray before = cell.home.read(userFile);
        auto dialog = std::make_unique<QObject>();
        int answers = 0;
        const auto count = [&](const QString&) { ++answers; };
        cell.session->logIn("boss", goodPassword, dialog.get(), count);
        dialog.reset();
        cell.resetPassword("boss", goodPassword); // answered after the log-in
        QCOMPARE(cell.session->role(), Role::None);
        QCOMPARE(answers, 0);
        QCOMPARE(cell.home.read(userFile), before);

        cell.session->logIn("boss", goodPassword, &cell.context, count);
        cell.session.reset();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(answers, 0);
    }

    void namesAndPasswordsAreChecked_data()
    {
        const QString pass = QStringLiteral("longEnough");
        Table::of<QString, QString, bool>({{"plain", "boss", pass, true},
                                           {"chinese", "张 工-2", "一二三四五六七八", true},
                                           {"longest", QString(32, 'n'), QString(64, 'p') + QString(64, 'q'), true},
                                           {"no name", "", pass, false},
                                           {"blank name", "　", pass, false},
                                           {"apostrophe", "O'Neil", pass, false},
                                           {"path", "../boss", pass, false},
                                           {"line break", "bo\nss", pass, false},
                                           {"name too long", QString(33, 'n'), pass, false},
                                           {"short", "boss", "1234567", false},
                                           {"blank", "boss", "          ", false},
                                           {"the name", "administrator", "Administrator", false},
                                           {"too long", "boss", QString(64, 'p') + QString(65, 'q'), false}});
    }
    void namesAndPasswordsAreChecked()
    {
        const auto [name, password, good] = Table::row<QString, QString, bool>();
        const bool taken = AccountRules::nameProblem(name).isEmpty() &&
                           AccountRules::passwordProblem(name, password, password).isEmpty();
        QCOMPARE(taken, good);
        QVERIFY(!AccountRules::passwordProblem(name, password, password + " ").isEmpty());
    }
};

QTEST_GUILESS_MAIN(AccountsTest)
#include "tst_accounts.moc"
