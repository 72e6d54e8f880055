#pragma once

#include "platform/PseudoTerminal.h"
#include "wire/FrameCodec.h"

#include <QFile>
#include <QVector>

#include <memory>

/// The PLC's end of the line, for a test to drive: a pseudo-terminal behind a link that comes and goes with the cable,
/// as a plant's port name does.
class PlcEnd
{
public:
    explicit PlcEnd(QString linkPath)
        : link(std::move(linkPath))
    {
    }
    virtual ~PlcEnd() { unplug(); }
    Q_DISABLE_COPY(PlcEnd)

    virtual bool plug()
    {
        unplug();
        auto line = std::make_unique<platform::PseudoTerminal>();
        QFile::remove(link);
        if (!line->open(QIODevice::ReadWrite) || !QFile::link(line->farEnd(), link))
            return false;
        m_device = line->farEnd();
        carry(std::move(line));
        return true;
    }
    virtual void pull() { unplug(); }
    /// As the program's setting names it.
    virtual QString name() const { return link; }
    virtual QString device() const { return m_device; }

    void sendBytes(const QByteArray& bytes) { m_line->write(bytes); }
    void send(int command, std::initializer_list<int> words) { sendBytes(encoded(command, words)); }
    QByteArray encoded(int command, std::initializer_list<int> words)
    {
        SComFrame frame;
        frame.command = static_cast<quint8>(command);
        std::copy(words.begin(), words.end(), frame.data);
        return m_encoder.next(frame);
    }
    bool isUp() const { return m_line != nullptr; }

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

protected:
    void carry(std::unique_ptr<QIODevice> line)
    {
        m_line = std::move(line);
        QObject::connect(m_line.get(), &QIODevice::readyRead, [this] {
            m_decoder.feed(m_line->readAll(), [this](const SComFrame& frame) { take(frame); });
        });
    }
    /// The name goes first, as the system takes it away: the device's number is soon another process's.
    void unplug()
    {
        if (m_line && !link.isEmpty() && QFile::symLinkTarget(link) == m_device)
            QFile::remove(link);
        m_line.reset();
    }

private:
    void take(const SComFrame& frame)
    {
        if (frame.command == 'C' && frame.data[6] == 200 && frame.data[7] == 80)
            ++heartbeats;
        else
            received.append(frame);
    }

    std::unique_ptr<QIODevice> m_line;
    QString m_device;
    wire::FrameEncoder m_encoder;
    wire::FrameDecoder m_decoder;
};
