#include "TcpLine.h"

#include "os/SocketOptions.h"

#include <QHostInfo>
#include <QNetworkProxy>

namespace {

QString withPort(const QString& host, quint16 port)
{
    return QStringLiteral("%1:%2").arg(host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]").arg(host) : host,
                                       QString::number(port));
}

LineFault::Kind kindOf(QAbstractSocket::SocketError error)
{
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
    case QAbstractSocket::RemoteHostClosedError:
        return LineFault::Refused;
    case QAbstractSocket::SocketTimeoutError:
        return LineFault::NoAnswer;
    default:
        return LineFault::Unreachable;
    }
}

} // namespace

TcpLine::TcpLine(PortName name)
    : m_name(std::move(name))
{
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] { tryNext(LineFault::NoAnswer); });
    connect(&m_socket, &QTcpSocket::connected, this, &TcpLine::onConnected);
    connect(&m_socket, &QTcpSocket::readyRead, this, &TcpLine::readyRead);
    // Not from inside the socket's own notification, which goes on to use the socket.
    connect(&m_socket, &QTcpSocket::errorOccurred, this, &TcpLine::onError, Qt::QueuedConnection);
}

QString TcpLine::place() const
{
    return withPort(m_address.isNull() ? m_name.host : m_address.toString(), m_name.port);
}

/// An address is not looked up: that would ask for the name that belongs to it.
void TcpLine::begin()
{
    const QHostAddress literal(m_name.host);
    if (literal.isNull()) {
        m_lookup = QHostInfo::lookupHost(m_name.host, this, &TcpLine::onFound);
        return;
    }
    m_addresses = {literal};
    tryNext(LineFault::None);
}

void TcpLine::onFound(const QHostInfo& host)
{
    m_lookup = -1;
    if (!isActive())
        return;
    m_addresses = host.addresses();
    tryNext(LineFault::UnknownHost);
}

void TcpLine::tryNext(LineFault::Kind kind)
{
    m_patience.stop();
    m_socket.abort();
    if (m_addresses.isEmpty())
        return fail({kind, kind == LineFault::UnknownHost ? m_name.host : withPort(m_name.host, m_name.port), {}});
    m_address = m_addresses.takeFirst();
    m_socket.connectToHost(m_address, m_name.port);
    m_patience.start();
}

/// Where nothing listens on this machine, a connection may find itself.
void TcpLine::onConnected()
{
    if (m_socket.localPort() == m_socket.peerPort() && m_socket.localAddress() == m_socket.peerAddress()) {
        const auto refuse = [this] { onError(QAbstractSocket::ConnectionRefusedError); };
        QMetaObject::invokeMethod(this, refuse, Qt::QueuedConnection); // as every error
        return;
    }
    m_patience.stop();
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    os::noticeLoss(m_socket.socketDescriptor());
    m_open = true;
    emit opened();
}

void TcpLine::onError(QAbstractSocket::SocketError error)
{
    if (m_open)
        fail({LineFault::Lost, place(), {}});
    else if (isActive())
        tryNext(kindOf(error));
}

qint64 TcpLine::waiting() const
{
    return m_socket.bytesToWrite() + os::unacknowledged(m_socket.socketDescriptor());
}

bool TcpLine::write(const QByteArray& bytes)
{
    const bool taken = m_socket.write(bytes) == bytes.size();
    m_socket.flush();
    return taken;
}

void TcpLine::end()
{
    m_open = false;
    m_patience.stop();
    if (m_lookup >= 0)
        QHostInfo::abortHostLookup(std::exchange(m_lookup, -1));
    m_addresses.clear();
    m_socket.abort(); // what was not sent is not sent
}
