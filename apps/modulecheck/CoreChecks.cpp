#include "Checks.h"

#include <valvecell/ICoreCtrl.h>

#include <QThread>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>

namespace {

constexpr int imageMs = 3000;
constexpr int quietMs = 700;

/// What the cameras' threads call, and what they must not.
struct Inbox
{
    explicit Inbox(Subject& subject)
        : m_subject(subject)
    {
    }

    void connectTo(ICoreCtrl& core, const QStringList& keys)
    {
        m_keys = keys;
        m_subject.call("setRequestCallback()", atOnceMs,
                       [&] { core.setRequestCallback([](const QString&, const QVariant&) { return QVariant(); }); });
        m_subject.call("setNotificationCallback()", atOnceMs,
                       [&] { core.setNotificationCallback([this](const QString&, const QVariant&) { noted(); }); });
        m_subject.call("setImageCallback()", atOnceMs, [&] {
            core.setImageCallback([this](const QString& key, const QImage& image) { arrived(key, image); });
        });
    }
    int images(const QString& key) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto known = m_images.find(key);
        return known == m_images.end() ? 0 : known->second;
    }

    std::atomic<bool> open{true}; ///< until stop() has returned
    std::atomic<int> notes{0};

private:
    void arrived(const QString& key, const QImage& image)
    {
        if (!open)
            m_subject.fault(QStringLiteral("the image callback is called after stop() returned"));
        if (image.isNull())
            m_subject.fault(QStringLiteral("a null image is delivered for camera \"%1\"").arg(key));
        if (!m_keys.contains(key))
            m_subject.fault(QStringLiteral("an image of a camera \"%1\" that is not among cameraKeys()").arg(key));
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_images[key];
    }
    void noted()
    {
        if (!open)
            m_subject.fault(QStringLiteral("the notification callback is called after stop() returned"));
        ++notes;
    }

    Subject& m_subject;
    QStringList m_keys;
    mutable std::mutex m_mutex; // protects the following
    std::map<QString, int> m_images;
};

/// A core control that is up; null when it does not come up.
std::unique_ptr<ICoreCtrl> started(Subject& subject, QStringList* keys)
{
    std::unique_ptr<ICoreCtrl> core(subject.make<ICoreCtrl>());
    if (!core || !subject.call("start()", 10000, [&] { core->start(); }) ||
        !subject.call("cameraKeys()", atOnceMs, [&] { *keys = core->cameraKeys(); })) {
        core.release(); // half of one is not asked for anything, not even to go
        return nullptr;
    }
    return core;
}

void end(Subject& subject, std::unique_ptr<ICoreCtrl> core)
{
    subject.call("stop()", 5000, [&] { core->stop(); });
    subject.call("the destructor", 2000, [&] { core.reset(); });
}

void checkLife(Subject& subject)
{
    for (int round = 0; round < 2; ++round) {
        QStringList keys;
        auto core = started(subject, &keys);
        if (!core)
            return;
        QStringList again;
        subject.call("cameraKeys()", atOnceMs, [&] { again = core->cameraKeys(); });
        if (keys != again)
            subject.fault(QStringLiteral("cameraKeys() answers differently when it is asked again"));
        if (keys.removeDuplicates() > 0)
            subject.fault(QStringLiteral("cameraKeys() names a camera twice"));
        if (keys.isEmpty() && round == 0)
            subject.note(QStringLiteral("there is no camera; --home names a home with a configuration"));
        end(subject, std::move(core));
    }
}

void checkTriggers(Subject& subject)
{
    QStringList keys;
    auto core = started(subject, &keys);
    if (!core)
        return;
    Inbox inbox(subject);
    inbox.connectTo(*core, keys);
    constexpr int triggers = 3;
    for (int i = 0; i < triggers; ++i)
        subject.call("trigger()", atOnceMs, [&] { core->trigger(keys); });
    for (const QString& key : qAsConst(keys)) {
        if (!Subject::waitFor([&] { return inbox.images(key) >= triggers; }, imageMs))
            subject.fault(QStringLiteral("camera \"%1\": %2 triggers, %3 images within %4 s")
                              .arg(key)
                              .arg(triggers)
                              .arg(inbox.images(key))
                              .arg(imageMs / 1000));
        else if (inbox.images(key) > triggers)
            subject.fault(QStringLiteral("camera \"%1\" delivers more images than it was triggered for").arg(key));
    }
    end(subject, std::move(core));
    inbox.open = false;
    Subject::waitFor([] { return false; }, quietMs);
}

void checkStop(Subject& subject)
{
    QStringList keys;
    auto core = started(subject, &keys);
    if (!core)
        return;
    Inbox inbox(subject);
    inbox.connectTo(*core, keys);
    subject.call("trigger()", atOnceMs, [&] { core->trigger(keys); });
    subject.call("stop()", 5000, [&] { core->stop(); });
    inbox.open = false;
    Subject::waitFor([] { return false; }, quietMs);
    subject.call("the destructor", 2000, [&] { core.reset(); });
    Subject::waitFor([] { return false; }, quietMs / 2);
}

void checkStrangers(Subject& subject)
{
    QStringList keys;
    auto core = started(subject, &keys);
    if (!core)
        return;
    Inbox inbox(subject);
    inbox.connectTo(*core, keys);
    subject.call("trigger() of no camera", atOnceMs, [&] { core->trigger({}); });
    subject.call("trigger() of an unknown camera", atOnceMs, [&] { core->trigger({QStringLiteral("nobody's")}); });
    if (!Subject::waitFor([&] { return inbox.notes > 0; }, 1000))
        subject.fault(QStringLiteral("an unknown camera is not reported through the notification callback"));
    void* strange = nullptr;
    subject.call("extension()", atOnceMs, [&] { strange = core->extension("valvecell.nothing/1"); });
    if (strange)
        subject.fault(QStringLiteral("extension() answers to an id that there is not"));
    subject.call("set...Callback() with nothing", atOnceMs, [&] {
        core->setImageCallback({});
        core->setNotificationCallback({});
    });
    subject.call("trigger() without callbacks", atOnceMs, [&] { core->trigger(keys + QStringList{"nobody's"}); });
    Subject::waitFor([] { return false; }, quietMs / 2);
    end(subject, std::move(core));
}

} // namespace

namespace Checks {

QVector<Check> ofCoreCtrl()
{
    return {{"life", Subject::CoreCtrl, checkLife},
            {"triggers", Subject::CoreCtrl, checkTriggers},
            {"stop", Subject::CoreCtrl, checkStop},
            {"strangers", Subject::CoreCtrl, checkStrangers}};
}

} // namespace Checks
