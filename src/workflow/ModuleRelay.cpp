#include "workflow/ModuleRelay.h"

#include "common/Step.h"

#include <algorithm>

void ModuleRelay::deliver(const Outcome& outcome)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto isOfCamera = [&outcome](const Outcome& each) { return each.cameraKey == outcome.cameraKey; };
    if (std::count_if(m_waiting.begin(), m_waiting.end(), isOfCamera) >= maxWaiting) {
        ++m_dropped[outcome.cameraKey];
        return;
    }
    m_waiting.push_back(outcome);
    if (m_waiting.size() == 1)
        QMetaObject::invokeMethod(this, &ModuleRelay::emitWaiting, Qt::QueuedConnection);
}

QHash<QString, int> ModuleRelay::takeDropped()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_dropped, {});
}

void ModuleRelay::emitWaiting()
{
    const Step step("image of a camera");
    std::deque<Outcome> waiting;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        waiting.swap(m_waiting);
    }
    for (const Outcome& outcome : waiting)
        emit captured(outcome);
}
