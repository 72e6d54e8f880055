#pragma once

#include <QString>

/// What the list of models shows: rows 0 to modelCount() - 1. GUI thread.
class IModelSource
{
public:
    virtual ~IModelSource() = default;
    virtual int modelCount() const = 0;
    virtual QString modelName(int row) const = 0;
    virtual int plcIndex(int row) const = 0;
    virtual bool isCalibrated(int row) const = 0;
    virtual bool isCurrent(int row) const = 0;
};
