#include "plant/MqttSession.h"

#include "plant/MqttLine.h"

MqttSession::MqttSession(Handlers handlers)
    : m_line(std::make_shared<Line>(std::move(handlers)))
{
}

MqttSession::~MqttSession()
{
    stop();
}

void MqttSession::start()
{
    m_line->start(m_line);
}

void MqttSession::stop(bool withWill)
{
    m_line->stop(withWill);
}

void MqttSession::retryNow()
{
    m_line->retryNow();
}

void MqttSession::reconnect()
{
    m_line->reconnect();
}

bool MqttSession::isConnected() const
{
    return m_line->isConnected();
}

bool MqttSession::publish(const MqttMessage& message, Done done)
{
    return m_line->publish(message, std::move(done));
}

bool MqttSession::subscribe(const QStringList& filters, bool others)
{
    return m_line->subscribe(filters, others);
}
