#include "forward/Forwarder.h"

#include "forward/ForwardLoop.h"

Forwarder::Forwarder(const QString& home, const ForwardConfig& config)
    : m_loop(std::make_unique<ForwardLoop>(home, config))
{
}

Forwarder::~Forwarder() = default;

void Forwarder::setFigures(const QVector<Sparkplug::Metric>& figures)
{
    m_loop->post([loop = m_loop.get(), figures] { loop->setFigures(figures); });
}

ForwardStatus Forwarder::status() const
{
    return m_loop->status();
}
