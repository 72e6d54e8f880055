#pragma once

#include <QStringList>
#include <QVector>

namespace Simulation {

/// Numbers that follow from a seed alone, on every machine.
class Random
{
public:
    /// Seeds beside each other give sequences that have nothing in common.
    explicit Random(quint64 seed)
        : m_state(seed)
    {
        m_state = next();
    }
    quint64 next();
    int below(int end) { return static_cast<int>(next() % static_cast<quint64>(end)); }
    int between(int first, int last) { return first + below(last - first + 1); }
    bool chance(int percent) { return below(100) < percent; }

private:
    quint64 m_state;
};

/// What becomes of the picture of a part. Without numbers a camera cannot tell a picture that comes twice from the
/// next, so of those only cameras with numbers deliver.
enum class Picture { Good, Late, Lost, Null, Refused, Throws, Doubled, Foreign };
/// What the engine makes of it.
enum class Answer {
    Good,
    NothingFound,
    Late,
    Lost,
    Doubled,
    NoSolution,
    OtherSolution,
    TextAngle,
    NotANumber,
    FarAway,
    NotTaught,
    NoTask,
    Throws
};

/// One thing that happens in the plant. Pure data: a run is its set-up and its steps.
struct Step
{
    enum Kind { Part, Models, Noise, Cut, Stray, Disk, Clock, Setting, Edit, Snap, Restart, PowerCut, Calm };
    Kind kind = Part;
    int station = 1;
    int what = 0;  ///< which of its kind: a fault of the disk, a setting, an edit
    int value = 0; ///< a choice among what is there when it happens
    int ms = 0;    ///< that pass afterwards; below 0 none, and the next step comes before the cell looks
    Picture picture = Picture::Good;
    int pictureMs = 20; ///< after the capture began; of a late one after the deadline
    Answer answer = Answer::Good;
    int answerMs = 30;

    QString text() const;
};

/// Faults of the disk and of the files on it.
enum DiskFault { Full, ReadOnly, Broken, Locked, FolderGone, FileReplaced, FileDeleted, diskFaults };
enum Setting { Online, Protection, Filter, Deadline, SwapCameras, SwapSolutions, Saving, Cleaning, settings };
enum EditKind { AddModel, RemoveModel, RenameModel, ChangeIndex, edits };

constexpr qint64 longestDeadlineMs = 2000;

struct Plan
{
    quint64 seed = 0;
    bool numbered = false; ///< the cameras capture with numbers
    bool saves = false;    ///< pictures are archived
    int deadlineMs = 1000;
    QVector<Step> steps;

    static Plan of(quint64 seed, int steps);
    QStringList text() const;
};

} // namespace Simulation
