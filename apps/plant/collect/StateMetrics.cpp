#include "collect/StateMetrics.h"

#include "plant/Sparkplug.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

namespace {

/// A text that is JSON itself, as the database may take it; an empty one stays away.
bool isJson(const QString& text)
{
    return !QJsonDocument::fromJson(text.toUtf8()).isNull();
}

/// Calibrations are told as "VERSION {numbers}" or as the numbers with their version.
QString calibration(const QString& text)
{
    if (isJson(text))
        return text;
    const int brace = text.indexOf(QLatin1Char('{'));
    QJsonObject numbers = QJsonDocument::fromJson(text.mid(qMax(brace, 0)).toUtf8()).object();
    numbers.insert(QStringLiteral("version"), (brace < 0 ? text : text.left(brace)).trimmed());
    return QString::fromUtf8(QJsonDocument(numbers).toJson(QJsonDocument::Compact));
}

} // namespace

std::optional<QByteArray> StateMetrics::json(const PlantTopics::Topic& topic, const QByteArray& payload, QString* error)
{
    const std::optional<Sparkplug::Payload> decoded = Sparkplug::decode(payload, error);
    if (!decoded)
        return std::nullopt;
    QJsonObject object;
    for (const Sparkplug::Metric& metric : decoded->metrics) {
        if (!metric.value.isValid())
            continue;
        QString text = metric.value.toString();
        if (metric.name.startsWith(QLatin1String("Calibration/")) && !text.isEmpty())
            text = calibration(text);
        if (metric.name == QLatin1String("Alarms") && !isJson(text))
            continue;
        if (!text.isEmpty())
            object.insert(metric.name, text.remove(QChar(0)));
    }
    const QString schema = object.value(QLatin1String("Properties/Schema")).toString();
    if (topic.kind == PlantTopics::Kind::Birth && schema.toInt() > PlantTopics::schemaVersion) {
        *error = QStringLiteral("Properties/Schema: %1 is newer than this program's %2")
                     .arg(schema)
                     .arg(PlantTopics::schemaVersion);
        return std::nullopt;
    }
    if (topic.kind == PlantTopics::Kind::Birth &&
        QUuid(object.value(QLatin1String("Properties/CellId")).toString()).isNull()) {
        *error = QStringLiteral("Properties/CellId: a UUID is needed");
        return std::nullopt;
    }
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}
