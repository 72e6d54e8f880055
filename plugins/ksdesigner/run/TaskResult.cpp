#include "TaskResult.h"

#include <valvecell/ResultKeys.h>

namespace {

template <typename Value>
Value take(const QVariantMap& map, const char* key)
{
    return map.value(QLatin1String(key)).value<Value>();
}

constexpr double fullCircle = 360;

} // namespace

TaskResult TaskResult::fromMap(const QVariantMap& map)
{
    TaskResult result;
    const QVariantMap answer = take<QVariantMap>(map, ResultKeys::algoResult);
    result.ran = !answer.isEmpty();
    result.angle = take<double>(answer, ResultKeys::angle);
    result.error = take<int>(answer, ResultKeys::error);
    result.found = result.ran && result.error == 0 && answer.contains(QLatin1String(ResultKeys::angle)) &&
                   result.angle <= fullCircle;
    result.center = take<QPointF>(answer, ResultKeys::centerPoint);
    result.hole = answer.contains(QLatin1String(ResultKeys::holeCenter)) ? take<QPointF>(answer, ResultKeys::holeCenter)
                                                                         : result.center;
    result.score = take<double>(answer, ResultKeys::score);
    result.runnerUpScore = take<double>(answer, ResultKeys::runnerUpScore);
    result.tip = take<QString>(answer, ResultKeys::resultTip);
    result.image = take<QImage>(answer, ResultKeys::image);
    result.hubCenter = take<QPointF>(answer, ResultKeys::hubCenter);
    result.hubRadius = take<double>(answer, ResultKeys::hubRadius);
    result.holeRadius = take<double>(answer, ResultKeys::holeRadius);
    result.edgePoints = take<int>(answer, ResultKeys::edgePoints);
    result.residual = take<double>(answer, ResultKeys::residual);
    result.milliseconds = take<double>(map, ResultKeys::taskTime);
    result.taught = take<bool>(map, ResultKeys::taskCali);
    return result;
}
