#pragma once

#include "Mailbox.h"
#include "TaskResult.h"
#include "model/ModelId.h"

#include <QImage>
#include <QObject>

class IEngine;

/// Runs images through the engine and delivers the results on the GUI thread. May be deleted while tasks are under
/// way: their results are dropped.
class TaskRunner : public QObject
{
    Q_OBJECT

public:
    /// `engine` outlives the runner.
    explicit TaskRunner(IEngine* engine, QObject* parent = nullptr);
    ~TaskRunner() override;

    /// Returns at once. `done` is called once on the GUI thread, unless the runner was deleted before.
    void run(const QImage& image, const ModelId& id, std::function<void(const TaskResult&)> done);

private:
    IEngine* m_engine;
    Mailbox m_mailbox;
};
