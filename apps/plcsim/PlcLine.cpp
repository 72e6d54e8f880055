#include "PlcLine.h"

#include "PlcPort.h"
#include "platform/PseudoTerminal.h"

#include <QFileInfo>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>

#include <chrono>

namespace {

constexpr int retryMs = 500;

} // namespace

PortLink::PortLink(QString path)
    : m_path(std::move(path))
{
}

PortLink::~PortLink()
{
    remove();
}

/// A link cannot be turned, only replaced.
bool PortLink::point(const QString& device, QString* error)
{
    if (!mayReplace()) {
        *error = QStringLiteral("%1: there is something else than a link to a device").arg(m_path);
        return false;
    }
    if (QFileInfo(m_path).isSymLink())
        QFile::remove(m_path);
    if (!QFile::link(device, m_path)) {
        *error = QStringLiteral("%1: the link cannot be made").arg(m_path);
        return false;
    }
    m_device = device;
    return true;
}

void PortLink::remove()
{
    if (isOurs())
        QFile::remove(m_path);
    m_device.clear();
}

bool PortLink::isOurs() const
{
    return !m_device.isEmpty() && QFileInfo(m_path).symLinkTarget() == m_device;
}

bool PortLink::mayReplace() const
{
    const QFileInfo info(m_path);
    if (!info.isSymLink())
        return !info.exists();
    const QString target = info.symLinkTarget();
    return target.startsWith(QLatin1String("/dev/")) || !QFileInfo::exists(target);
}

PlcLine::PlcLine()
{
    m_back.setSingleShot(true);
    connect(&m_back, &QTimer::timeout, this, &PlcLine::putBack);
}

PlcLine::~PlcLine() = default;

bool PlcLine::openLink(const QString& link, QString* error)
{
    m_link = std::make_unique<PortLink>(link);
    m_make = [this](QString* problem) {
        auto terminal = std::make_unique<platform::PseudoTerminal>();
        if (!terminal->open(QIODevice::ReadWrite)) {
            *problem = terminal->errorString();
            return false;
        }
        const QString device = terminal->farEnd();
        adopt(std::move(terminal));
        return m_link->point(device, problem);
    };
    return plugIn(error);
}

bool PlcLine::openPort(const QString& name, qint32 baudRate, QString* error)
{
    m_make = [this, name, baudRate](QString* problem) {
        auto port = PlcPort::open(
            name, baudRate, this, [this] { pull(retryMs); }, problem);
        if (!port)
            return false;
        adopt(std::move(port));
        return true;
    };
    return plugIn(error);
}

bool PlcLine::listen(const QString& place, QString* error)
{
    QString host = place.section(QLatin1Char(':'), 0, -2);
    if (host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')))
        host = host.mid(1, host.size() - 2);
    bool good = false;
    const quint16 port = place.section(QLatin1Char(':'), -1).toUShort(&good);
    if (!good || QHostAddress(host).isNull()) {
        *error = QStringLiteral("%1 is no place to listen at: 127.0.0.1:0 would be").arg(place);
        return false;
    }
    m_server = std::make_unique<QTcpServer>();
    connect(m_server.get(), &QTcpServer::newConnection, this, &PlcLine::onConnection);
    m_make = [this, host, port](QString* problem) {
        const quint16 again = m_serverName.section(QLatin1Char(':'), -1).toUShort();
        const bool listens = m_server->listen(QHostAddress(host), port ? port : again);
        *problem = listens ? QString() : QStringLiteral("%1: %2").arg(host, m_server->errorString());
        const QString shown = host.contains(QLatin1Char(':')) ? QStringLiteral("[%1]").arg(host) : host;
        if (listens)
            m_serverName = QStringLiteral("tcp:%1:%2").arg(shown).arg(m_server->serverPort());
        return listens;
    };
    return plugIn(error);
}

QString PlcLine::name() const
{
    return m_link ? m_link->path() : m_serverName;
}

void PlcLine::onConnection()
{
    std::unique_ptr<QTcpSocket> socket(m_server->nextPendingConnection());
    socket->setParent(nullptr);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    adopt(std::move(socket));
}

bool PlcLine::plugIn(QString* error)
{
    if (!m_make(error)) {
        m_device.reset();
        return false;
    }
    emit pluggedIn();
    return true;
}

void PlcLine::adopt(Device device)
{
    m_decoder.reset();
    m_device = std::move(device);
    connect(m_device.get(), &QIODevice::readyRead, this, &PlcLine::onReadyRead);
}

void PlcLine::pull(int ms)
{
    const bool wasIn = m_device || (m_server && m_server->isListening());
    if (m_link)
        m_link->remove();
    if (m_server)
        m_server->close();
    if (m_device) {
        m_device->disconnect(this);
        if (auto* socket = qobject_cast<QTcpSocket*>(m_device.get()))
            socket->abort(); // what did not go out is lost, as on a wire
        m_device->close();
        m_device.release()->deleteLater(); // the cable may be pulled by a signal of the device itself
    }
    if (wasIn)
        emit pulled();
    m_back.start(ms);
}

void PlcLine::putBack()
{
    QString error;
    if (!plugIn(&error))
        m_back.start(retryMs);
}

void PlcLine::onReadyRead()
{
    const QByteArray bytes = m_device->readAll();
    const qint64 at = nowNs();
    m_decoder.feed(bytes, [this, at](const SComFrame& frame) { emit frameReceived(frame, at); });
}

/// The time is taken before the bytes go: the answer may be there before the write returns.
qint64 PlcLine::send(const SComFrame& frame)
{
    const QByteArray bytes = m_encoder.next(frame);
    const qint64 at = nowNs();
    write(bytes);
    emit frameSent(frame);
    return at;
}

void PlcLine::sendBytes(const QByteArray& bytes)
{
    write(bytes);
    emit bytesSent(bytes);
}

void PlcLine::write(const QByteArray& bytes)
{
    if (!m_device)
        return;
    m_device->write(bytes);
    PlcPort::flush(m_device.get());
    if (auto* socket = qobject_cast<QTcpSocket*>(m_device.get()))
        socket->flush();
}

qint64 PlcLine::nowNs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}
