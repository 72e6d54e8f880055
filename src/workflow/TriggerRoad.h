#pragma once

#include "common/Scheduler.h"
#include "workflow/ImageRouter.h"
#include "workflow/PlcLink.h"
#include "workflow/ResultHandler.h"
#include "workflow/TriggerDispatch.h"

#include <valvecell/ICoreCtrl.h>
#include <valvecell/ISerialPort.h>

#include <QQueue>
#include <QVariantMap>

class IDesigner;

/// Carries what modules deliver on their threads to the GUI thread: each module holds a share of it, so a module may
/// outlive the road. A callback that comes while the cell goes down finds the relay alive and nobody connected, so its
/// value is dropped. Make it on the GUI thread.
class ModuleRelay : public QObject
{
    Q_OBJECT

signals:
    void frameReceived(const SComFrame& frame);
    void imageReceived(const QString& cameraKey, const QImage& image);
    void taskFinished(const QVariantMap& result);
};

/// Times the road from a trigger to its reply, for those who measure: with the logging category "valvecell.road" on,
/// one debug line a reply, "station=1 engine_ms=4.213 capture_ms=15.402 total_ms=21.210 rss_kib=123456". Off by
/// default, and then it costs nothing. GUI thread.
class RoadTimer : public QObject
{
    Q_OBJECT

public:
    /// `scheduler` outlives the timer.
    explicit RoadTimer(const Scheduler& scheduler)
        : m_scheduler(scheduler)
    {
    }

public slots:
    void onCaptureStarted(int station);
    void onImageArrived(int station);
    void onReplied(int station, double engineMs);

private:
    struct Part
    {
        qint64 triggered = 0; ///< nanoseconds
        qint64 captured = 0;
    };

    /// Null when nobody measures, and for a station other than 1 and 2.
    QQueue<Part>* parts(int station);

    const Scheduler& m_scheduler;
    QQueue<Part> m_parts[2]; ///< in hand, oldest first
};

/// The road of a trigger, from the PLC's frame over camera and engine to the reply: makes its stages and connects them.
/// GUI thread.
class TriggerRoad
{
public:
    /// `config` and `scheduler` outlive the road.
    TriggerRoad(ksGlobalConfig& config, const Scheduler& scheduler, TriggerDispatch::Capture capture);

    // What the modules call, on any thread; both may outlive the road.
    ICoreCtrl::ImageCallback imageCallback() const;
    ISerialPort::ReceiveCallback frameCallback() const;
    /// Emits the frames that come, on the GUI thread.
    const ModuleRelay* relay() const { return m_relay.get(); }

    /// Puts the modules on the road: the engine that gets the images, and the designer, which may watch them.
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
};
