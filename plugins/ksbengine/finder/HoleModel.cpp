#include "HoleModel.h"

#include "common/Number.h"

#include <QCoreApplication>

#include <array>

namespace finder {

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(HoleModel)
};

struct Field
{
    const char* name;
    double HoleModel::*member;
    double low;
    double high;
    bool zeroMeansUnknown;
};

constexpr std::array<Field, 8> fields{{
    {"rim_radius", &HoleModel::rimRadius, 16, 50000, true},
    {"rim_radius_tol", &HoleModel::rimTolerance, 0.1, 50, false},
    {"ring_radius", &HoleModel::ringRadius, 8, 50000, true},
    {"ring_radius_tol", &HoleModel::ringTolerance, 0.1, 50, false},
    {"hole_radius", &HoleModel::holeRadius, 2, 2000, true},
    {"hole_radius_tol", &HoleModel::holeTolerance, 1, 60, false},
    {"score_limit", &HoleModel::scoreLimit, 0, 1, false},
    {"hole_depth", &HoleModel::holeDepth, -300, 300, false},
}};

// Broad limits of the built-in model, a little wider than what it promises so that a wheel at a limit is still inside.
constexpr Range autoRimOfHeight{0.24, 0.53};
constexpr Range autoRingOfRim{0.70, 0.97};
// Valve holes are 8 to 20 mm wide, rims 330 to 560 mm.
constexpr Range autoHoleOfRim{0.0118, 0.060};
constexpr double autoScoreLimit = 0.7; // where place and size are not known, the rest has to be right

Range around(double value, double percent)
{
    return {value * (1 - percent / 100), value * (1 + percent / 100)};
}

bool applyField(const Field& field, const QVariant& value, HoleModel* model, QString* error)
{
    const double number = value.toDouble();
    const bool unknown = field.zeroMeansUnknown && number == 0;
    if (!isNumber(value) || (!unknown && (number < field.low || number > field.high))) {
        *error = Tr::tr("%1 应为 %2 到 %3 之间的数").arg(QLatin1String(field.name)).arg(field.low).arg(field.high);
        return false;
    }
    model->*field.member = number;
    return true;
}

bool agrees(const HoleModel& model, QString* error)
{
    const bool ringOutside = model.rimRadius > 0 && model.ringRadius >= model.rimRadius;
    if (ringOutside)
        *error = Tr::tr("ring_radius 应小于 rim_radius");
    const bool holeTooLarge = model.ringRadius > 0 && model.holeRadius >= model.ringRadius / 2;
    if (holeTooLarge)
        *error = Tr::tr("hole_radius 应小于 ring_radius 的一半");
    return !ringOutside && !holeTooLarge;
}

} // namespace

Range HoleModel::rimRange(double imageHeight) const
{
    if (rimRadius > 0)
        return around(rimRadius, rimTolerance);
    return {autoRimOfHeight.low * imageHeight, autoRimOfHeight.high * imageHeight};
}

Range HoleModel::ringRange(double foundRim) const
{
    if (ringRadius > 0)
        return around(ringRadius * scale(foundRim), ringTolerance);
    return {autoRingOfRim.low * foundRim, autoRingOfRim.high * foundRim};
}

Range HoleModel::holeRange(double foundRim) const
{
    if (holeRadius > 0)
        return around(holeRadius * scale(foundRim), holeTolerance);
    return {autoHoleOfRim.low * foundRim, autoHoleOfRim.high * foundRim};
}

QString autoModelName()
{
    return QStringLiteral("auto");
}

HoleModel autoModel()
{
    HoleModel model;
    model.scoreLimit = autoScoreLimit;
    model.taught = true;
    return model;
}

bool applyParameters(const QVariantMap& parameters, HoleModel* model, QString* error)
{
    HoleModel changed = *model;
    for (const Field& field : fields) {
        const auto it = parameters.constFind(QLatin1String(field.name));
        if (it != parameters.constEnd() && !applyField(field, *it, &changed, error))
            return false;
    }
    const QVariant taught = parameters.value(QStringLiteral("taught"), changed.taught);
    if (static_cast<QMetaType::Type>(taught.type()) != QMetaType::Bool) {
        *error = Tr::tr("taught 应为 true 或 false");
        return false;
    }
    changed.taught = taught.toBool();
    if (!agrees(changed, error))
        return false;
    *model = changed;
    return true;
}

QVariantMap parametersOf(const HoleModel& model)
{
    QVariantMap map{{QStringLiteral("taught"), model.taught}};
    for (const Field& field : fields)
        map.insert(QLatin1String(field.name), model.*field.member);
    return map;
}

} // namespace finder
