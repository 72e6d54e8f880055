#pragma once

#include "platform/PseudoTerminal.h"
#include "wire/FrameCodec.h"

#include <QFile>
#include <QVector>

#include <memory>

/// The PLC's end of the line, for a test to drive: a pseudo-terminal behind a link that stays, as a plant's port name
/// does, when the cable is pulled.
class PlcEnd
{
public:
    explicit PlcEnd(QString linkPath)
        : link(std::move(linkPath))
    {
    }

    bool plug()
    {
        m_line = std::make_unique<platform::PseudoTerminal>();
        QObject::connect(m_line.get(), &QIODevice::readyRead, [this] {
            m_decoder.feed(m_line->readAll(), [this](const SComFrame& frame) { take(frame); });
        });
        QFile::remove(link);
        return m_line->open(QIODevice::ReadWrite) && QFile::link(m_line->farEnd(), link);
    }
    /// The name goes with the device: another program may get the number of a pseudo-terminal that is gone.
    void pull()
    {
        if (QFile::symLinkTarget(link) == device())
            QFile::remove(link);
        m_line.reset();
    }
    QString device() const { return m_line->farEnd(); }

    void sendBytes(const QByteArray& bytes) { m_line->write(bytes); }
    void send(int command, std::initializer_list<int> words) { sendBytes(encoded(command, words)); }
    QByteArray encoded(int command, std::initializer_list<int> words)
    {
        SComFrame frame;
        frame.command = static_cast<quint8>(command);
        std::copy(words.begin(), words.end(), frame.data);
        return m_encoder.next(frame);
    }

    /// The commands of what was received, as letters.
    QByteArray replies() const
    {
        QByteArray letters;
        for (const SComFrame& frame : received)
            letters += static_cast<char>(frame.command);
        return letters;
    }
    SComFrame reply(int index) const { return received.value(index); }

    const QString link;
    QVector<SComFrame> received; ///< all but the heartbeats
    int heartbeats = 0;

private:
    void take(const SComFrame& frame)
    {
        if (frame.command == 'C' && frame.data[6] == 200 && frame.data[7] == 80)
            ++heartbeats;
        else
            received.append(frame);
    }

    std::unique_ptr<platform::PseudoTerminal> m_line;
    wire::FrameEncoder m_encoder;
    wire::FrameDecoder m_decoder;
};
