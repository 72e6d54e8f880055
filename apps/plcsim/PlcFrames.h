#pragma once

#include <valvecell/SComFrame.h>

/// The frames that a PLC sends, and what it reads from the answers.
namespace PlcFrames {

constexpr quint8 modelIndex = 'C';
constexpr quint8 trigger = 'P';
constexpr quint8 shutdown = 0xF1;
constexpr quint8 heartbeat = 'C'; ///< from the program
constexpr quint8 notice = 'H';    ///< follows an answer without an angle

constexpr double firstNoAngle = 360.0; ///< this and above: no angle of a wheel
constexpr double refusedAngle = 999.0;

/// A frame whose other words are 0.
inline SComFrame make(quint8 command, int word0 = 0, int word1 = 0)
{
    SComFrame frame;
    frame.command = command;
    frame.data[0] = static_cast<qint16>(word0);
    frame.data[1] = static_cast<qint16>(word1);
    return frame;
}

inline SComFrame models(int index1, int index2)
{
    return make(modelIndex, index1, index2);
}
inline SComFrame triggerOf(int station)
{
    return make(trigger, station + 4);
}

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

/// Whole parts and thousandths carry the same sign, so that their sum is the number.
inline Answer answerFrom(const SComFrame& frame)
{
    const auto value = [&](int word) { return frame.data[word] + frame.data[word + 1] / 1000.0; };
    return {value(2), value(4), value(6)};
}

} // namespace PlcFrames
