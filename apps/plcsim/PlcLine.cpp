#include "PlcLine.h"

#include "platform/PseudoTerminal.h"

#include <QFileInfo>
#include <QSerialPort>

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

bool PlcLine::openLink(const QString& link, QString* error)
{
    m_link = std::make_unique<PortLink>(link);
    m_make = [this](QString* problem) -> Device {
        auto terminal = std::make_unique<platform::PseudoTerminal>();
        if (!terminal->open(QIODevice::ReadWrite)) {
            *problem = terminal->errorString();
            return nullptr;
        }
        return m_link->point(terminal->farEnd(), problem) ? std::move(terminal) : nullptr;
    };
    return plugIn(error);
}

bool PlcLine::openPort(const QString& name, qint32 baudRate, QString* error)
{
    m_make = [this, name, baudRate](QString* problem) -> Device {
        auto port = std::make_unique<QSerialPort>(name);
        if (!port->open(QIODevice::ReadWrite) || !port->setBaudRate(baudRate)) {
            *problem = QStringLiteral("%1: %2").arg(name, port->errorString());
            return nullptr;
        }
        connect(
            port.get(), &QSerialPort::errorOccurred, this, [this] { pull(retryMs); }, Qt::QueuedConnection);
        return port;
    };
    return plugIn(error);
}

bool PlcLine::plugIn(QString* error)
{
    m_decoder.reset();
    m_device = m_make(error);
    if (!m_device)
        return false;
    connect(m_device.get(), &QIODevice::readyRead, this, &PlcLine::onReadyRead);
    emit pluggedIn();
    return true;
}

void PlcLine::pull(int ms)
{
    if (m_link)
        m_link->remove();
    if (m_device) {
        m_device->disconnect(this);
        m_device->close();
        m_device.release()->deleteLater(); // the cable may be pulled by a signal of the device itself
        emit pulled();
    }
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
    if (auto* port = qobject_cast<QSerialPort*>(m_device.get()))
        port->flush();
}

qint64 PlcLine::nowNs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}
