#pragma once

#include <QStringList>

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

/// The workflow controller as the trigger dispatch sees it. GUI thread.
class IZdCtrl
{
public:
    virtual ~IZdCtrl() = default;

    /// The names of all stations: a station is named by its engine solution.
    virtual QStringList stationNames() const = 0;
    /// A station by its name, or null; belongs to the controller.
    virtual IStation* station(const QString& name) const = 0;
    /// Sets a station's current model. False only for an empty model name: an unknown station is not reported.
    virtual bool selectModel(const QString& station, const QString& model) = 0;
};
