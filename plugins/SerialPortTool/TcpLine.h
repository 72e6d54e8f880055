#pragma once

#include "ByteLine.h"
#include "PortName.h"

#include <QHostAddress>
#include <QList>
#include <QTcpSocket>
#include <QTimer>

#include <chrono>

class QHostInfo;

/// A serial device server: a TCP connection that notices within three seconds that its other end is gone. Names are
/// looked up in the background; of several addresses of a host the first that answers is taken.
class TcpLine : public ByteLine
{
    Q_OBJECT

public:
    /// For one address to answer: two of the system's attempts, and short of the time in which a line is to be back.
    static constexpr std::chrono::milliseconds patience{1500};

    explicit TcpLine(PortName name);

    QString place() const override;
    QByteArray readAll() override { return m_socket.readAll(); }
    qint64 waiting() const override;
    bool write(const QByteArray& bytes) override;

private:
    void begin() override;
    void end() override;
    void onFound(const QHostInfo& host);
    /// The next address; after the last one it fails with what was wrong with that.
    void tryNext(LineFault::Kind kind);
    void onConnected();
    void onError(QAbstractSocket::SocketError error);

    const PortName m_name;
    QTcpSocket m_socket{this};
    QTimer m_patience{this};
    QList<QHostAddress> m_addresses; ///< that are still to be tried
    QHostAddress m_address;          ///< that is or was tried
    int m_lookup = -1;
    bool m_open = false;
};
