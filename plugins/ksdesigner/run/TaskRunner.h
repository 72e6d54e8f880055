#pragma once

#include "common/Background.h"
#include "common/TaskResult.h"
#include "model/ModelId.h"

#include <valvecell/IModelTrial.h>

#include <QImage>
#include <QObject>

#include <functional>

class IEngine;

/// What the engine shall run: a model as it is stored, or other parameters in its place.
struct Recipe
{
    ModelId id;
    QVariantMap parameters; ///< empty: as stored
};

/// What came of it.
struct Trial
{
    TaskResult result;
    QVector<TrialStage> stages; ///< empty unless asked for and offered
};

/// Runs images through the engine and delivers the results on the GUI thread. May be deleted while tasks are under
/// way: their results are dropped.
class TaskRunner : public QObject
{
    Q_OBJECT

public:
    /// `engine` outlives the runner.
    explicit TaskRunner(IEngine* engine, QObject* parent = nullptr);

    /// Whether the engine runs parameters that are not stored. Without it they are ignored.
    bool runsUnsaved() const { return m_trial; }

    /// Returns at once. `done` is called once on the GUI thread, unless the runner was deleted before.
    void run(const QImage& image, const Recipe& recipe, bool withStages, const std::function<void(const Trial&)>& done);

private:
    IEngine* m_engine;
    IModelTrial* m_trial;
    bool m_keepsExamples;
    Mailbox m_mailbox;
};
