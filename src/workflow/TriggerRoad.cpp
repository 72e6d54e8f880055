#include "workflow/TriggerRoad.h"

#include "platform/System.h"

#include <valvecell/Extension.h>
#include <valvecell/IConcurrentCalls.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IEngine.h>
#include <valvecell/IImageWatch.h>
#include <valvecell/ISerialSession.h>
#include <valvecell/ResultKeys.h>

#include <QLoggingCategory>

namespace {

/// For those who measure; off by default.
Q_LOGGING_CATEGORY(road, "valvecell.road", QtWarningMsg)

/// What a camera reports when a trigger stays without an image.
const QStringList& noImageTopics()
{
    static const QStringList topics{QStringLiteral("noImage"), QStringLiteral("triggerDropped"),
                                    QStringLiteral("unknownCamera"), QStringLiteral("cameraUnusable")};
    return topics;
}

} // namespace

/// What comes from the relay is queued, since modules call on threads of their own; all else is a plain call.
TriggerRoad::TriggerRoad(ksGlobalConfig& config, Scheduler& scheduler, TriggersInHand::Deadline deadline)
    : m_relay(std::make_shared<ModuleRelay>())
    , m_scheduler(scheduler)
    , m_deadline(std::move(deadline))
    , m_standIn(scheduler)
    , m_inHand(
          scheduler, m_standIn, m_deadline, [this](const Trigger& trigger) { return capture(trigger); },
          [this](const Trigger& trigger, const QImage& image) { inspect(trigger, image); })
    , m_dispatch(config, m_link, scheduler, [this](const Trigger& trigger) { return m_inHand.accept(trigger); })
    , m_results(config, m_link, scheduler)
    , m_lanes(scheduler)
{
    connectStages();
}

void TriggerRoad::connectStages()
{
    const ModuleRelay* const relay = m_relay.get();
    QObject::connect(relay, &ModuleRelay::captured, &m_inHand, &TriggersInHand::onCaptured);
    QObject::connect(relay, &ModuleRelay::taskFinished, &m_inHand, &TriggersInHand::onResult, Qt::QueuedConnection);

    QObject::connect(&m_inHand, &TriggersInHand::unasked, [this](const QString& key) { ++m_unasked[key]; });

    QObject::connect(&m_link, &PlcLink::modelIndexReceived, &m_dispatch, &TriggerDispatch::onModelIndices);
    QObject::connect(&m_link, &PlcLink::triggerReceived, &m_dispatch, &TriggerDispatch::onTrigger);
    QObject::connect(&m_dispatch, &TriggerDispatch::captureRefused, &m_results, &ResultHandler::onRefused);
    QObject::connect(&m_inHand, &TriggersInHand::finished, &m_results, &ResultHandler::onResult);
    QObject::connect(&m_inHand, &TriggersInHand::failed, &m_results, &ResultHandler::onFailed);
    QObject::connect(&m_results, &ResultHandler::replied, [this](const Trigger& trigger, double engineMs) {
        qCDebug(road, "station=%d engine_ms=%.3f capture_ms=%.3f total_ms=%.3f rss_kib=%lld", trigger.station, engineMs,
                (trigger.imageNs - trigger.acceptedNs) / 1e6, (m_scheduler.elapsedNs() - trigger.acceptedNs) / 1e6,
                platform::residentMemoryKiB());
    });
}

ICoreCtrl::ImageCallback TriggerRoad::imageCallback() const
{
    return [relay = m_relay](const QString& key, const QImage& image) { relay->deliver({key, 0, image, {}}); };
}

ICameraCapture::Callback TriggerRoad::captureCallback() const
{
    return [relay = m_relay](const ICameraCapture::Outcome& outcome) {
        if (outcome.number > 0)
            relay->deliver(outcome);
    };
}

/// The value is the camera's key alone, or a map of "camera" and "message".
ICoreCtrl::NotificationCallback TriggerRoad::cameraCallback() const
{
    return [relay = m_relay](const QString& topic, const QVariant& value) {
        if (!noImageTopics().contains(topic))
            return;
        const QVariantMap map = value.toMap();
        const QString key = map.isEmpty() ? value.toString() : map.value(QStringLiteral("camera")).toString();
        relay->deliver({key, 0, {}, map.value(QStringLiteral("message")).toString()});
    };
}

ISerialPort::ReceiveCallback TriggerRoad::frameCallback(const ISerialPort* port) const
{
    const auto* sessions = extensionOf<ISerialSession>(const_cast<ISerialPort*>(port));
    return [relay = m_relay, sessions, &scheduler = m_scheduler](SComFrame frame) {
        emit relay->frameReceived(frame, sessions ? sessions->session() : 1, scheduler.elapsedNs());
    };
}

void TriggerRoad::setModules(ICoreCtrl* cameras, IEngine* engine, IDesigner* designer)
{
    m_cameras = cameras;
    m_captures = extensionOf<ICameraCapture>(cameras);
    m_engine = engine;
    m_camerasInLanes = extensionOf<IConcurrentCalls>(cameras);
    m_engineInLanes = extensionOf<IConcurrentCalls>(engine);
    if (auto* watch = extensionOf<IImageWatch>(designer)) {
        const auto show = [watch](const ModuleRelay::Outcome& outcome) {
            if (!outcome.image.isNull())
                watch->imageCaptured(outcome.cameraKey, outcome.image);
        };
        QObject::connect(m_relay.get(), &ModuleRelay::captured, &m_inHand, show);
    }
}

QHash<QString, int> TriggerRoad::takeUnasked()
{
    QHash<QString, int> all = std::exchange(m_unasked, {});
    const QHash<QString, int> dropped = m_relay->takeDropped();
    for (auto it = dropped.begin(); it != dropped.end(); ++it)
        all[it.key()] += it.value();
    return all;
}

void TriggerRoad::call(bool inLane, const Trigger& trigger, std::function<void()> call)
{
    if (!inLane)
        return call();
    m_lanes.run(trigger.station, trigger.acceptedNs + m_deadline() * qint64(1000 * 1000), std::move(call));
}

/// Whether the capture has the trigger's number.
bool TriggerRoad::capture(const Trigger& trigger)
{
    call(m_camerasInLanes, trigger,
         [cameras = m_cameras, captures = m_captures, camera = trigger.camera, number = trigger.number] {
             if (captures)
                 captures->capture(camera, number);
             else if (cameras)
                 cameras->trigger({camera});
         });
    return m_captures != nullptr;
}

void TriggerRoad::inspect(const Trigger& trigger, const QImage& image)
{
    const auto finished = [relay = m_relay, number = trigger.number](const QVariantMap& result) {
        emit relay->taskFinished(number, result);
    };
    if (!m_engine)
        return;
    call(m_engineInLanes, trigger,
         [engine = m_engine, image, solution = trigger.solution, model = trigger.model, finished] {
             engine->runTask({{QLatin1String(ResultKeys::originImage), image}}, solution, model, finished);
         });
}
