#include "CoreInbox.h"

CoreInbox::CoreInbox(Subject& subject)
    : images(subject, "image callback")
    , m_subject(subject)
    , m_notes(subject, "notification callback")
{
}

std::unique_ptr<ICoreCtrl> CoreInbox::started(Subject& subject, QStringList* keys)
{
    auto core = Contract::bringUp<ICoreCtrl>(subject, "start()", [](ICoreCtrl& made) { made.start(); });
    if (core && !subject.call("cameraKeys()", atOnceMs, [&] { *keys = core->cameraKeys(); }))
        core.release(); // see Contract::bringUp()
    return core;
}

void CoreInbox::end(Subject& subject, std::unique_ptr<ICoreCtrl>& core, CoreInbox* inbox)
{
    subject.call("stop()", 5000, [&] { core->stop(); });
    if (inbox)
        inbox->end();
    Contract::destroy(subject, core);
}

void CoreInbox::connectTo(ICoreCtrl& core, const QStringList& keys)
{
    m_keys = keys;
    m_subject.call("setRequestCallback()", atOnceMs,
                   [&] { core.setRequestCallback([](const QString&, const QVariant&) { return QVariant(); }); });
    m_subject.call("setNotificationCallback()", atOnceMs, [&] {
        core.setNotificationCallback([this](const QString& topic, const QVariant&) {
            m_notes.add(topic);
            ++notes;
        });
    });
    m_subject.call("setImageCallback()", atOnceMs, [&] {
        core.setImageCallback([this](const QString& key, const QImage& image) { arrived(key, image); });
    });
}

void CoreInbox::end()
{
    images.end("stop() returned");
    m_notes.end("stop() returned");
}

void CoreInbox::arrived(const QString& key, const QImage& image)
{
    if (image.isNull())
        m_subject.fault(QStringLiteral("a null image is delivered for camera \"%1\"").arg(key));
    if (!m_keys.contains(key))
        m_subject.fault(QStringLiteral("an image of a camera \"%1\" that is not among cameraKeys()").arg(key));
    pictures.keep(QStringLiteral("an image of camera \"%1\"").arg(key), image);
    images.add(key);
}
