#pragma once

#include "workflow/ModuleRelay.h"
#include "workflow/PlcLink.h"
#include "workflow/ResultHandler.h"
#include "workflow/StandIn.h"
#include "workflow/StationLanes.h"
#include "workflow/TriggerDispatch.h"
#include "workflow/TriggersInHand.h"

#include <valvecell/ICoreCtrl.h>
#include <valvecell/ISerialPort.h>

class IDesigner;
class IEngine;

/// The road of a trigger, from the PLC's frame over camera and engine to the reply: makes its stages and connects them.
/// GUI thread.
class TriggerRoad
{
public:
    /// `config` and `scheduler` outlive the road.
    TriggerRoad(ksGlobalConfig& config, Scheduler& scheduler, TriggersInHand::Deadline deadline);

    // What the modules call, on any thread; both may outlive the road.
    ICoreCtrl::ImageCallback imageCallback() const;
    ICoreCtrl::NotificationCallback cameraCallback() const;
    ICameraCapture::Callback captureCallback() const;
    ISerialPort::ReceiveCallback frameCallback(const ISerialPort* port) const;
    /// Emits the frames that come, on the GUI thread.
    const ModuleRelay* relay() const { return m_relay.get(); }

    /// Puts the modules on the road: the cameras, the engine that gets the images, and the designer, which may watch
    /// them. All outlive the road's use.
    void setModules(ICoreCtrl* cameras, IEngine* engine, IDesigner* designer);
    PlcLink& link() { return m_link; }
    TriggerDispatch& dispatch() { return m_dispatch; }
    StandIn& standIn() { return m_standIn; }
    TriggersInHand& inHand() { return m_inHand; }
    ResultHandler& results() { return m_results; }

    /// How many images came since the last call that no trigger waited for, by camera.
    QHash<QString, int> takeUnasked();

private:
    void connectStages();
    /// Makes a call into a module for a trigger: in its station's lane when the module allows that.
    void call(bool inLane, const Trigger& trigger, std::function<void()> call);
    bool capture(const Trigger& trigger);
    void inspect(const Trigger& trigger, const QImage& image);

    const std::shared_ptr<ModuleRelay> m_relay;
    const Scheduler& m_scheduler;
    const TriggersInHand::Deadline m_deadline;
    ICoreCtrl* m_cameras = nullptr;
    ICameraCapture* m_captures = nullptr; ///< the same module's; null when it captures without a number
    IEngine* m_engine = nullptr;
    bool m_camerasInLanes = false;
    bool m_engineInLanes = false;
    PlcLink m_link;
    StandIn m_standIn;
    TriggersInHand m_inHand;
    TriggerDispatch m_dispatch;
    ResultHandler m_results;
    QHash<QString, int> m_unasked;
    StationLanes m_lanes; ///< goes first: it waits for the calls in hand
};
