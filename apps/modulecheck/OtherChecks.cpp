#include "Checks.h"

#include <valvecell/IDesigner.h>
#include <valvecell/IEngine.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/IUserCtrl.h>

#include <QVariantMap>

#include <atomic>
#include <memory>

namespace {

/// An engine without solutions.
class NoEngine : public IEngine, public ITaskList
{
public:
    void initialise() override {}
    ITaskList* taskList() override { return this; }
    QStringList list() override { return {}; }
    void runTask(const QVariantMap&, const QString&, const QString&, ResultCallback callback) override { callback({}); }
};

void checkDesigner(Subject& subject)
{
    NoEngine engine;
    for (int round = 0; round < 2; ++round) {
        std::unique_ptr<IDesigner> designer(subject.make<IDesigner>());
        if (!designer)
            return;
        void* strange = nullptr;
        subject.call("attachEngine()", 5000, [&] { designer->attachEngine(&engine); });
        subject.call("extension()", atOnceMs, [&] { strange = designer->extension("valvecell.nothing/1"); });
        if (strange)
            subject.fault(QStringLiteral("extension() answers to an id that there is not"));
        subject.call("openDesigner()", 5000, [&] { designer->openDesigner(nullptr); });
        Subject::waitFor([] { return false; }, 200);
        subject.call("the destructor", 5000, [&] { designer.reset(); });
    }
}

void checkPort(Subject& subject)
{
    QObject owner;
    std::atomic<bool> open{false};
    std::unique_ptr<ISerialPort> port(subject.make<ISerialPort>());
    if (!port)
        return;
    subject.call("setReceiveCallback()", atOnceMs, [&] {
        port->setReceiveCallback(&owner, [&](SComFrame) {
            if (!open)
                subject.fault(QStringLiteral("a frame is received while the port is not open"));
        });
    });
    const SComFrame frame;
    subject.call("send() before open()", atOnceMs, [&] { port->send(&frame); });
    bool opened = false;
    open = true;
    subject.call("open() of a port that there is not", 1500,
                 [&] { opened = port->open(QStringLiteral("/nowhere/port"), QStringLiteral("115200")); });
    if (opened)
        subject.fault(QStringLiteral("open() says that a port is open that there is not"));
    subject.call("open() with a baud rate that is none", 1500,
                 [&] { port->open(QStringLiteral("/nowhere/port"), QStringLiteral("fast")); });
    subject.call("send() on a line that is down", atOnceMs, [&] { port->send(&frame); });
    void* strange = nullptr;
    subject.call("extension()", atOnceMs, [&] { strange = port->extension("valvecell.nothing/1"); });
    if (strange)
        subject.fault(QStringLiteral("extension() answers to an id that there is not"));
    subject.call("close()", 2000, [&] { port->close(); });
    open = false;
    subject.call("close() again", 2000, [&] { port->close(); });
    Subject::waitFor([] { return false; }, 300);
    subject.call("the destructor", 2000, [&] { port.reset(); });
}

void checkUsers(Subject& subject)
{
    std::unique_ptr<IUserCtrl> users(subject.make<IUserCtrl>());
    if (!users)
        return;
    int state = -1;
    QString name;
    subject.call("state()", atOnceMs, [&] { state = users->state(); });
    subject.call("currentUserName()", atOnceMs, [&] { name = users->currentUserName(); });
    if (state != IUserCtrl::LoggedIn && state != IUserCtrl::LoggedOut)
        subject.fault(QStringLiteral("state() is %1, neither LoggedIn nor LoggedOut").arg(state));
    if (state == IUserCtrl::LoggedOut && !name.isEmpty())
        subject.fault(QStringLiteral("nobody is logged in, and currentUserName() is \"%1\"").arg(name));
    subject.call("logOut()", 1000, [&] { users->logOut(); });
    subject.call("state() after logOut()", atOnceMs, [&] { state = users->state(); });
    if (state != IUserCtrl::LoggedOut)
        subject.fault(QStringLiteral("after logOut() the state is %1, not LoggedOut").arg(state));
    subject.call("the destructor", 2000, [&] { users.reset(); });
}

} // namespace

namespace Checks {

QVector<Check> ofOthers()
{
    return {{"life", Subject::Designer, checkDesigner},
            {"line", Subject::SerialPort, checkPort},
            {"users", Subject::UserCtrl, checkUsers}};
}

QVector<Check> of(Subject::Kind kind)
{
    QVector<Check> checks;
    for (const Check& check : ofCoreCtrl() + ofEngine() + ofOthers()) {
        if (check.kind == kind)
            checks.append(check);
    }
    return checks;
}

} // namespace Checks
