#pragma once

#include <QPair>
#include <QString>

/// Names one model of one solution; null when either name is empty.
struct ModelId
{
    QString solution;
    QString model;

    bool isNull() const { return solution.isEmpty() || model.isEmpty(); }
};

inline bool operator==(const ModelId& a, const ModelId& b)
{
    return a.solution == b.solution && a.model == b.model;
}

inline bool operator!=(const ModelId& a, const ModelId& b)
{
    return !(a == b);
}

inline bool operator<(const ModelId& a, const ModelId& b)
{
    return qMakePair(a.solution, a.model) < qMakePair(b.solution, b.model);
}
