#pragma once

#include "SolutionStore.h"
#include "finder/Finder.h"

#include <QVariantMap>

/// One task as it was handed over: all that it needs, so that later edits of models do not touch it.
struct Task
{
    QVariantMap input;
    QString solution;
    QString model;
    bool known = false; ///< solution and model exist; without them there is no "AlgoResult"
    finder::HoleModel parameters;
    SolutionStore::Answer answer = SolutionStore::Answer::Hole;
    IEngine::ResultCallback callback;
};

/// Runs one task to its result map. Any thread, one finder a thread.
QVariantMap runTask(const Task& task, finder::Finder& finder);
