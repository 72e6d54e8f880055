#pragma once

#include <valvecell/SComFrame.h>

#include <QString>

/// The frames that program and PLC exchange: what each command's words mean, and how numbers are packed into them.
namespace plc {

enum Command : quint8 {
    ModelIndex = 'C', ///< from the PLC: data[0], data[1] = model index of station 1, 2
    Heartbeat = 'C',  ///< to the PLC
    Trigger = 'P',    ///< from the PLC: data[0] = 5 for station 1, 6 for station 2
    Result1 = 'F',    ///< to the PLC: result of station 1
    Result2 = 'G',    ///< to the PLC: result of station 2
    NotFound = 'H',   ///< to the PLC: data[0] = station + 5, data[1] = 50
    Shutdown = 0xF1,  ///< from the PLC
};

// Angles that tell why there is none.
constexpr double nothingFoundAngle = 361.0;
constexpr double noAngleAngle = 365.0;
constexpr double refusedAngle = 999.0;
/// From here on the PLC is told that nothing was found.
constexpr double noticeAngle = 360.0;

/// A number as two words: the whole part and the thousandths, both truncated toward zero, both with its sign.
struct SplitNumber
{
    qint16 whole = 0;
    qint16 thousandths = 0;
};

/// Whether a number's whole part fits a word; NaN and infinity do not.
bool fitsWord(double value);

/// Splits a number that fitsWord().
SplitNumber split(double value);

/// A number as split() sends it, for whoever shows what was sent: three decimals, cut and never rounded.
QString cutText(double value);

/// The angle as it is sent: a negative one plus 360, once.
double normalised(double angle);

/// 1 or 2 for a trigger frame of that station, -1 for any other content.
int triggeredStation(const SComFrame& frame);

SComFrame heartbeat();

/// The result frame of a station: "F" for station 1, "G" for any other. `angle` in degrees, as normalised() returns it.
SComFrame result(int station, double angle, double x, double y);

/// The notice that follows a result whose angle is 360 or more.
SComFrame notFound(int station);

} // namespace plc
