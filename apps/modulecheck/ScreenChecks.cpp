#include "Checks.h"
#include "Contract.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IDesignerEdits.h>
#include <valvecell/IDesignerImage.h>
#include <valvecell/IEngine.h>
#include <valvecell/IImageWatch.h>
#include <valvecell/IUserAudit.h>
#include <valvecell/IUserCtrl.h>

#include <QApplication>
#include <QDialog>
#include <QTimer>
#include <QVariantMap>

namespace {

using Contract::linger;

constexpr int windowMs = 5000;

/// An engine that answers when it is told to.
class SlowEngine : public IEngine, public ITaskList
{
public:
    void initialise() override {}
    ITaskList* taskList() override { return this; }
    QStringList list() override { return {QStringLiteral("1")}; }
    void runTask(const QVariantMap&, const QString&, const QString&, ResultCallback callback) override
    {
        m_waiting.append(std::move(callback));
    }
    void answer()
    {
        for (const ResultCallback& callback : qAsConst(m_waiting))
            callback({});
    }

private:
    QVector<ResultCallback> m_waiting;
};

/// Closes what waits for a person, and remembers that it had to.
class NoPerson
{
public:
    NoPerson()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            if (QWidget* modal = QApplication::activeModalWidget()) {
                met = true;
                modal->close();
            }
        });
        m_timer.start(300);
    }
    bool met = false;

private:
    QTimer m_timer;
};

int windows()
{
    int count = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets())
        count += widget->isVisible() ? 1 : 0;
    return count;
}

/// It has to return at once, whatever it shows.
template <typename Open>
void show(Subject& subject, const char* name, Open open)
{
    NoPerson nobody;
    subject.call(name, windowMs, open);
    if (nobody.met)
        subject.fault(QStringLiteral("%1 returns only when its window is closed").arg(QLatin1String(name)));
}

void checkDesignerLife(Subject& subject)
{
    SlowEngine engine;
    Contract::live(subject, [&] {
        auto designer = Contract::bringUp<IDesigner>(subject, "attachEngine()",
                                                     [&](IDesigner& made) { made.attachEngine(&engine); });
        if (!designer)
            return false;
        Contract::refuseStrangers(subject, *designer);
        show(subject, "openDesigner()", [&] { designer->openDesigner(nullptr); });
        linger(200);
        const int shown = windows();
        if (shown == 0)
            subject.fault(QStringLiteral("openDesigner() shows no window"));
        show(subject, "openDesigner() again", [&] { designer->openDesigner(nullptr); });
        if (windows() > shown)
            subject.fault(QStringLiteral("openDesigner() opens a second window"));
        Contract::destroy(subject, designer, "the destructor with the window open");
        linger(100);
        if (windows() > 0)
            subject.fault(QStringLiteral("its window stays when the designer is deleted"));
        return true;
    });
}

void checkParent(Subject& subject)
{
    SlowEngine engine;
    auto designer =
        Contract::bringUp<IDesigner>(subject, "attachEngine()", [&](IDesigner& made) { made.attachEngine(&engine); });
    if (!designer)
        return;
    auto parent = std::make_unique<QWidget>();
    show(subject, "openDesigner()", [&] { designer->openDesigner(parent.get()); });
    subject.step("the deletion of its window's parent");
    parent.reset();
    show(subject, "openDesigner() after its window's parent is gone", [&] { designer->openDesigner(nullptr); });
    linger(100);
    Contract::destroy(subject, designer);
}

void checkEdits(Subject& subject, IDesigner& designer)
{
    auto* edits = extensionOf<IDesignerEdits>(&designer);
    if (!edits)
        return;
    if (!edits->unsaved().isEmpty())
        subject.fault(QStringLiteral("unsaved() names something, and nothing was changed"));
    show(subject, "openDesigner()", [&] { designer.openDesigner(nullptr); });
    show(subject, "hideDesigner()", [&] { edits->hideDesigner(); });
    if (windows() > 0)
        subject.fault(QStringLiteral("hideDesigner() leaves a window on the screen"));
    show(subject, "hideDesigner() again", [&] { edits->hideDesigner(); });
}

void checkPictures(Subject& subject)
{
    SlowEngine engine;
    auto designer =
        Contract::bringUp<IDesigner>(subject, "attachEngine()", [&](IDesigner& made) { made.attachEngine(&engine); });
    if (!designer)
        return;
    checkEdits(subject, *designer);
    if (auto* watch = extensionOf<IImageWatch>(designer.get())) {
        for (const QImage& image : {QImage(), Contract::gray(1, 1), Contract::gray()})
            subject.call("imageCaptured()", atOnceMs, [&] { watch->imageCaptured(QStringLiteral("cam"), image); });
    }
    const QString file = QDir::temp().filePath(QStringLiteral("modulecheck-%1.png").arg(qApp->applicationPid()));
    Contract::gray().save(file);
    if (auto* pictures = extensionOf<IDesignerImage>(designer.get())) {
        for (const QString& path : {file, QStringLiteral("/nowhere/picture.png")})
            show(subject, "openImage()",
                 [&] { pictures->openImage(nullptr, QStringLiteral("1"), QStringLiteral("nobody's"), path); });
        linger(500);
    }
    QFile::remove(file);
    Contract::destroy(subject, designer);
    subject.call("a result after the designer's deletion", atOnceMs, [&] { engine.answer(); });
    linger(200);
}

/// Who is here, as the module says it in every way.
void compareUser(Subject& subject, IUserCtrl& users, const QString& name, int level, int state)
{
    if (name != users.currentUserName() || state != users.state())
        subject.fault(QStringLiteral("sgCurrentUserInfo() tells of another user than currentUserName() and state()"));
    if (level < 0 || level > 3)
        subject.fault(QStringLiteral("sgCurrentUserInfo() tells level %1, which there is not").arg(level));
    if ((state == IUserCtrl::LoggedOut) != name.isEmpty() || (level == 0) != name.isEmpty())
        subject.fault(QStringLiteral("sgCurrentUserInfo(): name \"%1\", level %2 and state %3 contradict each other")
                          .arg(name)
                          .arg(level)
                          .arg(state));
}

void checkState(Subject& subject, IUserCtrl& users)
{
    int state = -1;
    QString name;
    subject.call("state()", atOnceMs, [&] { state = users.state(); });
    subject.call("currentUserName()", atOnceMs, [&] { name = users.currentUserName(); });
    if (state != IUserCtrl::LoggedIn && state != IUserCtrl::LoggedOut)
        subject.fault(QStringLiteral("state() is %1, neither LoggedIn nor LoggedOut").arg(state));
    if (state == IUserCtrl::LoggedOut && !name.isEmpty())
        subject.fault(QStringLiteral("nobody is logged in, and currentUserName() is \"%1\"").arg(name));
}

void checkLogOut(Subject& subject, IUserCtrl& users, const int& signalled)
{
    const bool somebody = users.state() == IUserCtrl::LoggedIn;
    const int before = signalled;
    subject.call("logOut()", 1000, [&] { users.logOut(); });
    if (users.state() != IUserCtrl::LoggedOut)
        subject.fault(QStringLiteral("after logOut() the state is %1, not LoggedOut").arg(users.state()));
    if (somebody && signalled == before)
        subject.fault(QStringLiteral("logOut() does not tell that nobody is here any more"));
    const int then = signalled;
    subject.call("logOut() when nobody is logged in", 1000, [&] { users.logOut(); });
    if (signalled > then)
        subject.fault(QStringLiteral("logOut() tells of a change when nobody was logged in"));
}

void checkUsers(Subject& subject)
{
    Contract::live(subject, [&] {
        std::unique_ptr<IUserCtrl> users(subject.make<IUserCtrl>());
        if (!users)
            return false;
        int signalled = 0;
        QObject::connect(users.get(), &IUserCtrl::sgCurrentUserInfo, [&](const QString& name, int level, int state) {
            ++signalled;
            compareUser(subject, *users, name, level, state);
        });
        checkState(subject, *users);
        if (auto* audit = qobject_cast<IUserAudit*>(users.get()))
            subject.call("setListener()", atOnceMs, [&] { audit->setListener([](const UserChange&) {}); });
        NoPerson nobody; // a log-in may wait for its person
        subject.call("showLogInDialog()", windowMs, [&] { users->showLogInDialog(nullptr); });
        linger(100);
        checkLogOut(subject, *users, signalled);
        subject.call("showUserManager()", windowMs, [&] { users->showUserManager(nullptr); });
        Contract::destroy(subject, users, "the destructor with its windows open");
        linger(100);
        if (windows() > 0)
            subject.fault(QStringLiteral("a window stays when the user control is deleted"));
        return true;
    });
}

} // namespace

namespace Checks {

QVector<Check> ofScreens()
{
    return {{"life", Subject::Designer, checkDesignerLife},
            {"parent", Subject::Designer, checkParent},
            {"pictures", Subject::Designer, checkPictures},
            {"users", Subject::UserCtrl, checkUsers}};
}

} // namespace Checks
