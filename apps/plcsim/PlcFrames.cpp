#include "PlcFrames.h"

namespace PlcFrames {

SComFrame make(quint8 command, int word0, int word1)
{
    SComFrame frame;
    frame.command = command;
    frame.data[0] = static_cast<qint16>(word0);
    frame.data[1] = static_cast<qint16>(word1);
    return frame;
}

SComFrame models(int index1, int index2)
{
    return make(modelIndex, index1, index2);
}

SComFrame triggerOf(int station)
{
    return make(trigger, station + 4);
}

/// Whole parts and thousandths carry the same sign, so that their sum is the number.
Answer answerFrom(const SComFrame& frame)
{
    const auto value = [&](int word) { return frame.data[word] + frame.data[word + 1] / 1000.0; };
    return {value(2), value(4), value(6)};
}

QString commandText(quint8 command)
{
    if (command > 0x20 && command < 0x7F)
        return QString(QLatin1Char(static_cast<char>(command)));
    return QStringLiteral("0x") + QString::number(command, 16).toUpper().rightJustified(2, QLatin1Char('0'));
}

bool commandFrom(const QString& text, quint8* command)
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

QString text(const SComFrame& frame)
{
    QString text = commandText(frame.command);
    for (const qint16 word : frame.data)
        text += QLatin1Char(' ') + QString::number(word);
    return text;
}

} // namespace PlcFrames
