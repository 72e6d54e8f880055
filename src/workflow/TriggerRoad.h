#pragma once

#include "workflow/PlcLink.h"
#include "workflow/ResultHandler.h"
#include "workflow/TriggerDispatch.h"
#include "workflow/TriggersInHand.h"

#include <valvecell/ICoreCtrl.h>
#include <valvecell/ISerialPort.h>

#include <QVariantMap>

class IDesigner;
class IEngine;

/// Carries what modules deliver on their threads to the GUI thread: each module holds a share of it, so a module may
/// outlive the road. A callback that comes while the cell goes down finds the relay alive and nobody connected, so its
/// value is dropped. Make it on the GUI thread.
class ModuleRelay : public QObject
{
    Q_OBJECT

signals:
    /// In which session of the line, see ISerialSession.
    void frameReceived(const SComFrame& frame, quint64 session);
    void imageReceived(const QString& cameraKey, const QImage& image);
    void noImage(const QString& cameraKey, const QString& reason);
    void taskFinished(quint64 trigger, const QVariantMap& result);
};

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
    ISerialPort::ReceiveCallback frameCallback(const ISerialPort* port) const;
    /// Emits the frames that come, on the GUI thread.
    const ModuleRelay* relay() const { return m_relay.get(); }

    /// Puts the modules on the road: the cameras, the engine that gets the images, and the designer, which may watch
    /// them. All outlive the road's use.
    void setModules(ICoreCtrl* cameras, IEngine* engine, IDesigner* designer);
    PlcLink& link() { return m_link; }
    TriggerDispatch& dispatch() { return m_dispatch; }
    TriggersInHand& inHand() { return m_inHand; }
    ResultHandler& results() { return m_results; }

private:
    void connectStages();
    void capture(const QString& cameraKey);
    void inspect(const Trigger& trigger, const QImage& image);

    const std::shared_ptr<ModuleRelay> m_relay;
    const Scheduler& m_scheduler;
    ICoreCtrl* m_cameras = nullptr;
    IEngine* m_engine = nullptr;
    PlcLink m_link;
    TriggersInHand m_inHand;
    TriggerDispatch m_dispatch;
    ResultHandler m_results;
};
