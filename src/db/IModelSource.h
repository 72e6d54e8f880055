#pragma once

#include <QString>

/// What the list of models shows: rows 0 to modelCount() - 1. GUI thread.
class IModelSource
{
public:
    virtual ~IModelSource() = default;
    virtual int modelCount() const = 0;
    virtual QString modelName(int row) const = 0;
    /// The index by which the PLC names the model.
    virtual int plcIndex(int row) const = 0;
    /// The engineer's mark that the model was checked; answers do not depend on it.
    virtual bool isCalibrated(int row) const = 0;
    /// Whether it is the one to stand out in the list.
    virtual bool isCurrent(int row) const = 0;
};
