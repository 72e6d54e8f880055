#include "FrameLog.h"

#include "Console.h"
#include "FrameText.h"
#include "PlcLine.h"

#include <QTime>

FrameLog::FrameLog(PlcLine& line, Detail detail)
    : m_detail(detail)
{
    connect(&line, &PlcLine::frameReceived, this, &FrameLog::onReceived);
    connect(&line, &PlcLine::frameSent, this,
            [this](const SComFrame& frame) { print(QStringLiteral("> ") + FrameText::frame(frame)); });
    connect(&line, &PlcLine::bytesSent, this, [this](const QByteArray& bytes) {
        print(QStringLiteral("> %1 bytes: %2").arg(bytes.size()).arg(QString::fromLatin1(bytes.left(48).toHex(' '))));
    });
    connect(&line, &PlcLine::pulled, this, [this] { print(QStringLiteral("- cable pulled")); });
    connect(&line, &PlcLine::pluggedIn, this, [this] { print(QStringLiteral("- cable back")); });
}

void FrameLog::onReceived(const SComFrame& frame) const
{
    if (m_detail == Everything || frame.command != 'C')
        print(QStringLiteral("< ") + FrameText::frame(frame));
}

void FrameLog::print(const QString& text) const
{
    Console::say(QTime::currentTime().toString(QStringLiteral("hh:mm:ss.zzz ")) + text);
}
