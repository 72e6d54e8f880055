#pragma once

#include <valvecell/ISerialPort.h>

#include <QStringList>
#include <QVector>

/// A serial port whose sent frames a test reads.
struct FakePort : ISerialPort
{
    QVector<SComFrame> sent;

    void setReceiveCallback(QObject*, ReceiveCallback) override {}
    bool open(const QString&, const QString&) override { return true; }
    void close() override {}
    void send(const SComFrame* frame) override { sent.append(*frame); }

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
