#pragma once

#include "TriggerLedger.h"

#include <QStringList>

/// A row of the results.
struct RecordedRow
{
    int station = 0;
    qint64 timeMs = 0;      ///< since the epoch
    PlcFrames::Answer sent; ///< what it says was sent
    bool hasImage = false;  ///< the engine saw one, so that there is a picture to be named
    QString picture;        ///< below the home
};

/// What the PLC knows against what the cell recorded.
struct Balance
{
    int answered = 0;
    int found = 0;   ///< with an angle
    int refused = 0; ///< 999
    int nothing = 0; ///< another special angle: 361
    int cut = 0;     ///< in a gap: the line was cut
    int killed = 0;  ///< in a gap: the program was killed
    int rowsOfAnswers = 0;
    int rowsOfGaps = 0;
    int lostByKill = 0; ///< answers whose rows a killed program had in hand, or had no disk for

    // What has to be zero.
    int unanswered = 0;
    int strays = 0;       ///< answers and "H" frames to no trigger
    int unnoticed = 0;    ///< answers without angle that no "H" frame followed
    int lostRows = 0;     ///< answers without a row of the same values
    int strangeRows = 0;  ///< rows of no answer, or a second one
    QStringList examples; ///< of these

    bool isZero() const { return unanswered + strays + unnoticed + lostRows + strangeRows == 0; }

    /// `rows` in the order in which they were written.
    static Balance of(const TriggerLedger& ledger, const QVector<RecordedRow>& rows);
};
