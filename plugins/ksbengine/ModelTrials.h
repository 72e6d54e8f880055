#pragma once

#include "SolutionStore.h"
#include "TaskThread.h"

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
