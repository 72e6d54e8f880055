#include "config/ksGlobalConfig.h"

#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

namespace {

QString filePath()
{
    return platform::inHome(QStringLiteral("/user/globalConfig.json"));
}

/// A key with its station's number.
QString named(const char* pattern, int station)
{
    return ConfigKey(pattern, station);
}

QJsonObject only(const QJsonObject& values, const QStringList& keys)
{
    QJsonObject chosen;
    for (const QString& key : keys) {
        if (values.contains(key))
            chosen.insert(key, values.value(key));
    }
    return chosen;
}

/// Of a two-point calibration that was made the scale is there, too: its default would answer wrong places.
QJsonObject spoiledTwoPoint(const QJsonObject& file, const QJsonObject& wrong, int station)
{
    namespace Keys = CalibrationKeys;
    const QString scale = named(Keys::scale, station);
    const QStringList rest{named(Keys::xOffset, station), named(Keys::yOffset, station), named(Keys::swapXY, station)};
    QJsonObject spoiled = only(wrong, QStringList(rest) << scale);
    QStringList made = rest;
    for (const char* key : {"point1_x_#", "point1_y_#", "point2_x_#", "point2_y_#", "length_#"})
        made << named(key, station);
    if (!file.contains(scale) && !only(file, made).isEmpty())
        spoiled.insert(scale, QJsonValue::Null);
    return spoiled;
}

/// A map has all its numbers or none.
QJsonObject spoiledFourPoint(const QJsonObject& file, const QJsonObject& wrong, int station)
{
    namespace Keys = CalibrationKeys;
    const QString group = named(Keys::fourPoint, station);
    const QJsonValue wrongGroup = wrong.value(group);
    if (!wrongGroup.isUndefined() && !wrongGroup.isObject())
        return {{group, wrongGroup}};
    QStringList map;
    for (const char* key : Keys::map)
        map << QLatin1String(key);
    const QStringList rest{Keys::mapXOffset, Keys::mapYOffset, Keys::mapSwapXY};
    QJsonObject spoiled = only(wrongGroup.toObject(), map + rest);
    const QJsonObject stored = file.value(group).toObject();
    const bool made = !only(stored, map).isEmpty();
    for (const QString& key : qAsConst(map)) {
        if (made && !stored.contains(key))
            spoiled.insert(key, QJsonValue::Null);
    }
    return spoiled;
}

/// Each problem is a warning of its own; the caller gets them as one text.
void report(const QStringList& lines, QString* target)
{
    for (const QString& line : lines)
        qWarning("%s", qUtf8Printable(line));
    if (target)
        *target = lines.join(QLatin1Char('\n'));
}

/// Whether each value of `part` stands in `whole`, too.
bool holds(const QJsonObject& whole, const QJsonObject& part)
{
    for (auto it = part.begin(); it != part.end(); ++it) {
        const QJsonValue there = whole.value(it.key());
        const bool nested = it.value().isObject() && there.isObject();
        if (nested ? !holds(there.toObject(), it.value().toObject()) : there != it.value())
            return false;
    }
    return true;
}

} // namespace

ksGlobalConfig::ksGlobalConfig()
{
    DefaultsVisitor defaults;
    visit(defaults);
}

int ksGlobalConfig::stationOfSolution(const QString& solution) const
{
    if (solution.isEmpty())
        return 0;
    return solution == stations[0].solution ? 1 : solution == stations[1].solution ? 2 : 0;
}

int ksGlobalConfig::stationOfCamera(const QString& camKey) const
{
    if (camKey.isEmpty())
        return 0;
    return camKey == stations[0].camKey ? 1 : camKey == stations[1].camKey ? 2 : 0;
}

bool ksGlobalConfig::load(QString* problems)
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(filePath());
    if (read.state == HomeFiles::JsonRead::Damaged)
        report({read.error}, problems);
    if (read.object.isEmpty())
        return read.state != HomeFiles::JsonRead::Damaged;
    JsonReadVisitor visitor(read.object, filePath());
    visit(visitor);
    const QStringList found = visitor.problems() + noteSpoiled(read.object, visitor.wrongValues());
    report(found, problems);
    report(visitor.unknown(), nullptr);
    return found.isEmpty();
}

QStringList ksGlobalConfig::noteSpoiled(const QJsonObject& file, const QJsonObject& wrong)
{
    spoiledKind = only(wrong, {CalibrationKeys::useFourPoint});
    QStringList lines;
    for (int number : {1, 2}) {
        StationConfig& own = station(number);
        own.spoiledTwoPoint = spoiledTwoPoint(file, wrong, number);
        own.spoiledFourPoint = spoiledFourPoint(file, wrong, number);
        if (!spoiledKind.isEmpty() || !(use4pointstand ? own.spoiledFourPoint : own.spoiledTwoPoint).isEmpty())
            lines << QStringLiteral("%1: the calibration of station %2 cannot be used: %3")
                         .arg(filePath(), QString::number(number), calibration(number).problem());
    }
    return lines;
}

QByteArray ksGlobalConfig::text()
{
    QJsonObject kept = spoiledKind;
    for (int number : {1, 2}) {
        const StationConfig& own = station(number);
        for (auto it = own.spoiledTwoPoint.begin(); it != own.spoiledTwoPoint.end(); ++it)
            kept.insert(it.key(), it.value());
        const QString group = named(CalibrationKeys::fourPoint, number);
        kept.insert(group, own.spoiledFourPoint.contains(group) ? own.spoiledFourPoint.value(group)
                                                                : QJsonValue(own.spoiledFourPoint));
    }
    JsonWriteVisitor visitor(kept);
    visit(visitor);
    return visitor.text() + '\n';
}

bool ksGlobalConfig::save(QString* error)
{
    JsonReadVisitor stored(HomeFiles::readJson(filePath()).object, filePath());
    ksGlobalConfig().visit(stored);
    const QByteArray next = text();
    const bool loses =
        !stored.unknown().isEmpty() || !holds(QJsonDocument::fromJson(next).object(), stored.wrongValues());
    QString reason;
    if (HomeFiles::writeJsonText(filePath(), next, &reason, loses))
        return true;
    report({reason}, error);
    return false;
}
