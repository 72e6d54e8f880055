#pragma once

#include <QImage>
#include <QPointF>
#include <QString>
#include <QVariantMap>
#include <QVector>

#include <functional>

/// A circle that a stage found, in image pixels.
struct TrialCircle
{
    QPointF center;
    double radius = 0;
    QString label;         ///< short, for example a score; may be empty
    bool accepted = false; ///< what the engine went on with, as opposed to what it weighed and left
};

/// What one stage of the engine saw. Everything but the title may be empty.
struct TrialStage
{
    QString title;                ///< in the operator's language
    QString note;                 ///< one line of figures, for example "residual 0.21 px"
    QImage picture;               ///< shown in place of the task's image, for example the unwrapped ring
    QVector<TrialCircle> circles; ///< in pixels of `picture`, or of the task's image when there is none
    QVector<QPointF> points;      ///< likewise: edge points
};

/// Optional interface of an engine: runs parameters that nobody stored, and shows how it came to its answer.
///
/// Threads: called from the GUI thread, returns at once. Trials run one after another on a thread of their own, so that
/// they never hold up the tasks of a station; the callback is called on that thread, exactly once a trial, and for no
/// trial after the engine was deleted; deleting waits for the trial in hand and drops the waiting ones.
class IModelTrial
{
public:
    static constexpr const char* id = "valvecell.IModelTrial/1";

    struct Outcome
    {
        QVariantMap result;         ///< as of IEngine::runTask(), with the keys of ResultKeys.h
        QVector<TrialStage> stages; ///< in the order of the engine's work, up to the stage that failed
    };
    using Callback = std::function<void(const Outcome& outcome)>;

    /// Runs `parameters` on one image in place of a stored model's; missing ones have their defaults. `solution` gives
    /// the settings that are not the model's. Parameters that cannot be used answer with an error code and tip, an
    /// unknown solution without ResultKeys::algoResult. Without `withStages` the stages stay empty and the time is that
    /// of a task.
    virtual void runTrial(const QImage& image, const QString& solution, const QVariantMap& parameters, bool withStages,
                          Callback callback) = 0;

protected:
    ~IModelTrial() = default;
};
