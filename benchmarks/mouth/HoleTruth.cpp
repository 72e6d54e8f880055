#include "HoleTruth.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

namespace {

/// The value of the first key that the object has.
double number(const QJsonObject& object, const QStringList& keys, double otherwise = std::nan(""))
{
    for (const QString& key : keys) {
        if (object.value(key).isDouble())
            return object.value(key).toDouble();
    }
    return otherwise;
}

QString text(const QJsonObject& object, const QStringList& keys)
{
    for (const QString& key : keys) {
        if (object.value(key).isString())
            return object.value(key).toString();
    }
    return {};
}

HoleTruth truthOf(const QJsonObject& image, const QString& folder)
{
    HoleTruth truth;
    truth.file = folder + QLatin1Char('/') + text(image, {QStringLiteral("file"), QStringLiteral("image")});
    truth.center = {number(image, {QStringLiteral("x"), QStringLiteral("vx")}),
                    number(image, {QStringLiteral("y"), QStringLiteral("vy")})};
    truth.hub = {number(image, {QStringLiteral("hub_x"), QStringLiteral("cx")}),
                 number(image, {QStringLiteral("hub_y"), QStringLiteral("cy")})};
    truth.major = number(image, {QStringLiteral("va"), QStringLiteral("hole_radius"), QStringLiteral("vr")});
    truth.minor =
        number(image, {QStringLiteral("vb"), QStringLiteral("hole_minor"), QStringLiteral("hole_radius")}, truth.major);
    truth.outer = number(image, {QStringLiteral("edge_radius"), QStringLiteral("outer_r"), QStringLiteral("outer")});
    for (const auto& key : {QStringLiteral("edge"), QStringLiteral("inside"), QStringLiteral("stem")}) {
        if (image.value(key).isString())
            truth.kinds.append(key + QLatin1Char(':') + image.value(key).toString());
    }
    for (const auto& tag : image.value(QStringLiteral("tags")).toArray())
        truth.kinds.append(tag.toString());
    truth.kinds.removeDuplicates();
    return truth;
}

} // namespace

QVector<HoleTruth> readTruth(const QString& folder, QString* error)
{
    QFile file(folder + QStringLiteral("/truth.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
        return {};
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    const QJsonArray images =
        document.isArray() ? document.array() : document.object().value(QStringLiteral("images")).toArray();
    QVector<HoleTruth> result;
    for (const auto& image : images) {
        const HoleTruth truth = truthOf(image.toObject(), folder);
        if (std::isfinite(truth.center.x) && std::isfinite(truth.hub.x) && truth.major > 0)
            result.append(truth);
    }
    if (result.isEmpty())
        *error = QStringLiteral("%1: no image with a hole").arg(file.fileName());
    return result;
}
