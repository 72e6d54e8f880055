#pragma once

#include "db/PartRecord.h"

#include <QStringList>

class QDateTime;
class QSqlQuery;
class SqlConnection;

/// "PartTable" of the result database: what "RltTable" has no columns for, one row each, in the order of time, so that
/// a day or a month is read as one piece. The time "wall" is the local one in milliseconds as if it were UTC: a day
/// begins at a multiple of 86,400,000, and rows sort as the texts in "RltTable" do.
///
/// Rows from before there was this table are filled in by fillIn(), some at a time; until it is through, readers take
/// them from "RltTable" itself.
namespace PartTable {

/// Statements that make it; none when it is there.
QStringList missing(SqlConnection& connection);

/// The row of "RltTable" with that number.
bool insert(SqlConnection& connection, qint64 uid, const QDateTime& time, const PartRecord& part, int error);

/// Adds up to `count` of the older rows, the newest first; `left` tells whether there may be more.
bool fillIn(SqlConnection& connection, int count, bool* left);

/// A table of all parts for a SELECT's FROM, with the columns wall, uid, station, model, plc, outcome, error, angle, x,
/// y, score, image_ms, result_ms, reply_ms, account, calibration, source. x, y and times are null when not known.
QString source(SqlConnection& connection);

/// Whether the file was written by a later version than this, in a form that is not known here.
bool isNewer(SqlConnection& connection);

qint64 wallOf(const QDateTime& time);
/// This moment.
qint64 wallNow();
/// Local.
QDateTime timeOf(qint64 wall);

} // namespace PartTable
