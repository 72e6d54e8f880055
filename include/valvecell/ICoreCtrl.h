#pragma once

#include <QImage>
#include <QStringList>
#include <QVariant>

#include <functional>

/// Cameras and capture. Module file "ksCoreCtrl", symbols "Lib_CoreCtrl_Init" and "Lib_CoreCtrl_Free".
///
/// Threads: every operation is called from the GUI thread and returns at once; a capture never blocks its caller.
/// The callbacks may be called from any thread of the module, several cameras at the same time. Callbacks are
/// registered after start() and may be replaced at any time; none is called after stop() returned.
/// Ownership: the instance that the initialise function returns belongs to the caller, who deletes it after stop().
/// Errors: no operation throws. What goes wrong is reported through the notification callback.
class ICoreCtrl
{
public:
    /// Asks the program for a value by topic; an invalid variant means "not known". Today's program knows none.
    using RequestCallback = std::function<QVariant(const QString& topic, const QVariant& argument)>;
    /// Delivers one image of one camera. The image shares its memory; the module does not change it afterwards.
    using ImageCallback = std::function<void(const QString& cameraKey, const QImage& image)>;
    /// Tells of an event by topic, for example a lost camera. Today's program ignores all.
    using NotificationCallback = std::function<void(const QString& topic, const QVariant& value)>;

    virtual ~ICoreCtrl() = default;

    /// The keys of all configured cameras, in their configured order; empty when there is none or when the module's
    /// own configuration cannot be read.
    virtual QStringList cameraKeys() = 0;
    virtual void setRequestCallback(RequestCallback callback) = 0;
    virtual void setImageCallback(ImageCallback callback) = 0;
    virtual void setNotificationCallback(NotificationCallback callback) = 0;

    /// Brings the module up. Called once, right after the instance was made.
    virtual void start() = 0;
    /// Takes the module down: waits for captures in hand, then calls back no more. Called once, before deletion.
    virtual void stop() = 0;

    /// Captures one image with each of the named cameras; each is delivered through the image callback. An unknown
    /// key is ignored and reported through the notification callback. A trigger that finds its camera still busy is
    /// queued.
    virtual void trigger(const QStringList& cameraKeys) = 0;

    /// An optional interface of this module by its id, or null; see Extension.h.
    virtual void* extension(const char* id)
    {
        Q_UNUSED(id)
        return nullptr;
    }
};

/// The signature of "Lib_CoreCtrl_Init"; the argument is reserved and null.
using CoreCtrlInitFunction = ICoreCtrl* (*)(void* reserved);
