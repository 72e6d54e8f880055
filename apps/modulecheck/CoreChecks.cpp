#include "Checks.h"
#include "CoreInbox.h"

#include <valvecell/Extension.h>
#include <valvecell/IConcurrentCalls.h>

namespace {

using Contract::linger;

constexpr int triggers = 3;

void checkLife(Subject& subject)
{
    QStringList first;
    Contract::live(subject, [&] {
        QStringList keys;
        auto core = CoreInbox::started(subject, &keys);
        if (!core)
            return false;
        QStringList again;
        subject.call("cameraKeys()", atOnceMs, [&] { again = core->cameraKeys(); });
        if (keys != again)
            subject.fault(QStringLiteral("cameraKeys() answers differently when it is asked again"));
        if (first.isEmpty())
            first = keys;
        else if (keys != first)
            subject.fault(QStringLiteral("cameraKeys() of a second instance are others than those of the first"));
        if (keys.removeDuplicates() > 0)
            subject.fault(QStringLiteral("cameraKeys() names a camera twice"));
        if (keys.isEmpty())
            subject.note(QStringLiteral("there is no camera; --home names a home with a configuration"));
        CoreInbox::end(subject, core);
        return true;
    });
}

/// Each camera delivers as often as it was triggered.
void expectImages(Subject& subject, const CoreInbox& inbox, const QStringList& keys, const char* whence)
{
    for (const QString& key : keys) {
        if (!Subject::waitFor([&] { return inbox.images.of(key).size() >= triggers; }, imageMs))
            subject.fault(QStringLiteral("camera \"%1\": %2 triggers%3, %4 images within %5 s")
                              .arg(key)
                              .arg(triggers)
                              .arg(QLatin1String(whence))
                              .arg(inbox.images.of(key).size())
                              .arg(imageMs / 1000));
        else if (inbox.images.of(key).size() > triggers)
            subject.fault(QStringLiteral("camera \"%1\" delivers more images than it was triggered for").arg(key));
    }
}

void checkTriggers(Subject& subject)
{
    QStringList keys;
    auto core = CoreInbox::started(subject, &keys);
    if (!core)
        return;
    CoreInbox inbox(subject);
    inbox.connectTo(*core, keys);
    for (int i = 0; i < triggers; ++i)
        subject.call("trigger()", atOnceMs, [&] { core->trigger(keys); });
    expectImages(subject, inbox, keys, "");
    CoreInbox::end(subject, core, &inbox);
    linger();
    inbox.pictures.compare(subject);
}

void checkStop(Subject& subject)
{
    QStringList keys;
    auto core = CoreInbox::started(subject, &keys);
    if (!core)
        return;
    CoreInbox inbox(subject);
    inbox.connectTo(*core, keys);
    subject.call("trigger()", atOnceMs, [&] { core->trigger(keys); });
    subject.call("stop() with captures in hand", 5000, [&] { core->stop(); });
    inbox.end();
    linger();
    Contract::destroy(subject, core);
    linger(350);
}

void checkStrangers(Subject& subject)
{
    QStringList keys;
    auto core = CoreInbox::started(subject, &keys);
    if (!core)
        return;
    CoreInbox inbox(subject);
    inbox.connectTo(*core, keys);
    subject.call("trigger() of no camera", atOnceMs, [&] { core->trigger({}); });
    subject.call("trigger() of an unknown camera", atOnceMs, [&] { core->trigger({QStringLiteral("nobody's")}); });
    if (!Subject::waitFor([&] { return inbox.notes > 0; }, 1000))
        subject.fault(QStringLiteral("an unknown camera is not reported through the notification callback"));
    Contract::refuseStrangers(subject, *core);
    subject.call("set...Callback() with nothing", atOnceMs, [&] {
        core->setImageCallback({});
        core->setNotificationCallback({});
    });
    subject.call("trigger() without callbacks", atOnceMs, [&] { core->trigger(keys + QStringList{"nobody's"}); });
    linger(350);
    CoreInbox::end(subject, core);
}

void checkConcurrentTriggers(Subject& subject)
{
    QStringList keys;
    auto core = CoreInbox::started(subject, &keys);
    if (!core)
        return;
    keys.removeDuplicates();
    if (extensionOf<IConcurrentCalls>(core.get()) && !keys.isEmpty()) {
        CoreInbox inbox(subject);
        inbox.connectTo(*core, keys);
        const QStringList two = keys.mid(0, 2);
        Contract::sideBySide(
            [&](int i) {
                for (int n = 0; n < triggers && i < two.size(); ++n)
                    subject.call("trigger() on another thread", atOnceMs, [&] { core->trigger({two[i]}); });
            },
            [&] { core->cameraKeys(); });
        expectImages(subject, inbox, two, " on a thread of its own");
        CoreInbox::end(subject, core, &inbox);
    } else {
        CoreInbox::end(subject, core);
    }
}

} // namespace

namespace Checks {

QVector<Check> ofCoreCtrl()
{
    return {{"life", Subject::CoreCtrl, checkLife},
            {"triggers", Subject::CoreCtrl, checkTriggers},
            {"stop", Subject::CoreCtrl, checkStop},
            {"strangers", Subject::CoreCtrl, checkStrangers},
            {"threads", Subject::CoreCtrl, checkConcurrentTriggers}};
}

} // namespace Checks
