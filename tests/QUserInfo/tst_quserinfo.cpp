#include "support/Hand.h"
#include "support/Look.h"
#include "support/TempHome.h"

#include <valvecell/IUserAudit.h>
#include <valvecell/IUserCtrl.h>

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLayout>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QTableWidget>

#include <memory>

namespace {

const QString goodPassword = QStringLiteral("correct horse");

IUserCtrl* createUserCtrl()
{
    QLibrary library(QStringLiteral(VALVECELL_BIN_DIR "/QUserInfo"));
    const auto create = reinterpret_cast<UserCtrlCreateFunction>(library.resolve("UserCtrlCreate"));
    if (!create)
        qFatal("%s", qPrintable(library.errorString()));
    return create();
}

/// The dialog of a class that is on the screen; null when there is none.
QDialog* openDialog(const char* name)
{
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows)
        if (window->isVisible() && (window->objectName() == name || window->inherits(name)))
            return qobject_cast<QDialog*>(window);
    return nullptr;
}

WindowHand on(QWidget* dialog)
{
    return WindowHand(dialog);
}

QPushButton* okButton(QDialog* dialog)
{
    return dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
}

void typeTwice(QDialog* dialog, const QString& password)
{
    on(dialog).act({"passwordEdit=" + password, "againEdit=" + password});
}

QString message(QDialog* dialog)
{
    return on(dialog).get<QLabel>("messageLabel")->text().remove(QChar(0x200b)); // where long paths may be broken
}

/// Keeps a picture for the eye, and finds texts that do not fit.
void look(QWidget* window, const char* name)
{
    window->layout()->activate();
    Look::shoot(*window, QLatin1String(name));
    QCOMPARE(Look::clipped(*window), QStringList());
}

class English : public QTranslator
{
public:
    QString translate(const char*, const char* source, const char*, int) const override
    {
        return QStringLiteral("EN ") + QString::fromUtf8(source);
    }
    bool isEmpty() const override { return false; }
};

/// The program's side: its window and the module's object.
struct Program
{
    TempHome home;
    QWidget window;
    std::unique_ptr<IUserCtrl> users{createUserCtrl()};
    QSignalSpy changes{users.get(), &IUserCtrl::sgCurrentUserInfo};
    QStringList audit; ///< "by: what before>after"

    Program()
    {
        if (auto* teller = qobject_cast<IUserAudit*>(users.get())) {
            teller->setListener([this](const UserChange& change) {
                audit << QStringLiteral("%1: %2 %3>%4").arg(change.by, change.name, change.before, change.after);
            });
        }
    }
    void createAdministrator()
    {
        users->showLogInDialog(&window);
        QDialog* dialog = openDialog("NewUserDialog");
        QVERIFY(dialog);
        on(dialog).type("nameEdit", "boss");
        typeTwice(dialog, goodPassword);
        okButton(dialog)->click();
        QTRY_COMPARE(users->state(), int(IUserCtrl::LoggedIn));
        QTRY_VERIFY(!openDialog("NewUserDialog"));
    }
    void addUser(QDialog* manager, const QString& name, const QString& role)
    {
        on(manager).press("addButton");
        QDialog* dialog = openDialog("NewUserDialog");
        QVERIFY(dialog);
        on(dialog).type("nameEdit", name);
        on(dialog).get<QComboBox>("roleBox")->setCurrentText(role);
        typeTwice(dialog, goodPassword);
        okButton(dialog)->click();
        QTRY_VERIFY(!openDialog("NewUserDialog"));
    }
};

} // namespace

class UserInfoTest : public QObject
{
    Q_OBJECT

private slots:
    void firstStartAsksForAnAdministrator()
    {
        Program program;
        QCOMPARE(program.users->state(), int(IUserCtrl::LoggedOut));
        program.users->showLogInDialog(&program.window);
        QDialog* dialog = openDialog("NewUserDialog");
        QVERIFY(dialog);
        look(dialog, "quserinfo_first_start");
        QVERIFY(!okButton(dialog)->isEnabled());
        on(dialog).type("nameEdit", "boss");
        on(dialog).type("passwordEdit", "short");
        QVERIFY(message(dialog).contains("8"));
        on(dialog).type("passwordEdit", goodPassword);
        on(dialog).type("againEdit", goodPassword + "x");
        QVERIFY(message(dialog).contains(QStringLiteral("不一致")) && !okButton(dialog)->isEnabled());
        QTest::keyClick(on(dialog).get<QLineEdit>("againEdit"), Qt::Key_Return);
        QVERIFY(program.home.read("/user/users.json").isEmpty());
        on(dialog).type("againEdit", goodPassword);
        QVERIFY(okButton(dialog)->isEnabled());
        QTest::keyClick(on(dialog).get<QLineEdit>("againEdit"), Qt::Key_Return);
        QTRY_COMPARE(program.changes.size(), 1);
        QCOMPARE(program.changes.at(0), QVariantList({QStringLiteral("boss"), 3, int(IUserCtrl::LoggedIn)}));
        QCOMPARE(program.users->currentUserName(), QStringLiteral("boss"));
    }

    void operatorLogsOutAndInAgain()
    {
        Program program;
        program.createAdministrator();
        program.users->logOut();
        QCOMPARE(program.changes.last(), QVariantList({QString(), 0, int(IUserCtrl::LoggedOut)}));
        program.users->showLogInDialog(&program.window);
        QPointer<QDialog> dialog = openDialog("LogInDialog");
        QVERIFY(dialog);
        QCOMPARE(on(dialog).get<QComboBox>("nameBox")->currentText(), QStringLiteral("boss"));
        QVERIFY(!okButton(dialog)->isEnabled());
        on(dialog).type("passwordEdit", "wrong");
        okButton(dialog)->click();
        QTRY_VERIFY(message(dialog).contains(QStringLiteral("错误")));
        look(dialog, "quserinfo_login");
        QTRY_VERIFY(message(dialog).contains(QStringLiteral("请输入密码"))); // the wait is over
        program.users->showLogInDialog(&program.window);
        QCOMPARE(openDialog("LogInDialog"), dialog.data());
        on(dialog).type("passwordEdit", goodPassword);
        QTest::keyClick(on(dialog).get<QLineEdit>("passwordEdit"), Qt::Key_Return);
        QTRY_COMPARE(program.users->state(), int(IUserCtrl::LoggedIn));
        QTRY_VERIFY(!dialog);
    }

    void damagedUserFileIsNamedInTheDialog()
    {
        Program program;
        program.home.write("/user/users.json", "{\"users\":[");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^user file"));
        program.users->showLogInDialog(&program.window);
        QDialog* dialog = openDialog("LogInDialog");
        QVERIFY2(dialog, "never the dialog that creates an administrator");
        QVERIFY(message(dialog).contains(program.home.path("/user/users.json")));
        on(dialog).type("passwordEdit", goodPassword);
        QVERIFY(!okButton(dialog)->isEnabled());
        QTRY_VERIFY(dialog->isActiveWindow());
        look(dialog, "quserinfo_damaged");
    }

    void administratorManagesTheUsers()
    {
        Program program;
        program.createAdministrator();
        program.users->showUserManager(&program.window);
        QDialog* manager = openDialog("UserManagerDialog");
        QVERIFY(manager);
        auto* table = on(manager).get<QTableWidget>("userTable");
        QVERIFY(!on(manager).get<QPushButton>("roleButton")->isEnabled());
        program.addUser(manager, QStringLiteral("李工"), QStringLiteral("工程师"));
        program.addUser(manager, QStringLiteral("王师傅"), QStringLiteral("操作员"));
        QCOMPARE(table->rowCount(), 3);
        QCOMPARE(table->item(1, 1)->text(), QStringLiteral("工程师"));

        table->selectRow(0);
        QVERIFY2(!on(manager).get<QPushButton>("removeButton")->isEnabled(), "nobody removes himself");
        on(manager).get<QPushButton>("roleButton")->menu()->actions().at(0)->trigger();
        QVERIFY(message(manager).contains(QStringLiteral("至少")));
        look(manager, "quserinfo_manager");
        table->selectRow(1);
        for (const int role : {0, 0, 1}) // the second changes nothing
            on(manager).get<QPushButton>("roleButton")->menu()->actions().at(role)->trigger();

        table->selectRow(2);
        on(manager).press("passwordButton");
        QDialog* reset = openDialog("PasswordDialog");
        QVERIFY(reset);
        look(reset, "quserinfo_reset");
        typeTwice(reset, "a new password");
        const QByteArray before = program.home.read("/user/users.json");
        okButton(reset)->click();
        QTRY_VERIFY(program.home.read("/user/users.json") != before);

        on(manager).press("removeButton");
        QVERIFY(on(manager).get<QLabel>("question")->text().contains(QStringLiteral("王师傅")));
        look(manager, "quserinfo_remove");
        on(manager).press("firstAnswer");
        QTRY_COMPARE(table->rowCount(), 2);
        const QStringList told{": user/boss/role >administrator",        "boss: user/李工/role >engineer",
                               "boss: user/王师傅/role >operator",       "boss: user/李工/role engineer>operator",
                               "boss: user/李工/role operator>engineer", "boss: user/王师傅/password ***>***",
                               "boss: user/王师傅/role operator>"};
        QCOMPARE(program.audit, told);
        program.users->logOut();
        QVERIFY2(!manager->isVisible(), "the list closes with its administrator");
    }

    void othersChangeTheirOwnPasswordOnly()
    {
        Program program;
        program.users->showUserManager(&program.window);
        QVERIFY(openDialog("QMessageBox"));
        openDialog("QMessageBox")->reject();
        program.createAdministrator();
        program.users->showUserManager(&program.window);
        program.addUser(openDialog("UserManagerDialog"), "op", QStringLiteral("操作员"));
        program.users->logOut();

        program.users->showLogInDialog(&program.window);
        QDialog* dialog = openDialog("LogInDialog");
        on(dialog).get<QComboBox>("nameBox")->setCurrentText("op");
        on(dialog).type("passwordEdit", goodPassword);
        okButton(dialog)->click();
        QTRY_COMPARE(program.users->currentUserName(), QStringLiteral("op"));
        QCOMPARE(program.changes.last(), QVariantList({QStringLiteral("op"), 1, int(IUserCtrl::LoggedIn)}));
        program.users->showUserManager(&program.window);
        dialog = openDialog("PasswordDialog");
        QVERIFY(dialog && !openDialog("UserManagerDialog"));
        look(dialog, "quserinfo_own_password");
        typeTwice(dialog, "my own password");
        QVERIFY(!okButton(dialog)->isEnabled());
        on(dialog).type("presentEdit", "guess");
        okButton(dialog)->click();
        QTRY_VERIFY(message(dialog).contains(QStringLiteral("密码错误")));
        QVERIFY2(!program.audit.last().contains("password"), "it was not changed");
        program.users->logOut();
        QVERIFY2(!openDialog("PasswordDialog"), "nobody finds another's dialog");
    }

    void administratorSetsTheAutomaticLogOut()
    {
        Program program;
        program.createAdministrator();
        program.users->showUserManager(&program.window);
        QDialog* manager = openDialog("UserManagerDialog");
        auto* minutes = on(manager).get<QSpinBox>("idleBox");
        QCOMPARE(minutes->value(), 0);
        minutes->setFocus();
        minutes->selectAll();
        QTest::keyClicks(minutes, "15");
        QVERIFY2(program.home.read("/user/login.json").isEmpty(), "not the 1 that is typed first");
        QTest::keyClick(minutes, Qt::Key_Return);
        QVERIFY(program.home.read("/user/login.json").contains("\"idle_minutes\": 15"));
        QCOMPARE(program.audit.last(), QStringLiteral("boss: login/idle_minutes 0>15"));
        look(manager, "quserinfo_idle");
        manager->reject();
        program.home.write("/user/login.json", "{\"idle_minutes\": -3}");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("login.json"));
        program.users->showUserManager(&program.window);
        QCOMPARE(on(openDialog("UserManagerDialog")).get<QSpinBox>("idleBox")->value(), 0);
        QCOMPARE(program.users->state(), int(IUserCtrl::LoggedIn));
    }

    void openDialogsFollowTheLanguage()
    {
        Program program;
        program.createAdministrator();
        program.users->showUserManager(&program.window);
        QDialog* manager = openDialog("UserManagerDialog");
        on(manager).press("addButton");
        QDialog* adding = openDialog("NewUserDialog");
        English english;
        qApp->installTranslator(&english);
        QTRY_VERIFY(adding->windowTitle().startsWith("EN "));
        QVERIFY(message(adding).startsWith("EN ") && okButton(adding)->text().startsWith("EN "));
        QTRY_VERIFY(on(manager).get<QTableWidget>("userTable")->item(0, 1)->text().startsWith("EN "));
        qApp->removeTranslator(&english);
    }

    void programClosesWithDialogsOpenAndWorkInHand()
    {
        auto program = std::make_unique<Program>();
        program->createAdministrator();
        program->users->showUserManager(&program->window);
        program->users->logOut();
        program->users->showLogInDialog(&program->window);
        QPointer<QDialog> dialog = openDialog("LogInDialog");
        on(dialog).type("passwordEdit", goodPassword);
        okButton(dialog)->click();
        program->users.reset();
        QVERIFY(!dialog);

        // Or the window goes first, and its dialogs with it.
        program->users.reset(createUserCtrl());
        auto window = std::make_unique<QWidget>();
        program->users->showLogInDialog(window.get());
        dialog = openDialog("LogInDialog");
        window.reset();
        QVERIFY(!dialog);
        program.reset();
    }
};

QTEST_MAIN(UserInfoTest)
#include "tst_quserinfo.moc"
