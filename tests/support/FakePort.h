#pragma once

#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialSession.h>
#include <valvecell/ISerialUrgent.h>

#include <QStringList>
#include <QVector>

/// A serial port whose sent frames a test reads, and that receives what the test says.
struct FakePort : ISerialPort, ISerialSession, ISerialUrgent
{
    QVector<SComFrame> sent;

    bool opens = true;
    QStringList opened; ///< name and baud rate of each attempt
    ReceiveCallback callback;
    quint64 line = 1; ///< the present session

    void setReceiveCallback(QObject*, ReceiveCallback receive) override { callback = std::move(receive); }
    bool open(const QString& name, const QString& baudRate) override
    {
        opened << name + QLatin1Char(' ') + baudRate;
        return opens;
    }
    void close() override { callback = nullptr; }
    void send(const SComFrame* frame) override { sent.append(*frame); }
    void send(const SComFrame& frame, quint64 of) override
    {
        if (of == line)
            sent.append(frame);
    }
    void sendUrgent(const SComFrame& frame, quint64 of) override { send(frame, of); }
    quint64 session() const override { return line; }
    void* extension(const char* id) override
    {
        if (qstrcmp(id, ISerialUrgent::id) == 0)
            return static_cast<ISerialUrgent*>(this);
        return qstrcmp(id, ISerialSession::id) == 0 ? static_cast<ISerialSession*>(this) : nullptr;
    }

    void receive(int command, int word0, int word1 = 0) const
    {
        SComFrame frame;
        frame.command = static_cast<quint8>(command);
        frame.data[0] = static_cast<qint16>(word0);
        frame.data[1] = static_cast<qint16>(word1);
        callback(frame);
    }

    /// The commands sent so far, as letters.
    QByteArray commands() const
    {
        QByteArray letters;
        for (const SComFrame& frame : sent)
            letters += static_cast<char>(frame.command);
        return letters;
    }

    /// The words of one sent frame, as text.
    QString words(int index) const
    {
        QStringList texts;
        for (const qint16 word : sent.value(index).data)
            texts << QString::number(word);
        return texts.join(QLatin1Char(' '));
    }
};
