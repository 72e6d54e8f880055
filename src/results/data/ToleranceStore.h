#pragma once

#include "results/data/Statistics.h"

/// The limits that users set for a model's values, in "user/tolerances.json" of the home. Any thread.
class ToleranceStore
{
public:
    static Statistics::Tolerance load(const QString& home, const QString& model, Statistics::Value value);
    /// Returns why it could not be stored; empty when it was.
    static QString store(const QString& home, const QString& model, Statistics::Value value,
                         const Statistics::Tolerance& tolerance);
};
