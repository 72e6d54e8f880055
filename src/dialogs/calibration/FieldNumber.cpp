#include "dialogs/calibration/FieldNumber.h"

#include <cmath>
#include <limits>

namespace FieldNumber {

double value(const QString& text, bool* isNumber)
{
    bool good = false;
    const double number = text.toDouble(&good);
    good = good && std::isfinite(number);
    if (isNumber)
        *isNumber = good;
    return good ? number : 0.0;
}

QString text(double value)
{
    return QString::number(value, 'g', 6);
}

int truncated(double coordinate)
{
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(std::max(coordinate, -most), most));
}

} // namespace FieldNumber
