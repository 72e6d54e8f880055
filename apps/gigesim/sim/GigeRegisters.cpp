#include "GigeRegisters.h"

#include <QFile>
#include <QtEndian>

/// Of a static library, which nothing else would link in; the macro works outside of namespaces alone.
static void initResource()
{
    Q_INIT_RESOURCE(gigesim);
}

namespace {

constexpr quint32 memorySize = 0x10000;
constexpr quint32 mono8 = 0x01080001;

QByteArray description()
{
    initResource();
    QFile file(QStringLiteral(":/gigesim/camera.xml"));
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

} // namespace

GigeRegisters::GigeRegisters(const QHostAddress& address, const QByteArray& serial, const QByteArray& userName,
                             QSize sensor)
    : m_memory(int(memorySize), '\0')
    , m_description(description())
{
    const quint32 ip = address.toIPv4Address();
    const std::pair<quint32, quint32> numbers[] = {{DeviceVersion, 0x00010002},
                                                   {MacHigh, 0x0200},
                                                   {MacLow, ip},
                                                   {CurrentAddress, ip},
                                                   {SubnetMask, 0xFF000000},
                                                   {InterfaceCount, 1},
                                                   {StreamCount, 1},
                                                   {Capability, 0x4}, // sends packets again
                                                   {HeartbeatTimeout, 3000},
                                                   {TickFrequencyLow, 1'000'000'000},
                                                   {PacketSize, 1500},
                                                   {Width, quint32(sensor.width())},
                                                   {Height, quint32(sensor.height())},
                                                   {SensorWidth, quint32(sensor.width())},
                                                   {SensorHeight, quint32(sensor.height())},
                                                   {PixelFormat, mono8},
                                                   {AcquisitionMode, 1},
                                                   {FramePeriod, 50'000},
                                                   {ExposureTime, 5000},
                                                   {Temperature, 425}};
    for (const auto& [at, value] : numbers)
        setNumber(at, value);
    setText(Vendor, "ValveCell");
    setText(Model, "Simulated GigE camera");
    setText(Firmware, "1.0");
    setText(Serial, serial.left(15));
    setText(UserName, userName.left(15));
    setText(DescriptionUrl, QByteArray("Local:camera.xml;") + QByteArray::number(memorySize, 16) + ';' +
                                QByteArray::number(m_description.size(), 16));
}

QByteArray GigeRegisters::read(quint32 address, int size) const
{
    const quint64 end = quint64(address) + quint64(size);
    if (end <= memorySize)
        return m_memory.mid(int(address), size);
    // Readers ask in whole words, also for the end.
    if (address >= memorySize && end <= memorySize + quint64(m_description.size()) + 4)
        return m_description.mid(int(address - memorySize), size).leftJustified(size, '\0');
    return {};
}

bool GigeRegisters::write(quint32 address, const QByteArray& data)
{
    if (quint64(address) + quint64(data.size()) > memorySize)
        return false;
    m_memory.replace(int(address), data.size(), data);
    return true;
}

quint32 GigeRegisters::number(quint32 address) const
{
    return qFromBigEndian<quint32>(m_memory.constData() + address);
}

void GigeRegisters::setNumber(quint32 address, quint32 value)
{
    qToBigEndian(value, m_memory.data() + address);
}

void GigeRegisters::setText(quint32 address, const QByteArray& text)
{
    m_memory.replace(int(address), text.size(), text);
}
