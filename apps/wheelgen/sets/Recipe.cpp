#include "Recipe.h"

#include "render/Random.h"

#include <algorithm>
#include <cmath>

namespace {

/// What no wheel of a set shows: mouths of 1.3 to 5.5 % of the rim are known.
constexpr double kUsualMouth = 0.028;

/// Radius of the usual mouth as a fraction of the rim's.
double usualMouth(const QVector<KnownPicture>& pictures)
{
    QVector<double> mouths;
    for (const KnownPicture& picture : pictures)
        if (picture.hole)
            mouths.append(picture.holeRadius / picture.rimRadius);
    if (mouths.isEmpty())
        return kUsualMouth;
    std::nth_element(mouths.begin(), mouths.begin() + mouths.size() / 2, mouths.end());
    return mouths[mouths.size() / 2];
}

/// FNV-1a, because Qt's hash differs from one run and version to the next.
quint64 hashOf(const QString& text)
{
    quint64 hash = 0xCBF29CE484222325ULL;
    for (const char byte : text.toUtf8())
        hash = (hash ^ static_cast<uchar>(byte)) * 0x100000001B3ULL;
    return hash;
}

} // namespace

QVariantMap recipeOf(const KnownPicture& picture, double mouth)
{
    wheel::Random random(hashOf(picture.file), 41);
    const auto taught = [&](double length, double deviation) {
        return std::round(10 * length * random.range(1 - deviation, 1 + deviation)) / 10;
    };
    QVariantMap recipe;
    recipe[QStringLiteral("rim_radius")] = taught(picture.rimRadius, 0.02);
    recipe[QStringLiteral("ring_radius")] = taught(picture.ringRadius, 0.01);
    recipe[QStringLiteral("hole_radius")] = taught(mouth, 0.10);
    recipe[QStringLiteral("taught")] = true;
    return recipe;
}

void completeParameters(QVector<KnownPicture>* pictures)
{
    const double usual = usualMouth(*pictures);
    for (KnownPicture& picture : *pictures)
        if (picture.parameters.isEmpty() && picture.rimRadius > 0)
            picture.parameters = recipeOf(picture, picture.hole ? picture.holeRadius : usual * picture.rimRadius);
    const auto first = std::find_if(pictures->cbegin(), pictures->cend(),
                                    [](const KnownPicture& picture) { return !picture.parameters.isEmpty(); });
    QVariantMap inUse = first != pictures->cend() ? first->parameters : QVariantMap();
    for (KnownPicture& picture : *pictures) {
        if (picture.parameters.isEmpty())
            picture.parameters = inUse;
        inUse = picture.parameters;
    }
}
