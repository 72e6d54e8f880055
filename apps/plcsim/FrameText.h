#pragma once

#include <valvecell/SComFrame.h>

#include <QString>

/// Frames as a person reads and types them.
namespace FrameText {

/// "P" for a printable command byte, "0xF1" for another.
QString command(quint8 command);

/// The other way round; false for what names no command.
bool commandFrom(const QString& text, quint8* command);

/// Command and the eight words: "P 5 0 0 0 0 0 0 0".
QString frame(const SComFrame& frame);

} // namespace FrameText
