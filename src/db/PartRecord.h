#pragma once

#include <QMetaType>
#include <QString>

/// How a trigger ended, as its station's panel and the day's counts tell it.
enum class PartOutcome : int {
    Found = 0,
    NotFound = 1, ///< 361 or another special angle was answered, or nobody was there any more to be answered
    Refused = 2   ///< answered 999, or on purpose not at all
};

/// What is known of one part besides its row of "RltTable".
struct PartRecord
{
    int station = 0; ///< 1 or 2; 0: that of another solution's result
    QString model;   ///< that judged it
    qint32 plcIndex = 0;
    PartOutcome outcome = PartOutcome::NotFound;
    double angle = 0; ///< degrees; these three as sent
    double x = 0;     ///< machine units
    double y = 0;
    double score = 0; ///< percent

    /// Milliseconds from the trigger; negative when it never came.
    double imageMs = -1;
    double resultMs = -1;
    double replyMs = -1;

    QString user;        ///< who was logged in; empty for nobody
    QString calibration; ///< see Calibration::version()
    QString sourceImage; ///< path below the home; empty when it was not archived
};
