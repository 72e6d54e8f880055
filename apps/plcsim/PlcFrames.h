#pragma once

#include <valvecell/SComFrame.h>

#include <QString>

/// The frames that a PLC sends, what it reads from the answers, and both as a person reads and types them.
namespace PlcFrames {

constexpr quint8 modelIndex = 'C';
constexpr quint8 trigger = 'P';
constexpr quint8 shutdown = 0xF1;
constexpr quint8 heartbeat = 'C'; ///< from the program
constexpr quint8 notice = 'H';    ///< follows an answer without an angle

constexpr double firstNoAngle = 360.0; ///< this and above: no angle of a wheel
constexpr double refusedAngle = 999.0;

/// A frame whose other words are 0.
SComFrame make(quint8 command, int word0 = 0, int word1 = 0);

/// The model indices of both stations.
SComFrame models(int index1, int index2);
SComFrame triggerOf(int station);

/// The command that answers a trigger of `station`.
constexpr quint8 answerOf(int station)
{
    return station == 1 ? 'F' : 'G';
}

/// A station's answer: degrees and millimetres.
struct Answer
{
    double angle = 0;
    double x = 0;
    double y = 0;
};

Answer answerFrom(const SComFrame& frame);

/// "P" for a printable command byte, "0xF1" for another.
QString commandText(quint8 command);

/// The other way round; false for what names no command.
bool commandFrom(const QString& text, quint8* command);

/// Command and the eight words: "P 5 0 0 0 0 0 0 0".
QString text(const SComFrame& frame);

} // namespace PlcFrames
