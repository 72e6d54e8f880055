#pragma once

#include "support/PlcEnd.h"

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>

/// The PLC behind a serial device server, at an address of its own: while it is pulled, nobody else gets its port.
class ServerPlcEnd : public PlcEnd
{
public:
    explicit ServerPlcEnd(const QHostAddress& address = ownAddress())
        : PlcEnd({})
        , m_address(address)
    {
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
            std::unique_ptr<QTcpSocket> line(m_server.nextPendingConnection());
            line->setParent(nullptr);
            line->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            carry(std::move(line));
        });
    }
    ~ServerPlcEnd() override { m_server.close(); }

    bool plug() override
    {
        pull();
        const bool listens = m_server.listen(m_address, m_port);
        m_port = m_server.serverPort();
        return listens;
    }
    void pull() override
    {
        m_port = m_server.isListening() ? m_server.serverPort() : m_port;
        m_server.close();
        unplug();
    }
    QString name() const override { return QStringLiteral("tcp:") + device(); }
    QString device() const override
    {
        const QString host = m_address.toString();
        return (host.contains(':') ? '[' + host + ']' : host) + ':' + QString::number(m_port);
    }

private:
    static QHostAddress ownAddress()
    {
        const auto id = static_cast<quint32>(QCoreApplication::applicationPid());
        return QHostAddress(0x7F010000 + id % 0xFFFF + 1);
    }

    const QHostAddress m_address;
    quint16 m_port = 0;
    QTcpServer m_server;
};
