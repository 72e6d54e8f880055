#pragma once

#include <QMetaType>
#include <QString>

/// What was answered for one part.
struct StationResult
{
    double angle = 0; ///< degrees, or one of the special angles
    qint32 errorType = 0;
    double matchScore = 0; ///< percent
    QString resultTip;
    QString threshBenchMark; ///< station and model
    QString stationName;
    QString value1; ///< path of the saved result image below the home; empty when none was saved
    QString value2; ///< as threshBenchMark
    QString value3; ///< what the answer rests on, see TaskResult::evidence
};

/// A recorded result.
struct StationResultRow
{
    qint64 uid = 0;
    QString time; ///< local, "yyyy-MM-dd hh:mm:ss zzz"
    StationResult result;
};

Q_DECLARE_TYPEINFO(StationResult, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(StationResultRow, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(StationResult)
