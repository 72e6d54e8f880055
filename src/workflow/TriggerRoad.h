#pragma once

#include "workflow/ImageRouter.h"
#include "workflow/ModuleRelay.h"
#include "workflow/PlcLink.h"
#include "workflow/ResultHandler.h"
#include "workflow/RoadTimer.h"
#include "workflow/TriggerDispatch.h"

#include <valvecell/ICoreCtrl.h>
#include <valvecell/ISerialPort.h>

#include <memory>

class IDesigner;

/// The road of a trigger, from the PLC's frame over camera and engine to the reply: makes its stages and connects them.
/// GUI thread.
class TriggerRoad
{
public:
    /// `config` outlives the road.
    TriggerRoad(ksGlobalConfig& config, TriggerDispatch::Capture capture);

    // What the modules call, on any thread; both may outlive the road.
    ICoreCtrl::ImageCallback imageCallback() const;
    ISerialPort::ReceiveCallback frameCallback() const;
    /// Tells the frames that come, on the GUI thread.
    const ModuleRelay* relay() const { return m_relay.get(); }

    /// Puts the modules on the road: the engine that gets the images, and the designer, which may watch them. Both
    /// null before they go.
    void setModules(IEngine* engine, IDesigner* designer);
    PlcLink& link() { return m_link; }
    TriggerDispatch& dispatch() { return m_dispatch; }
    ImageRouter& router() { return m_router; }
    ResultHandler& results() { return m_results; }

private:
    const std::shared_ptr<ModuleRelay> m_relay;
    PlcLink m_link;
    TriggerDispatch m_dispatch;
    ImageRouter m_router;
    ResultHandler m_results;
    RoadTimer m_timer;
    QMetaObject::Connection m_watch;
};
