#include "dialogs/calibration/CalibrationHistory.h"

#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

#include <algorithm>

namespace {

const QString timeKey = QStringLiteral("time");
const QString userKey = QStringLiteral("user");
const QString stationKey = QStringLiteral("station");
const QString kindKey = QStringLiteral("kind");
const QString valuesKey = QStringLiteral("values");

QString textOf(CalibrationHistory::Kind kind)
{
    return kind == CalibrationHistory::Kind::TwoPoint ? QStringLiteral("twoPoint") : QStringLiteral("fourPoint");
}

QList<QByteArray> linesOf(const QString& path, QString* error = nullptr)
{
    QFile file(path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly) || file.size() > HomeFiles::maxFileBytes) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return {};
    }
    QList<QByteArray> lines = file.readAll().split('\n');
    lines.removeAll(QByteArray());
    return lines;
}

} // namespace

CalibrationHistory::CalibrationHistory(int station, Kind kind)
    : m_station(station)
    , m_kind(kind)
{
}

QString CalibrationHistory::path()
{
    return platform::inHome(QStringLiteral("/user/calibrations.jsonl"));
}

template <typename Visitor>
void CalibrationHistory::visit(Visitor& visitor, StationConfig& config) const
{
    if (m_kind == Kind::FourPoint)
        return config.fourPoint.visit(visitor);
    config.twoPoint.visit(visitor, m_station);
    visitor.field({CalibrationKeys::swapXY, m_station}, config.swapXY, false);
}

QJsonObject CalibrationHistory::valuesOf(const StationConfig& config) const
{
    JsonWriteVisitor writer;
    StationConfig copy = config;
    visit(writer, copy);
    return QJsonDocument::fromJson(writer.text()).object();
}

StationConfig CalibrationHistory::restored(const StationConfig& config, const QJsonObject& values) const
{
    JsonReadVisitor reader(values, path());
    StationConfig station = config;
    visit(reader, station);
    (m_kind == Kind::FourPoint ? station.spoiledFourPoint : station.spoiledTwoPoint) = {};
    return station;
}

QVector<AppliedCalibration> CalibrationHistory::read() const
{
    QVector<AppliedCalibration> all;
    const QList<QByteArray> lines = linesOf(path());
    for (auto it = lines.rbegin(); it != lines.rend(); ++it) {
        const QJsonObject object = QJsonDocument::fromJson(*it).object();
        const QJsonObject values = object.value(valuesKey).toObject();
        const bool own =
            object.value(stationKey).toInt() == m_station && object.value(kindKey).toString() == textOf(m_kind);
        if (own && valuesOf(restored({}, values)) == values)
            all.append({QDateTime::fromString(object.value(timeKey).toString(), Qt::ISODate),
                        object.value(userKey).toString(), values});
    }
    return all;
}

QByteArray CalibrationHistory::line(const AppliedCalibration& applied) const
{
    const QJsonObject object{{timeKey, applied.time.toString(Qt::ISODate)},
                             {userKey, applied.user},
                             {stationKey, m_station},
                             {kindKey, textOf(m_kind)},
                             {valuesKey, applied.values}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool CalibrationHistory::add(const StationConfig& former, const StationConfig& applied, const QString& user,
                             QString* error) const
{
    const QVector<AppliedCalibration> kept = read();
    const QDateTime now = QDateTime::currentDateTime();
    QJsonObject last = kept.isEmpty() ? QJsonObject() : kept.first().values;
    QString unreadable;
    QList<QByteArray> lines = linesOf(path(), &unreadable);
    if (!unreadable.isEmpty()) {
        *error = unreadable;
        return false;
    }
    QVector<AppliedCalibration> news{{now, user, valuesOf(applied)}};
    const bool four = m_kind == Kind::FourPoint;
    if ((four ? former.fourPointCalibration() : former.twoPointCalibration()).problem().isEmpty())
        news.prepend({now, {}, valuesOf(former)});
    for (const AppliedCalibration& next : qAsConst(news)) {
        if (next.values != last)
            lines << line(next);
        last = next.values;
    }
    if (lines.size() > maxLines)
        lines = lines.mid(lines.size() - maxLines);
    return HomeFiles::writeFile(path(), lines.join('\n') + '\n', error);
}
