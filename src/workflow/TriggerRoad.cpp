#include "workflow/TriggerRoad.h"

#include "platform/Memory.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IImageWatch.h>

#include <QLoggingCategory>

namespace {
Q_LOGGING_CATEGORY(road, "valvecell.road", QtWarningMsg)

constexpr int maxPartsInHand = 16; ///< a part whose image never comes must not shift the others for ever
} // namespace

QQueue<RoadTimer::Part>* RoadTimer::parts(int station)
{
    const bool timed = road().isDebugEnabled() && (station == 1 || station == 2);
    return timed ? &m_parts[station - 1] : nullptr;
}

void RoadTimer::onCaptureStarted(int station)
{
    if (auto* queue = parts(station)) {
        if (queue->size() >= maxPartsInHand)
            queue->clear();
        queue->enqueue({m_scheduler.elapsedNs(), 0});
    }
}

void RoadTimer::onImageArrived(int station)
{
    if (auto* queue = parts(station)) {
        for (Part& part : *queue) {
            if (part.captured == 0) {
                part.captured = m_scheduler.elapsedNs();
                break;
            }
        }
    }
}

void RoadTimer::onReplied(int station, double engineMs)
{
    auto* queue = parts(station);
    if (!queue || queue->isEmpty())
        return;
    const Part part = queue->dequeue();
    qCDebug(road, "station=%d engine_ms=%.3f capture_ms=%.3f total_ms=%.3f rss_kib=%lld", station, engineMs,
            (part.captured - part.triggered) / 1e6, (m_scheduler.elapsedNs() - part.triggered) / 1e6,
            platform::residentMemoryKiB());
}

/// What comes from the relay is queued, since modules call on threads of their own; all else is a plain call.
TriggerRoad::TriggerRoad(ksGlobalConfig& config, const Scheduler& scheduler, TriggerDispatch::Capture capture)
    : m_relay(std::make_shared<ModuleRelay>())
    , m_dispatch(config, m_link, scheduler, std::move(capture))
    , m_router(config, [relay = m_relay](const QVariantMap& result) { emit relay->taskFinished(result); })
    , m_results(config, m_link, scheduler)
    , m_timer(scheduler)
{
    QObject::connect(&m_link, &PlcLink::modelIndexReceived, &m_dispatch, &TriggerDispatch::onModelIndices);
    QObject::connect(&m_link, &PlcLink::triggerReceived, &m_dispatch, &TriggerDispatch::onTrigger);
    QObject::connect(m_relay.get(), &ModuleRelay::imageReceived, &m_router, &ImageRouter::onImage,
                     Qt::QueuedConnection);
    QObject::connect(m_relay.get(), &ModuleRelay::taskFinished, &m_results, &ResultHandler::onResult,
                     Qt::QueuedConnection);

    QObject::connect(&m_dispatch, &TriggerDispatch::captureStarted, &m_timer, &RoadTimer::onCaptureStarted);
    QObject::connect(&m_router, &ImageRouter::imageArrived, &m_timer, &RoadTimer::onImageArrived);
    QObject::connect(&m_results, &ResultHandler::replied, &m_timer, &RoadTimer::onReplied);
}

ICoreCtrl::ImageCallback TriggerRoad::imageCallback() const
{
    return [relay = m_relay](const QString& key, const QImage& image) { emit relay->imageReceived(key, image); };
}

ISerialPort::ReceiveCallback TriggerRoad::frameCallback() const
{
    return [relay = m_relay](SComFrame frame) { emit relay->frameReceived(frame); };
}

void TriggerRoad::setModules(IEngine* engine, IDesigner* designer)
{
    m_router.setEngine(engine);
    if (auto* watch = extensionOf<IImageWatch>(designer)) {
        const auto show = [watch](const QString& key, const QImage& image) { watch->imageCaptured(key, image); };
        QObject::connect(m_relay.get(), &ModuleRelay::imageReceived, &m_router, show, Qt::QueuedConnection);
    }
}
