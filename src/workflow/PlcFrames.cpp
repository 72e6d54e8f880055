#include "workflow/PlcFrames.h"

#include <cmath>
#include <limits>

namespace plc {

bool fitsWord(double value)
{
    constexpr double limit = std::numeric_limits<qint16>::max() + 1.0;
    return std::abs(value) < limit;
}

SplitNumber split(double value)
{
    const double whole = std::trunc(value);
    return {static_cast<qint16>(whole), static_cast<qint16>((value - whole) * 1000.0)};
}

QString cutText(double value)
{
    const double whole = std::trunc(value);
    return QString::number(whole + std::trunc((value - whole) * 1000.0) / 1000.0, 'f', 3);
}

double normalised(double angle)
{
    return angle < 0 ? angle + 360.0 : angle;
}

int triggeredStation(const SComFrame& frame)
{
    return frame.data[0] == 5 ? 1 : frame.data[0] == 6 ? 2 : -1;
}

SComFrame heartbeat()
{
    SComFrame frame;
    frame.command = Heartbeat;
    frame.data[6] = 200;
    frame.data[7] = 80;
    return frame;
}

/// Words 2 to 7 hold angle, X and Y, two words each.
SComFrame result(int station, double angle, double x, double y)
{
    SComFrame frame;
    frame.command = station == 1 ? Result1 : Result2;
    int word = 2;
    for (const double value : {angle, x, y}) {
        const SplitNumber number = split(value);
        frame.data[word++] = number.whole;
        frame.data[word++] = number.thousandths;
    }
    return frame;
}

SComFrame notFound(int station)
{
    SComFrame frame;
    frame.command = NotFound;
    frame.data[0] = static_cast<qint16>(station + 5);
    frame.data[1] = 50;
    return frame;
}

} // namespace plc
