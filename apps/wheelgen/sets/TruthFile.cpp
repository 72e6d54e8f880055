#include "TruthFile.h"

#include "render/Random.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>
#include <QSet>

#include <algorithm>
#include <cmath>

namespace {

/// What no wheel of a set shows: mouths of 1.3 to 5.5 % of the rim are known.
constexpr double typicalMouth = 0.028;

/// Median radius of the mouths as a fraction of the rim's.
double medianMouth(const QVector<KnownPicture>& pictures)
{
    QVector<double> mouths;
    for (const KnownPicture& picture : pictures)
        if (picture.hole)
            mouths.append(picture.holeRadius / picture.rimRadius);
    if (mouths.isEmpty())
        return typicalMouth;
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

/// The values of one entry; keeps the first complaint.
class Entry
{
public:
    Entry(QJsonObject values, QString where)
        : m_values(std::move(values))
        , m_where(std::move(where))
    {
    }

    const QString& error() const { return m_error; }

    QString text(const char* key)
    {
        const QString value = m_values[QLatin1String(key)].toString();
        require(!value.isEmpty(), key, "a text");
        return value;
    }

    bool flag(const char* key)
    {
        const QJsonValue value = m_values[QLatin1String(key)];
        require(value.isBool(), key, "true or false");
        return value.toBool();
    }

    double number(const char* key)
    {
        const QJsonValue value = m_values[QLatin1String(key)];
        require(value.isDouble(), key, "a number");
        return value.toDouble();
    }

    double length(const char* key)
    {
        const double value = number(key);
        require(value > 0, key, "a length above 0");
        return value;
    }

    /// Tags as they are, and "key: value" for each key that names one; what is no text says nothing.
    QStringList causes(const QStringList& keys) const
    {
        QStringList result;
        for (const QJsonValue& tag : m_values[QStringLiteral("tags")].toArray())
            if (!tag.toString().isEmpty())
                result.append(tag.toString());
        for (const QString& key : keys)
            if (!m_values[key].toString().isEmpty())
                result.append(key + QStringLiteral(": ") + m_values[key].toString());
        return result;
    }

    double numberOrNone(const char* key) const { return m_values[QLatin1String(key)].toDouble(); }
    QString optional(const char* key) const { return m_values[QLatin1String(key)].toString(); }

private:
    void require(bool good, const char* key, const char* wanted)
    {
        if (!good && m_error.isEmpty())
            m_error = QStringLiteral("%1: \"%2\" is not %3").arg(m_where, QLatin1String(key), QLatin1String(wanted));
    }

    QJsonObject m_values;
    QString m_where;
    QString m_error;
};

KnownPicture ownPicture(Entry& entry)
{
    KnownPicture picture;
    picture.file = entry.text("file");
    picture.hole = entry.flag("hole");
    picture.design = entry.text("model");
    picture.rimRadius = entry.length("rim_radius");
    picture.ringRadius = entry.length("ring_radius");
    picture.causes = entry.causes({QStringLiteral("edge"), QStringLiteral("inside"), QStringLiteral("model")});
    if (!picture.hole)
        return picture;
    picture.x = entry.number("x");
    picture.y = entry.number("y");
    picture.angle = entry.number("angle");
    picture.holeRadius = entry.length("hole_radius");
    return picture;
}

KnownPicture foreignPicture(Entry& entry)
{
    KnownPicture picture;
    picture.file = entry.text("image");
    picture.wheel = entry.flag("wheel");
    picture.hole = entry.flag("valve");
    picture.design = entry.optional("design");
    picture.causes = entry.causes({QStringLiteral("edge"), QStringLiteral("inside"), QStringLiteral("stem"),
                                   QStringLiteral("through"), QStringLiteral("background"), QStringLiteral("design")});
    if (picture.wheel || picture.hole) {
        picture.rimRadius = entry.length("rim_r");
        picture.ringRadius = entry.length("pitch_r");
    }
    if (!picture.hole)
        return picture;
    picture.x = entry.number("vx");
    picture.y = entry.number("vy");
    picture.angle = entry.number("angle");
    picture.holeRadius = entry.length("vr");
    picture.depth = {entry.numberOrNone("distance_mm"), entry.numberOrNone("pp_x"), entry.numberOrNone("pp_y"),
                     entry.numberOrNone("mm_per_px"), entry.numberOrNone("depth_mm")};
    return picture;
}

bool parse(const QString& path, QJsonDocument* document, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    const QByteArray text = file.readAll();
    QJsonParseError problem;
    *document = QJsonDocument::fromJson(text, &problem);
    if (problem.error == QJsonParseError::NoError)
        return true;
    const int line = text.left(problem.offset).count('\n') + 1;
    *error = QStringLiteral("%1, line %2: %3").arg(path).arg(line).arg(problem.errorString());
    return false;
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
    const double median = medianMouth(*pictures);
    for (KnownPicture& picture : *pictures)
        if (picture.parameters.isEmpty() && picture.rimRadius > 0)
            picture.parameters = recipeOf(picture, picture.hole ? picture.holeRadius : median * picture.rimRadius);
    const auto first = std::find_if(pictures->cbegin(), pictures->cend(),
                                    [](const KnownPicture& picture) { return !picture.parameters.isEmpty(); });
    QVariantMap inUse = first != pictures->cend() ? first->parameters : QVariantMap();
    for (KnownPicture& picture : *pictures) {
        if (picture.parameters.isEmpty())
            picture.parameters = inUse;
        inUse = picture.parameters;
    }
}

bool TruthFile::read(const QString& folder, QString* error)
{
    m_pictures.clear();
    error->clear();
    if (!readTruth(folder + QStringLiteral("/truth.json"), error) ||
        !readParameters(folder + QStringLiteral("/params.json"), error))
        return false;
    completeParameters(&m_pictures);
    return true;
}

bool TruthFile::readTruth(const QString& path, QString* error)
{
    QJsonDocument document;
    if (!parse(path, &document, error))
        return false;
    const bool foreign = document.isArray();
    const QJsonArray entries = foreign ? document.array() : document.object()[QStringLiteral("images")].toArray();
    if (entries.isEmpty())
        *error = QStringLiteral("%1: neither a list of pictures nor an object with \"images\"").arg(path);
    QSet<QString> names;
    for (int i = 0; i < entries.size() && error->isEmpty(); ++i) {
        const QString where = QStringLiteral("%1, picture %2").arg(path).arg(i + 1);
        Entry entry(entries[i].toObject(), where);
        m_pictures.append(foreign ? foreignPicture(entry) : ownPicture(entry));
        *error = entry.error();
        if (error->isEmpty() && names.contains(m_pictures.last().file))
            *error = QStringLiteral("%1: %2 is there twice").arg(where, m_pictures.last().file);
        names.insert(m_pictures.last().file);
    }
    return error->isEmpty();
}

bool TruthFile::readParameters(const QString& path, QString* error)
{
    QJsonDocument document;
    if (!QFile::exists(path))
        return true;
    if (!parse(path, &document, error))
        return false;
    const QJsonObject all = document.object();
    for (KnownPicture& picture : m_pictures) {
        const QJsonValue parameters = all[picture.file];
        if (parameters.isUndefined())
            continue;
        if (!parameters.isObject()) {
            *error = QStringLiteral("%1: \"%2\" is not an object").arg(path, picture.file);
            return false;
        }
        picture.parameters = parameters.toObject().toVariantMap();
    }
    return true;
}
