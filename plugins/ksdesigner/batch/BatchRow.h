#pragma once

#include "common/TaskResult.h"

#include <QVector>

/// One image of a re-run: what the first recipe found and, when two are compared, what the second did.
struct BatchRow
{
    enum class Change {
        None,       ///< only one recipe ran
        Same,       ///< both found the same place
        Moved,      ///< both found a hole, more than movedPixels or movedDegrees apart
        Gained,     ///< only the second found it
        Lost,       ///< only the first found it
        BothMissed, ///< neither found it
        Unreadable, ///< the file is no image
    };

    /// What a person said of the place that was found.
    enum class Verdict { None, Hole, Rejected };

    /// Well above what the same hole differs by from one set of parameters to the next.
    static constexpr double movedPixels = 0.5;
    static constexpr double movedDegrees = 0.05;

    QString path;
    QString name;    ///< below the folder that was run
    QString problem; ///< why the file could not be read; empty when it could
    TaskResult first;
    TaskResult second;
    bool compared = false; ///< whether there is a second
    Verdict verdict = Verdict::None;

    Change change() const;
    /// Whose place is judged: the first recipe's, or the second's where only that found one.
    const TaskResult& judged() const { return compared && !first.found ? second : first; }
    bool bothFound() const { return compared && first.found && second.found; }
    /// Distance of the two centres in pixels; 0 unless both found a hole.
    double movedBy() const;
    /// The smaller angle between the two directions in degrees, never negative; 0 unless both found a hole.
    double turnedBy() const;
};

/// The figures of a whole re-run.
struct BatchSummary
{
    int images = 0;
    int unreadable = 0;
    int foundFirst = 0;
    int foundSecond = 0;
    int gained = 0;
    int lost = 0;
    int moved = 0;
    double largestMove = 0;   ///< pixels
    double slowestFirst = 0;  ///< milliseconds
    double slowestSecond = 0; ///< milliseconds
    QString slowestName;      ///< of the slowest image of the first recipe
    bool compared = false;

    void add(const BatchRow& row);
    /// In the operator's language, one paragraph.
    QString text() const;
};
