#pragma once

#include <QImage>
#include <QString>

#include <functional>

/// Optional interface of a core-control module: images to look at, for focus, light and exposure. Such an image never
/// goes through ICoreCtrl::ImageCallback, so that nobody can take it for a part, and a preview takes nothing away from
/// the triggers: a camera captures for all triggers that wait before it captures for a preview.
class ICameraPreview
{
public:
    static constexpr const char* id = "valvecell.ICameraPreview/1";

    /// `error` is empty, or says in the operator's language why there is no image.
    using Callback = std::function<void(const QImage& image, const QString& error)>;

    /// Captures one image to look at, with the settings in force. GUI thread; returns at once. False, without a
    /// callback, when there is no such camera, when it cannot be asked, or when too many previews of it wait.
    /// Otherwise the callback comes exactly once, from any thread: at the latest, with an error, when the camera is
    /// removed or stopped.
    virtual bool preview(const QString& cameraKey, Callback callback) = 0;

protected:
    ~ICameraPreview() = default;
};
