#include "PixelScale.h"

#include <valvecell/HomeFiles.h>

#include <cmath>

namespace {

double scaleOf(const QJsonObject& config, int station)
{
    const QString number = QString::number(station);
    if (!config.value(QStringLiteral("use4pointstand")).toBool())
        return config.value(QStringLiteral("StationScale_") + number).toDouble();
    const QJsonObject map = config.value(QStringLiteral("station%1_4p").arg(number)).toObject();
    const auto entry = [&map](const char* key) { return map.value(QLatin1String(key)).toDouble(); };
    return std::sqrt(std::abs(entry("m11") * entry("m22") - entry("m21") * entry("m12")));
}

} // namespace

double millimetresPerPixel(const QString& solution)
{
    const QJsonObject config =
        HomeFiles::readJson(HomeFiles::home() + QStringLiteral("/user/globalConfig.json")).object;
    for (const int station : {1, 2}) {
        const double scale = scaleOf(config, station);
        const bool runs = config.value(QStringLiteral("station_solution_%1").arg(station)).toString() == solution;
        if (runs && scale > 0 && std::isfinite(scale))
            return scale;
    }
    return 0;
}
