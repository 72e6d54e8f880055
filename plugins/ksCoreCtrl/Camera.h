#pragma once

#include <valvecell/ICameraPreview.h>
#include <valvecell/ICameraSettings.h>

/// One camera of the core control, made by type code in CameraFactory.cpp.
///
/// Threads: all operations are called from the GUI thread and return at once, close() excepted. Images and events go to
/// CameraEvents from any thread.
class Camera
{
public:
    virtual ~Camera() = default;

    /// Gets ready to capture. A camera that cannot says so in its status.
    virtual void open() = 0;
    /// Ends the capture in hand, drops the triggers that wait, and sends nothing more once it returned.
    virtual void close() = 0;

    /// Captures one image; queued when the camera is busy.
    virtual void trigger() = 0;
    /// Captures one image for the callback alone, once no trigger waits; false when it cannot.
    virtual bool preview(ICameraPreview::Callback callback) = 0;

    virtual CameraStatus status() const = 0;
    virtual QVariantMap settings() const = 0;
    /// Whether apply() would take these settings; if not, `error` says which is wrong and why.
    virtual bool accepts(const QVariantMap& settings, QString* error) const = 0;
    /// Puts accepted settings into force, from the next capture on.
    virtual void apply(const QVariantMap& settings) = 0;
};
