#pragma once

#include "platform/PseudoTerminal.h"
#include "wire/FrameCodec.h"

#include <QVector>

#include <memory>

/// The PLC's end of the line, for a test to drive: a pseudo-terminal behind a link that stays, as a plant's port name
/// does, when the cable is pulled.
class PlcEnd : public QObject
{
    Q_OBJECT

public:
    explicit PlcEnd(QString link)
        : m_link(std::move(link))
    {
    }

    bool plug();
    void pull() { m_line.reset(); }

    void send(int command, std::initializer_list<int> words);
    void sendBytes(const QByteArray& bytes) { m_line->write(bytes); }
    QByteArray encoded(int command, std::initializer_list<int> words);

    int heartbeats() const { return m_heartbeats; }
    /// The commands of all other frames, as letters.
    QByteArray replies() const;
    /// One of these frames.
    SComFrame reply(int index) const { return m_replies.value(index); }
    void forget() { m_replies.clear(); }

private:
    void read();

    QString m_link;
    std::unique_ptr<platform::PseudoTerminal> m_line;
    wire::FrameEncoder m_encoder;
    wire::FrameDecoder m_decoder;
    QVector<SComFrame> m_replies;
    int m_heartbeats = 0;
};
