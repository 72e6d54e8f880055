#pragma once

#include "modules/ModuleReport.h"

#include <valvecell/ICameraCapture.h>
#include <valvecell/ICoreCtrl.h>

#include <QVector>

class IDesigner;
class IEngine;
class ISerialPort;
class IUserCtrl;

/// The modules of the program, as the cell sees them. GUI thread. Deleting it takes them down.
class IModules
{
public:
    virtual ~IModules() = default;

    /// What the cameras call, on their threads.
    struct CameraCallbacks
    {
        ICoreCtrl::ImageCallback image;
        ICoreCtrl::NotificationCallback notification;
        ICameraCapture::Callback capture; ///< for a core control that captures with numbers
    };

    /// Starts core control, engine and designer, in this order; what runs already is left alone. Returns the text of
    /// the fatal message, empty when all is well.
    virtual QString start(const CameraCallbacks& cameras) = 0;
    /// Takes down the core control, so that no more images arrive, then the designer and the engine.
    virtual void stop() = 0;

    /// Loads the optional modules; null when the library or its symbol is missing. The caller owns the object.
    virtual ISerialPort* createSerialPort() = 0;
    virtual IUserCtrl* createUserCtrl() = 0;

    // Null before start(), after stop(), and when there is none.
    virtual ICoreCtrl* coreCtrl() const = 0;
    virtual IEngine* engine() const = 0;
    virtual IDesigner* designer() const = 0;

    /// All modules that were to be loaded so far, in the order of the start-up.
    virtual QVector<ModuleInfo> report() const = 0;
};
