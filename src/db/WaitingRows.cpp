#include "db/WaitingRows.h"

#include "db/SqlText.h"

#include <QJsonArray>

namespace {

const auto rowsKey = QStringLiteral("rows");
const auto timeKey = QStringLiteral("time");
const auto alikeKey = QStringLiteral("alike");
const auto angleKey = QStringLiteral("dAngle");

QJsonObject entryOf(const WaitingRows::Row& row)
{
    const StationResult& result = row.result;
    return {{timeKey, row.time.toString(Qt::ISODateWithMs)},
            {alikeKey, row.alike},
            {angleKey, result.angle},
            {"errorType", result.errorType},
            {"matchScore", result.matchScore},
            {"resultTip", result.resultTip},
            {"threshBenchMark", result.threshBenchMark},
            {"stationName", result.stationName},
            {"value1", result.value1},
            {"value2", result.value2},
            {"value3", result.value3}};
}

StationResult resultOf(const QJsonObject& entry)
{
    StationResult result;
    result.angle = entry[angleKey].toDouble();
    result.errorType = entry["errorType"].toInt();
    result.matchScore = entry["matchScore"].toDouble();
    result.resultTip = entry["resultTip"].toString();
    result.threshBenchMark = entry["threshBenchMark"].toString();
    result.stationName = entry["stationName"].toString();
    result.value1 = entry["value1"].toString();
    result.value2 = entry["value2"].toString();
    result.value3 = entry["value3"].toString();
    return WaitingRows::madeCarriable(result);
}

} // namespace

namespace WaitingRows {

QJsonObject toJson(const QVector<Row>& rows)
{
    QJsonArray entries;
    for (const Row& row : rows)
        entries.append(entryOf(row));
    return {{rowsKey, entries}};
}

QVector<Row> fromJson(const QJsonObject& file, int* leftOut)
{
    QVector<Row> rows;
    const QJsonArray entries = file[rowsKey].toArray();
    for (const QJsonValue& value : entries) {
        const QJsonObject entry = value.toObject();
        const QDateTime time = QDateTime::fromString(entry[timeKey].toString(), Qt::ISODateWithMs);
        if (time.isValid() && entry[angleKey].isDouble())
            rows.append({resultOf(entry), time, entry[alikeKey].toInt()});
    }
    *leftOut = entries.size() - rows.size();
    return rows;
}

StationResult madeCarriable(StationResult result)
{
    for (QString* text : {&result.resultTip, &result.threshBenchMark, &result.stationName, &result.value1,
                          &result.value2, &result.value3})
        *text = SqlText::madeCarriable(*text);
    return result;
}

} // namespace WaitingRows
