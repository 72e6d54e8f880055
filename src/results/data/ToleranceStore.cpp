#include "results/data/ToleranceStore.h"

#include <valvecell/HomeFiles.h>

#include <cmath>

namespace {

QString pathOf(const QString& home)
{
    return home + QStringLiteral("/user/tolerances.json");
}

QString keyOf(Statistics::Value value)
{
    const char* const keys[] = {"angle", "x", "y", "score", "replyMs"};
    return QLatin1String(keys[value]);
}

double storedLimit(const QJsonObject& limits, const char* key)
{
    const QJsonValue value = limits.value(QLatin1String(key));
    return value.isDouble() ? value.toDouble() : qQNaN();
}

} // namespace

Statistics::Tolerance ToleranceStore::load(const QString& home, const QString& model, Statistics::Value value)
{
    const QJsonObject models = HomeFiles::readJson(pathOf(home)).object;
    const QJsonObject limits = models.value(model).toObject().value(keyOf(value)).toObject();
    return {storedLimit(limits, "lower"), storedLimit(limits, "upper")};
}

/// What is there but cannot be read is kept beside before it is replaced.
QString ToleranceStore::store(const QString& home, const QString& model, Statistics::Value value,
                              const Statistics::Tolerance& tolerance)
{
    const HomeFiles::JsonRead known = HomeFiles::readJson(pathOf(home));
    if (known.state == HomeFiles::JsonRead::Damaged)
        HomeFiles::keepAside(pathOf(home));
    QJsonObject limits;
    if (std::isfinite(tolerance.lower))
        limits.insert(QStringLiteral("lower"), tolerance.lower);
    if (std::isfinite(tolerance.upper))
        limits.insert(QStringLiteral("upper"), tolerance.upper);
    QJsonObject models = known.object;
    QJsonObject values = models.value(model).toObject();
    values.insert(keyOf(value), limits);
    models.insert(model, values);
    QString error;
    HomeFiles::writeJson(pathOf(home), models, &error);
    return error;
}
