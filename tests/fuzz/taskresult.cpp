#include "common/TaskResult.h"

#include "Harness.h"
#include "workflow/PlcLink.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// JSON has no points and no images: {"x", "y"} and {"width", "height"} stand for them.
QVariant variantOf(const QVariant& value)
{
    if (value.type() != QVariant::Map)
        return value;
    QVariantMap map = value.toMap();
    if (map.contains(QStringLiteral("x")))
        return QPointF(map[QStringLiteral("x")].toDouble(), map[QStringLiteral("y")].toDouble());
    if (map.contains(QStringLiteral("width")))
        return QImage(qBound(0, map[QStringLiteral("width")].toInt(), 32), 8, QImage::Format_Grayscale8);
    for (QVariant& inner : map)
        inner = variantOf(inner);
    return map;
}

} // namespace

/// A result as an engine of others may report it, up to the frame that answers it.
FUZZ_TARGET(taskresult)
{
    const QVariantMap map = variantOf(QJsonDocument::fromJson(bytes).object().toVariantMap()).toMap();
    const TaskResult result = TaskResult::fromMap(map);
    fuzz::require(qIsFinite(result.angle), "an angle is a number");
    fuzz::require(!result.found || (result.hasAlgoResult && result.angle <= 360), "what was found has an angle");
    const PlcLink::Sent sent = PlcLink::asSent(result.angle, result.center.x(), result.center.y());
    const SComFrame frame = plc::result(1, sent.angle, sent.x, sent.y);
    fuzz::require(sent.carried || frame.data[2] == plc::nothingFoundAngle, "what no frame carries is not found");
}
