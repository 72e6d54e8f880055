#pragma once

#include <QImage>
#include <QString>

#include <functional>

/// Optional interface of a core-control module: captures with a number, so that nobody can take one trigger's picture
/// for another's. A program that finds it captures by it alone; without it the next image of a camera belongs to the
/// trigger that waits for it.
class ICameraCapture
{
public:
    static constexpr const char* id = "valvecell.ICameraCapture/1";

    /// What became of one capture. Either `image` was exposed after capture() was called for `number` and is whole, or
    /// it is null and `problem` says in the operator's language why there is none.
    struct Outcome
    {
        QString cameraKey;
        quint64 number = 0;
        QImage image; ///< shares its memory; the module does not change it afterwards
        QString problem;
    };
    /// From any thread of the module, several cameras at the same time; not after ICoreCtrl::stop() returned.
    using Callback = std::function<void(const Outcome& outcome)>;

    /// Replaces the one before; ICoreCtrl's image callback hears nothing of these captures.
    virtual void setCaptureCallback(Callback callback) = 0;

    /// Captures one image. GUI thread; returns at once. The callback comes exactly once for each call, also for a key
    /// that no camera has, a camera that is lost, or one that is removed meanwhile. Numbers rise. The
    /// callback may come before this returned.
    virtual void capture(const QString& cameraKey, quint64 number) = 0;

protected:
    ~ICameraCapture() = default;
};
