#pragma once

#include <QString>

/// A station as the workflow sees it. GUI thread.
class IStation
{
public:
    virtual ~IStation() = default;

    /// Makes a model the current one; an empty name changes nothing.
    virtual void setCurrentModel(const QString& model) = 0;
    virtual QString currentModel() const = 0;

    /// The model of a PLC index; `model` is emptied when the index is not in the station's table.
    virtual void modelOfPlcIndex(QString& model, qint32 index) const = 0;
};
