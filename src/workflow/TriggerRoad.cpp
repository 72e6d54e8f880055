#include "workflow/TriggerRoad.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IImageWatch.h>

/// What comes from the relay is queued, since modules call on threads of their own; all else is a plain call.
TriggerRoad::TriggerRoad(ksGlobalConfig& config, TriggerDispatch::Capture capture)
    : m_relay(std::make_shared<ModuleRelay>())
    , m_dispatch(config, m_link, std::move(capture))
    , m_router(config, [relay = m_relay](const QVariantMap& result) { emit relay->taskFinished(result); })
    , m_results(config, m_link)
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
    QObject::disconnect(m_watch);
    if (auto* watch = extensionOf<IImageWatch>(designer)) {
        const auto show = [watch](const QString& key, const QImage& image) { watch->imageCaptured(key, image); };
        m_watch = QObject::connect(m_relay.get(), &ModuleRelay::imageReceived, &m_router, show, Qt::QueuedConnection);
    }
}
