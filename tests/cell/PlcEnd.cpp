#include "PlcEnd.h"

#include <QFile>

bool PlcEnd::plug()
{
    m_line = std::make_unique<platform::PseudoTerminal>();
    connect(m_line.get(), &QIODevice::readyRead, this, &PlcEnd::read);
    QFile::remove(m_link);
    return m_line->open(QIODevice::ReadWrite) && QFile::link(m_line->farEnd(), m_link);
}

QByteArray PlcEnd::encoded(int command, std::initializer_list<int> words)
{
    SComFrame frame;
    frame.command = static_cast<quint8>(command);
    int i = 0;
    for (const int word : words)
        frame.data[i++] = static_cast<qint16>(word);
    return m_encoder.next(frame);
}

void PlcEnd::send(int command, std::initializer_list<int> words)
{
    sendBytes(encoded(command, words));
}

QByteArray PlcEnd::replies() const
{
    QByteArray letters;
    for (const SComFrame& frame : m_replies)
        letters += static_cast<char>(frame.command);
    return letters;
}

void PlcEnd::read()
{
    m_decoder.feed(m_line->readAll(), [this](const SComFrame& frame) {
        const bool heartbeat = frame.command == 'C' && frame.data[6] == 200 && frame.data[7] == 80;
        if (heartbeat)
            ++m_heartbeats;
        else
            m_replies.append(frame);
    });
}
