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
    QString refusal; ///< why the parameters cannot be used, in the operator's language; empty when they can
};

/// Runs one task to its result map. `found`, if given, receives what the map was made of. Any thread, one finder a
/// thread.
QVariantMap runTask(const Task& task, finder::Finder& finder, finder::FindResult* found = nullptr);
