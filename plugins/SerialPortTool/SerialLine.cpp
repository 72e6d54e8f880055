#include "SerialLine.h"

#include <QFileInfo>

namespace {

/// The device behind a name, links followed; empty when it is a path to nothing. A name that is no path stays as it is
/// unless it is one of /dev.
QString deviceOf(const QString& name)
{
    if (name.contains(QLatin1Char('/')))
        return QFileInfo(name).canonicalFilePath();
    const QString inDev = QFileInfo(QStringLiteral("/dev/") + name).canonicalFilePath();
    return inDev.isEmpty() ? name : inDev;
}

} // namespace

SerialLine::SerialLine(QString name, qint32 baudRate)
    : m_name(std::move(name))
    , m_baudRate(baudRate)
{
    connect(&m_port, &QSerialPort::readyRead, this, &SerialLine::readyRead);
    connect(&m_port, &QSerialPort::errorOccurred, this, &SerialLine::onError);
}

/// Between the look-up and the opening, a device's name may have gone to another converter.
void SerialLine::begin()
{
    m_device = deviceOf(m_name);
    if (m_device.isEmpty())
        return fail({LineFault::NoDevice, m_name, {}});
    m_port.setPortName(m_device);
    if (!openAsSet())
        return fail(whyNot());
    if (deviceOf(m_name) != m_device)
        return fail({LineFault::Lost, m_device, {}});
    m_port.clear(QSerialPort::Input); // a trigger from before belongs to a part that is gone
    m_open = true;
    emit opened();
}

bool SerialLine::openAsSet()
{
    return m_port.open(QIODevice::ReadWrite) && m_port.setBaudRate(m_baudRate) &&
           m_port.setDataBits(QSerialPort::Data8) && m_port.setParity(QSerialPort::NoParity) &&
           m_port.setStopBits(QSerialPort::OneStop) && m_port.setFlowControl(QSerialPort::NoFlowControl);
}

/// The library gives one code for a device that the user may not open and for one that another program holds.
LineFault SerialLine::whyNot() const
{
    const QFileInfo device(m_device);
    const bool forbidden = device.exists() && !(device.isReadable() && device.isWritable());
    switch (m_port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return {LineFault::NoDevice, m_device, {}};
    case QSerialPort::PermissionError:
        return {forbidden ? LineFault::NoPermission : LineFault::Busy, m_device, {}};
    default:
        return {LineFault::NotOpened, m_device, m_port.errorString()};
    }
}

void SerialLine::onError(QSerialPort::SerialPortError error)
{
    const bool harmless = error == QSerialPort::NoError || error == QSerialPort::TimeoutError;
    if (m_open && !harmless)
        fail({LineFault::Lost, m_device, {}}); // the system's reasons for it vary and mislead
}

bool SerialLine::write(const QByteArray& bytes)
{
    return m_port.write(bytes) == bytes.size() && m_port.flush();
}

void SerialLine::end()
{
    m_open = false;
    if (m_port.isOpen())
        m_port.close();
}

std::unique_ptr<ByteLine> serialLineFor(const QString& name, qint32 baudRate)
{
    return std::make_unique<SerialLine>(name, baudRate);
}
