#include "workflow/RoadTimer.h"

#include "platform/System.h"

#include <QLoggingCategory>

namespace {
Q_LOGGING_CATEGORY(road, "valvecell.road", QtWarningMsg)

constexpr int kMostPartsInHand = 16; ///< a part whose image never comes must not shift the others for ever
} // namespace

RoadTimer::RoadTimer(QObject* parent)
    : QObject(parent)
{
    m_clock.start();
}

QQueue<RoadTimer::Part>* RoadTimer::parts(int station)
{
    const bool timed = road().isDebugEnabled() && (station == 1 || station == 2);
    return timed ? &m_parts[station - 1] : nullptr;
}

void RoadTimer::onCaptureStarted(int station)
{
    if (auto* queue = parts(station)) {
        if (queue->size() >= kMostPartsInHand)
            queue->clear();
        queue->enqueue({m_clock.nsecsElapsed(), 0});
    }
}

void RoadTimer::onImageArrived(int station)
{
    if (auto* queue = parts(station)) {
        for (Part& part : *queue) {
            if (part.captured == 0) {
                part.captured = m_clock.nsecsElapsed();
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
            (part.captured - part.triggered) / 1e6, (m_clock.nsecsElapsed() - part.triggered) / 1e6,
            platform::residentMemoryKiB());
}
