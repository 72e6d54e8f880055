#include "accounts/IdleWatch.h"
#include "accounts/PasswordHash.h"
#include "accounts/UserSession.h"
#include "support/TempHome.h"

#include <QtTest>
#include <qtestspontaneevent.h>

#include <memory>

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const QString kFile = QStringLiteral("/user/users.json");
const QString kPassword = QStringLiteral("Pass-wörd 密码");

/// A session in a home of its own, asked synchronously.
class Cell
{
public:
    TempHome home;
    QObject context;
    std::unique_ptr<UserSession> session = std::make_unique<UserSession>(home.path(kFile));

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
        return ask([&](const auto& done) { session->createAdministrator(name, kPassword, &context, done); });
    }
    QString addUser(const QString& name, Role role)
    {
        return ask([&](const auto& done) { session->addUser(name, role, kPassword, &context, done); });
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
        QCOMPARE(QFileInfo(cell.home.path(kFile)).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
        const QByteArray file = cell.home.read(kFile);
        QVERIFY(file.contains("$argon2id$") && !file.contains(kPassword.toUtf8()));
        QVERIFY(cell.createAdministrator("second").contains(QStringLiteral("已经有用户")));

        UserSession restarted(cell.home.path(kFile));
        QCOMPARE(restarted.role(), Role::None);
        QCOMPARE(restarted.users().accounts().size(), 1);
    }

    void damagedUserFileLetsNobodyInAndStaysAsItIs_data()
    {
        QTest::addColumn<QByteArray>("users");
        QTest::addColumn<QString>("place");
        const QByteArray hash = PasswordHash::make(kPassword);
        const QByteArray good = userEntry("boss", "administrator", hash);
        const auto file = [](const QByteArray& entries) -> QByteArray { return R"({"users":[)" + entries + "]}"; };
        QTest::newRow("empty") << QByteArray("") << "line 1";
        QTest::newRow("cut off") << file(good).chopped(3) << "line 1";
        QTest::newRow("list") << QByteArray("[]") << "top level";
        QTest::newRow("no users") << QByteArray("{}") << "no administrator";
        QTest::newRow("wrong type") << QByteArray(R"({"users":"boss"})") << "no administrator";
        QTest::newRow("no administrator") << file(userEntry("op", "operator", hash)) << "no administrator";
        QTest::newRow("blank password") << file(good + ',' + userEntry("op", "operator", "")) << "users[1].password";
        QTest::newRow("unknown role") << file(userEntry("boss", "root", hash)) << "users[0].role";
        QTest::newRow("number for a name") << file(good + R"(,{"name":7})") << "users[1].name";
        QTest::newRow("same name twice") << file(good + ',' + userEntry("ＢＯＳＳ", "operator", hash))
                                         << "users[1].name";
        QByteArray costly = hash;
        costly.replace("m=65536", "m=9999999");
        QTest::newRow("check that would eat all memory")
            << file(userEntry("boss", "administrator", costly)) << "users[0].password";
    }
    void damagedUserFileLetsNobodyInAndStaysAsItIs()
    {
        QFETCH(QByteArray, users);
        QFETCH(QString, place);
        Cell cell;
        cell.home.write(kFile, users);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file .*users.json"));
        QCOMPARE(cell.session->reload(), UserStore::Damaged);
        const QString damage = cell.session->users().damage();
        QVERIFY2(damage.contains(cell.home.path(kFile)) && damage.contains(place), qPrintable(damage));
        QCOMPARE(cell.logIn("boss", kPassword), damage);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file"));
        QCOMPARE(cell.createAdministrator("thief"), damage);
        QCOMPARE(cell.home.read(kFile), users);
        QCOMPARE(cell.home.keptAside(kFile), QStringList());
        QCOMPARE(cell.session->role(), Role::None);
    }

    void userFileSpoiledWhileRunningIsNotOverwritten()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        const QByteArray good = cell.home.read(kFile);
        cell.home.write(kFile, "{oops");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file"));
        QVERIFY(cell.addUser("op", Role::Operator).contains("users.json"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file"));
        QVERIFY(cell.resetPassword("boss", kPassword).contains("users.json"));
        QCOMPARE(cell.home.read(kFile), QByteArray("{oops"));
        cell.home.write(kFile, good);
        QCOMPARE(cell.session->reload(), UserStore::Ready);
        QCOMPARE(cell.logIn("boss", kPassword), QString());
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
        QCOMPARE(cell.logIn(QStringLiteral(" 王 师傅"), kPassword), QString());
        QCOMPARE(cell.session->role(), Role::Operator);
        QCOMPARE(cell.logIn("Eng", kPassword), QString());
        QCOMPARE(cell.session->userName(), QStringLiteral("eng"));
        QCOMPARE(cell.session->role(), Role::Engineer);
    }

    void wrongPasswordsMakeEverybodyWaitLongerAndLonger()
    {
        RetryDelay delay;
        const RetryDelay::Clock::time_point start{};
        QCOMPARE(delay.left(start).count(), 0);
        for (int expected : {1, 2, 4, 8, 16, 32, 60, 60, 60}) {
            delay.failed(start);
            QCOMPARE(delay.left(start), milliseconds(seconds(expected)));
            QCOMPARE(delay.left(start + seconds(expected)).count(), 0);
        }
        delay.succeeded();
        QCOMPARE(delay.left(start).count(), 0);
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
                    cell.session->logIn("boss", kPassword, &cell.context, Cell::into(&again));
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
        QCOMPARE(cell.logIn("deputy", kPassword), QString());
        QVERIFY2(cell.session->removeUser("boss", &error), qPrintable(error));
        QVERIFY(!cell.session->setRole("deputy", Role::Operator, &error));
        QVERIFY(!error.isEmpty());
        QCOMPARE(UserSession(cell.home.path(kFile)).users().accounts().size(), 1);
    }

    void onlyAdministratorsManage()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        QCOMPARE(cell.addUser("eng", Role::Engineer), QString());
        QCOMPARE(cell.logIn("eng", kPassword), QString());
        const QByteArray before = cell.home.read(kFile);
        for (int i = 0; i < 2; ++i) {
            QString error;
            QVERIFY(!cell.addUser("friend", Role::Administrator).isEmpty());
            QVERIFY(!cell.resetPassword("boss", kPassword + "2").isEmpty());
            QVERIFY(!cell.session->setRole("eng", Role::Administrator, &error));
            QVERIFY(!cell.session->removeUser("boss", &error));
            cell.session->logOut();
        }
        QCOMPARE(cell.home.read(kFile), before);
    }

    void ownPasswordNeedsThePresentOne()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        QVERIFY(cell.changeOwnPassword(kPassword, "short").contains("8"));
        QCOMPARE(cell.changeOwnPassword(kPassword, "another one"), QString());
        QCOMPARE(cell.changeOwnPassword("another one", kPassword), QString());
        QCOMPARE(cell.changeOwnPassword("another one", "a third one"), QStringLiteral("现在的密码错误"));
        QVERIFY(cell.session->wait().count() > 0);
    }

    void cancelledDialogChangesNothing()
    {
        Cell cell;
        QCOMPARE(cell.createAdministrator("boss"), QString());
        cell.session->logOut();
        const QByteArray before = cell.home.read(kFile);
        auto dialog = std::make_unique<QObject>();
        int answers = 0;
        const auto count = [&](const QString&) { ++answers; };
        cell.session->logIn("boss", kPassword, dialog.get(), count);
        dialog.reset();
        cell.resetPassword("boss", kPassword); // answered after the log-in
        QCOMPARE(cell.session->role(), Role::None);
        QCOMPARE(answers, 0);
        QCOMPARE(cell.home.read(kFile), before);

        cell.session->logIn("boss", kPassword, &cell.context, count);
        cell.session.reset();
        QCoreApplication::sendPostedEvents();
        QCOMPARE(answers, 0);
    }

    void namesAndPasswordsAreChecked_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("password");
        QTest::addColumn<bool>("good");
        const QString pass = QStringLiteral("longEnough");
        QTest::newRow("plain") << "boss" << pass << true;
        QTest::newRow("chinese") << QStringLiteral("张 工-2") << QStringLiteral("一二三四五六七八") << true;
        QTest::newRow("longest") << QString(32, 'n') << QString(64, 'p') + QString(64, 'q') << true;
        QTest::newRow("no name") << "" << pass << false;
        QTest::newRow("blank name") << QStringLiteral("　") << pass << false;
        QTest::newRow("apostrophe") << "O'Neil" << pass << false;
        QTest::newRow("path") << "../boss" << pass << false;
        QTest::newRow("line break") << "bo\nss" << pass << false;
        QTest::newRow("name too long") << QString(33, 'n') << pass << false;
        QTest::newRow("short") << "boss"
                               << "1234567" << false;
        QTest::newRow("blank") << "boss"
                               << "          " << false;
        QTest::newRow("the name") << "administrator"
                                  << "Administrator" << false;
        QTest::newRow("too long") << "boss" << QString(64, 'p') + QString(65, 'q') << false;
    }
    void namesAndPasswordsAreChecked()
    {
        QFETCH(QString, name);
        QFETCH(QString, password);
        QFETCH(bool, good);
        const bool taken = AccountRules::nameProblem(name).isEmpty() &&
                           AccountRules::passwordProblem(name, password, password).isEmpty();
        QCOMPARE(taken, good);
        QVERIFY(!AccountRules::passwordProblem(name, password, password + " ").isEmpty());
    }
};

QTEST_GUILESS_MAIN(AccountsTest)
#include "tst_accounts.moc"
