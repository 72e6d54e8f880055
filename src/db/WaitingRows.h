#pragma once

#include "db/StationDB.h"

#include <QJsonObject>
#include <QVector>

/// Rows that wait for the database from one start of the program to the next, as the content of a file:
/// {"rows": [{"time", "dAngle", ...}, ...]}. Pure functions.
namespace WaitingRows {

struct Row
{
    StationResult result; ///< texts as a statement can carry them
    QDateTime time;       ///< of the answer
    int alike = 0;        ///< rows of that time before it that look the same
};

QJsonObject toJson(const QVector<Row>& rows);

/// What the file holds. An entry without time or angle is no row: it would count as an answer that nobody gave;
/// `leftOut` counts those.
QVector<Row> fromJson(const QJsonObject& file, int* leftOut);

/// With what a statement cannot carry replaced.
StationResult madeCarriable(StationResult result);

} // namespace WaitingRows
