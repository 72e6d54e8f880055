#include "FrameText.h"

QString FrameText::command(quint8 command)
{
    if (command > 0x20 && command < 0x7F)
        return QString(QLatin1Char(static_cast<char>(command)));
    return QStringLiteral("0x") + QString::number(command, 16).toUpper().rightJustified(2, QLatin1Char('0'));
}

bool FrameText::commandFrom(const QString& text, quint8* command)
{
    if (text.size() == 1 && text[0] > QLatin1Char(' ') && text[0] < QLatin1Char(0x7F)) {
        *command = static_cast<quint8>(text[0].toLatin1());
        return true;
    }
    bool number = false;
    const uint value = text.startsWith(QLatin1String("0x")) ? text.toUInt(&number, 16) : 0;
    *command = static_cast<quint8>(value);
    return number && value <= 0xFF;
}

QString FrameText::frame(const SComFrame& frame)
{
    QString text = command(frame.command);
    for (const qint16 word : frame.data)
        text += QLatin1Char(' ') + QString::number(word);
    return text;
}
