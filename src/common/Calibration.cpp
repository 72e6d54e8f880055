#include "common/Calibration.h"

#include "common/JsonText.h"

#include <QCryptographicHash>
#include <QDataStream>

#include <algorithm>
#include <cmath>

namespace {

/// Below this sine the axes of a map lie on each other: what single precision leaves of points on a line is smaller,
/// and no camera looks that flat.
constexpr double leastSine = 1e-4;

} // namespace

Calibration Calibration::twoPoint(double scale, const QPointF& offset, bool swapXY)
{
    Calibration calibration;
    calibration.m_scale = scale;
    calibration.m_offset = offset;
    calibration.m_swapXY = swapXY;
    return calibration;
}

Calibration Calibration::fourPoint(const AffineMap& map, const QPointF& offset, bool swapXY)
{
    Calibration calibration = twoPoint(0, offset, swapXY);
    calibration.m_map = map;
    return calibration;
}

Calibration Calibration::ofStation(const QJsonObject& globalConfig, int station)
{
    namespace Keys = CalibrationKeys;
    const auto in = [station](const QJsonObject& object, const char* key) {
        return object.value(QString::fromLatin1(key).replace(QLatin1Char('#'), QString::number(station)));
    };
    if (!in(globalConfig, Keys::useFourPoint).toBool())
        return twoPoint(in(globalConfig, Keys::scale).toDouble(),
                        {in(globalConfig, Keys::xOffset).toDouble(), in(globalConfig, Keys::yOffset).toDouble()},
                        in(globalConfig, Keys::swapXY).toBool());
    const QJsonObject object = in(globalConfig, Keys::fourPoint).toObject();
    AffineMap map;
    for (size_t i = 0; i < map.size(); ++i)
        map[i] = in(object, Keys::map[i]).toDouble();
    return fourPoint(map, {in(object, Keys::mapXOffset).toDouble(), in(object, Keys::mapYOffset).toDouble()},
                     in(object, Keys::mapSwapXY).toBool());
}

Calibration Calibration::spoiledBy(const QJsonObject& values) const
{
    QStringList texts;
    for (auto it = values.begin(); it != values.end(); ++it)
        texts << (it.value().isNull()
                      ? tr("缺少“%1”").arg(it.key())
                      : tr("“%1”的值 %2 不可用").arg(it.key(), QString::fromUtf8(jsonText(it.value()))));
    Calibration spoiled = *this;
    if (!texts.isEmpty())
        spoiled.m_spoiled = QStringLiteral("globalConfig.json: ") + texts.join(tr("，"));
    return spoiled;
}

QString Calibration::problem() const
{
    if (!m_spoiled.isEmpty())
        return m_spoiled;
    if (!std::isfinite(m_offset.x()) || !std::isfinite(m_offset.y()))
        return tr("物理偏移不是数字");
    if (m_map)
        return mapProblem();
    if (!std::isfinite(m_scale))
        return tr("像素比例值不是数字");
    return m_scale > 0 ? QString() : tr("像素比例值 %1 mm/px 应大于 0").arg(m_scale);
}

QString Calibration::mapProblem() const
{
    const AffineMap& m = *m_map;
    if (!std::all_of(m.begin(), m.end(), [](double value) { return std::isfinite(value); }))
        return tr("四点标定的映射不是数字");
    if (mmPerPixelX() == 0 && mmPerPixelY() == 0)
        return tr("尚未进行四点标定");
    const bool flat = !(std::abs(determinant()) > leastSine * mmPerPixelX() * mmPerPixelY());
    return flat ? tr("四点标定的点共线或重合") : QString();
}

QString Calibration::version() const
{
    QByteArray values;
    QDataStream stream(&values, QIODevice::WriteOnly);
    stream << m_scale << m_offset << m_swapXY << m_map.has_value();
    for (const double value : m_map.value_or(AffineMap()))
        stream << value;
    return QString::fromLatin1(QCryptographicHash::hash(values, QCryptographicHash::Sha1).left(4).toHex());
}

QPointF Calibration::toMachine(const QPointF& pixel) const
{
    QPointF mapped = pixel * m_scale;
    if (m_map) {
        const AffineMap& m = *m_map;
        mapped = {pixel.x() * m[0] + pixel.y() * m[1] + m[2], pixel.x() * m[3] + pixel.y() * m[4] + m[5]};
    }
    const QPointF machine = mapped + m_offset;
    return m_swapXY ? machine.transposed() : machine;
}

std::optional<QPointF> Calibration::toPixel(const QPointF& machine) const
{
    const QPointF mapped = (m_swapXY ? machine.transposed() : machine) - m_offset;
    QPointF pixel;
    if (m_map) {
        const AffineMap& m = *m_map;
        const double determinant = this->determinant();
        // Points on a line leave rounding errors in the place of zero.
        if (std::abs(determinant) <= 1e-12 * (std::abs(m[0] * m[4]) + std::abs(m[1] * m[3])))
            return {};
        const QPointF q = mapped - QPointF(m[2], m[5]);
        pixel = QPointF(m[4] * q.x() - m[1] * q.y(), m[0] * q.y() - m[3] * q.x()) / determinant;
    } else if (m_scale == 0) {
        return {};
    } else {
        pixel = mapped / m_scale;
    }
    const bool usable = std::isfinite(mmPerPixel()) && std::isfinite(pixel.x()) && std::isfinite(pixel.y());
    return usable ? std::optional<QPointF>(pixel) : std::nullopt;
}

double Calibration::mmPerPixelX() const
{
    return m_map ? std::hypot((*m_map)[0], (*m_map)[3]) : std::abs(m_scale);
}

double Calibration::mmPerPixelY() const
{
    return m_map ? std::hypot((*m_map)[1], (*m_map)[4]) : std::abs(m_scale);
}

double Calibration::mmPerPixel() const
{
    return m_map ? std::sqrt(std::abs(determinant())) : std::abs(m_scale);
}

double Calibration::determinant() const
{
    const AffineMap& m = *m_map;
    return m[0] * m[4] - m[1] * m[3];
}
