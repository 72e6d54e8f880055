#pragma once

#include "SolutionStore.h"
#include "Task.h"
#include "finder/Finder.h"

#include <valvecell/IModelTrial.h>

/// Runs parameters that nobody stored, on a thread of its own beside those of the stations.
class ModelTrials : public IModelTrial
{
public:
    /// `store` outlives this object.
    explicit ModelTrials(const SolutionStore* store);
    virtual ~ModelTrials() = default;

    void runTrial(const QImage& image, const QString& solution, const QVariantMap& parameters, bool withStages,
                  Callback callback) override;

    /// Lets the thread end after the trial in hand, without waiting for it.
    void stop() { m_thread.stop(); }

private:
    const SolutionStore* m_store;
    TaskThread m_thread;
};

/// What the finder saw on its way to `found` in `gray`, for people: hub fit, unwrapped ring, candidates with their
/// scores, edge points, residuals, the mouth, up to the stage that failed. `finder` is as its last find() left it. Any
/// thread.
QVector<TrialStage> trialStages(const cv::Mat& gray, const finder::Finder& finder, const finder::FindResult& found,
                                const finder::HoleModel& model);
