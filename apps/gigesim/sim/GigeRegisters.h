#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QSize>

/// The memory of the simulated camera: the bootstrap registers of GigE Vision, those of its features, and behind them
/// its description in GenICam's language, camera.xml. Numbers are big-endian. One thread.
class GigeRegisters
{
public:
    enum Address : quint32 {
        DeviceVersion = 0x0000,
        MacHigh = 0x0008,
        MacLow = 0x000C,
        CurrentAddress = 0x0024,
        SubnetMask = 0x0034,
        Vendor = 0x0048,
        Model = 0x0068,
        Firmware = 0x0088,
        Serial = 0x00D8,
        UserName = 0x00E8,
        DescriptionUrl = 0x0200,
        InterfaceCount = 0x0600,
        StreamCount = 0x0904,
        Capability = 0x0934,
        HeartbeatTimeout = 0x0938, ///< ms
        TickFrequencyLow = 0x0940,
        TimestampControl = 0x0944, ///< 2: puts the time into the next two
        TimestampHigh = 0x0948,
        TimestampLow = 0x094C,
        Control = 0x0A00,
        StreamPort = 0x0D00,
        PacketSize = 0x0D04, ///< flags above 16 bits
        PacketDelay = 0x0D08,
        StreamAddress = 0x0D18,
        StreamSource = 0x0D1C, ///< the port that images come from

        Width = 0x2000,
        Height = 0x2004,
        OffsetX = 0x2008,
        OffsetY = 0x200C,
        PixelFormat = 0x2010,
        SensorWidth = 0x2014,
        SensorHeight = 0x2018,
        Acquisition = 0x2020,
        AcquisitionMode = 0x2024,
        TriggerMode = 0x2030,
        TriggerSource = 0x2034, ///< 0 software, else the number of the line and one
        TriggerSoftware = 0x2038,
        TriggerActivation = 0x203C,
        FramePeriod = 0x2040,  ///< us, without a trigger
        ExposureTime = 0x2050, ///< us
        Gain = 0x2054,         ///< tenths of a decibel
        BlackLevel = 0x2058,
        Temperature = 0x205C, ///< tenths of a degree
        UserSetLoad = 0x2060,
        ReverseX = 0x2064,
    };
    static constexpr quint32 firePacket = 0x80000000;
    static constexpr quint32 doNotFragment = 0x40000000;

    GigeRegisters(const QHostAddress& address, const QByteArray& serial, const QByteArray& userName, QSize sensor);

    /// Nothing where the camera has no memory.
    QByteArray read(quint32 address, int size) const;
    /// False where it has none that can be written.
    bool write(quint32 address, const QByteArray& data);
    quint32 number(quint32 address) const;
    void setNumber(quint32 address, quint32 value);

    /// What the camera answers to who looks for cameras.
    QByteArray identity() const { return m_memory.left(0xF8); }

private:
    void setText(quint32 address, const QByteArray& text);

    QByteArray m_memory;
    QByteArray m_description;
};
