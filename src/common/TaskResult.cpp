#include "common/TaskResult.h"

#include "common/Number.h"

#include <valvecell/ResultKeys.h>

#include <QPoint>
#include <QStringList>

#include <cmath>
#include <type_traits>

namespace {

/// The value under a key, or `fallback` when it is missing or of another type. Numbers convert to each other, and
/// nothing else does.
template <typename T>
T valueOf(const QVariantMap& map, const char* key, T fallback)
{
    const QVariant value = map.value(QLatin1String(key));
    const bool isOfType =
        std::is_arithmetic_v<T> && !std::is_same_v<T, bool> ? isNumber(value) : value.userType() == qMetaTypeId<T>();
    return isOfType ? value.value<T>() : fallback;
}

QPointF pointOf(const QVariantMap& map, const char* key, const QPointF& fallback)
{
    const QVariant value = map.value(QLatin1String(key));
    return value.userType() == QMetaType::QPoint ? QPointF(value.toPoint()) : valueOf(map, key, fallback);
}

/// Says so when there is something under the key, but nothing that can be meant by it.
bool isOtherType(const QVariantMap& map, const char* key, bool good)
{
    const QVariant value = map.value(QLatin1String(key));
    const bool wrong = value.isValid() && !good;
    if (wrong)
        qWarning("engine's result: \"%s\" is a %s (%s), and counts as missing", key, value.typeName(),
                 qUtf8Printable(value.toString()));
    return wrong;
}

struct Evidence
{
    const char* key;
    const char* name;
    int decimals;
};

constexpr double fullCircle = 360;

constexpr Evidence evidence[] = {{ResultKeys::score, "score", 3},     {ResultKeys::runnerUpScore, "second", 3},
                                 {ResultKeys::edgePoints, "edge", 0}, {ResultKeys::residual, "residual", 3},
                                 {ResultKeys::hubRadius, "rim", 1},   {ResultKeys::holeRadius, "hole", 2}};

/// Of the mouth's fit; an engine may leave these out. No pixels: the centre is the outline's.
constexpr Evidence mouthEvidence[] = {{ResultKeys::mouthPixels, "mouth", 0},
                                      {ResultKeys::mouthResidual, "gray", 1},
                                      {ResultKeys::mouthSpread, "spread", 2},
                                      {ResultKeys::outerRadius, "outer", 2}};

QString textOf(const Evidence& part, const QVariantMap& map)
{
    return QStringLiteral("%1=%2")
        .arg(QLatin1String(part.name))
        .arg(valueOf(map, part.key, 0.0), 0, 'f', part.decimals);
}

/// An engine that reports no edge points reports none of the others.
QString evidenceOf(const QVariantMap& map)
{
    if (!map.contains(QLatin1String(ResultKeys::edgePoints)))
        return {};
    QStringList parts;
    for (const Evidence& part : evidence)
        parts.append(textOf(part, map));
    for (const Evidence& part : mouthEvidence) {
        if (map.contains(QLatin1String(part.key)))
            parts.append(textOf(part, map));
    }
    return parts.join(QLatin1Char(';'));
}

/// An angle that is no number, or one without a place that can be read, must not reach a frame: it counts as none.
void readAlgoResult(TaskResult& result, const QVariantMap& map)
{
    const QVariant centre = map.value(QLatin1String(ResultKeys::centerPoint));
    const bool isPoint = centre.userType() == QMetaType::QPointF || centre.userType() == QMetaType::QPoint;
    isOtherType(map, ResultKeys::angle, isNumber(map.value(QLatin1String(ResultKeys::angle))));
    result.angle = valueOf(map, ResultKeys::angle, result.angle);
    if (!std::isfinite(result.angle) || isOtherType(map, ResultKeys::centerPoint, isPoint))
        result.angle = 365.0;
    // An engine that gives an angle and no error code has found its hole.
    result.found = result.angle <= fullCircle && valueOf(map, ResultKeys::error, 0) == 0;
    result.error = valueOf(map, ResultKeys::error, result.error);
    result.score = valueOf(map, ResultKeys::score, result.score);
    result.image = valueOf(map, ResultKeys::image, result.image);
    result.tip = valueOf(map, ResultKeys::resultTip, result.tip);
    result.center = pointOf(map, ResultKeys::centerPoint, result.center);
    result.hole = pointOf(map, ResultKeys::holeCenter, result.center);
    result.runnerUpScore = valueOf(map, ResultKeys::runnerUpScore, 0.0);
    result.hubCenter = pointOf(map, ResultKeys::hubCenter, {});
    result.hubRadius = valueOf(map, ResultKeys::hubRadius, 0.0);
    result.holeRadius = valueOf(map, ResultKeys::holeRadius, 0.0);
    result.edgePoints = valueOf(map, ResultKeys::edgePoints, 0);
    result.residual = valueOf(map, ResultKeys::residual, 0.0);
    result.evidence = evidenceOf(map);
}

} // namespace

TaskResult TaskResult::fromMap(const QVariantMap& map)
{
    TaskResult result;
    result.originImage = valueOf(map, ResultKeys::originImage, QImage());
    result.calibrated = valueOf(map, ResultKeys::taskCali, false);
    result.solution = valueOf(map, ResultKeys::solutionName, QString());
    result.taskName = valueOf(map, ResultKeys::taskName, QString());
    result.taskTime = valueOf(map, ResultKeys::taskTime, 0.0);
    result.hasAlgoResult = map.contains(QLatin1String(ResultKeys::algoResult));
    if (result.hasAlgoResult)
        readAlgoResult(result, map.value(QLatin1String(ResultKeys::algoResult)).toMap());
    return result;
}
