#pragma once

#include "db/PartRecord.h"

#include <QDateTime>
#include <QStringList>
#include <QVector>

/// Which parts are asked for.
struct PartFilter
{
    QDateTime from;  ///< local, included; not valid: from the first
    QDateTime to;    ///< local, not included; not valid: to the last
    int station = 0; ///< 1 or 2; 0 for both
    QString model;   ///< empty for all
    bool found = true;
    bool notFound = true;
    bool refused = true;
    QString text;            ///< in model, tip or user, in whatever case; empty for all
    bool markedOnly = false; ///< of the reviews
    bool pictured = false;   ///< of which a picture was archived
    qint64 since = 0;        ///< as `from` and `to`, for a step of a search; 0: open
    qint64 before = 0;       ///< not included
    qint64 upTo = 0;         ///< the last row's number, so that pages keep still while parts come in; 0 for all
};

/// One part, as a table of parts shows it.
struct PartRow
{
    qint64 uid = 0;
    qint64 wall = 0; ///< see PartTable
    PartRecord part;
    bool placed = false; ///< x and y are known
    int error = 0;
    QString tip;
    QString resultImage; ///< path below the home; empty when none was archived
    QString evidence;
    bool marked = false;
    QString comment;

    /// The picture of the result, or else the camera's; empty when neither was archived.
    const QString& picture() const { return resultImage.isEmpty() ? part.sourceImage : resultImage; }
};

/// What charts are made of: one entry a part, in the order of time, by columns. Numbers that are not known are NaN.
/// Time and outcome are always there; a column that nobody asked for is empty, since each costs its share of reading.
struct PartSeries
{
    enum Column {
        Uids = 1,
        Stations = 2,
        Errors = 4,
        Models = 8,
        Angles = 16,
        Xs = 32,
        Ys = 64,
        Scores = 128,
        ReplyTimes = 256,
        All = 511
    };
    Q_DECLARE_FLAGS(Columns, Column)

    QVector<qint64> wall;
    QVector<qint8> outcome; ///< a PartOutcome
    QVector<qint64> uid;
    QVector<qint8> station;
    QVector<qint16> error;
    QVector<int> model; ///< index into `models`
    QVector<double> angle;
    QVector<double> x;
    QVector<double> y;
    QVector<double> score;
    QVector<double> replyMs;
    QStringList models;

    int size() const { return wall.size(); }
};
Q_DECLARE_OPERATORS_FOR_FLAGS(PartSeries::Columns)
