#pragma once

#include "ByteLine.h"

#include <QSerialPort>

/// A serial device, 8N1 without flow control, of which this program wants to be the only user.
class SerialLine : public ByteLine
{
    Q_OBJECT

public:
    /// `name`: a device path, a link to one, or a plain port name. It is looked up at each attempt: after the converter
    /// was pulled it may lead to another device.
    SerialLine(QString name, qint32 baudRate);

    QString place() const override { return m_device; }
    QByteArray readAll() override { return m_port.readAll(); }
    qint64 waiting() const override { return m_port.bytesToWrite(); }
    bool write(const QByteArray& bytes) override;

private:
    void begin() override;
    void end() override;
    bool openAsSet();
    LineFault whyNot() const;
    void onError(QSerialPort::SerialPortError error);

    const QString m_name;
    const qint32 m_baudRate;
    QSerialPort m_port{this};
    QString m_device;
    bool m_open = false; ///< before that, begin() deals with what open() says
};
