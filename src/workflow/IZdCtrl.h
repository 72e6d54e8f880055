#pragma once

#include <QStringList>

class IStation;

/// The workflow controller as the trigger dispatch sees it. GUI thread.
class IZdCtrl
{
public:
    virtual ~IZdCtrl() = default;

    /// The names of all stations: a station is named by its engine solution.
    virtual QStringList stationNames() const = 0;
    /// A station by its name, or null; belongs to the controller.
    virtual IStation* station(const QString& name) const = 0;
    /// Sets a station's current model. False only for an empty model name: an unknown station is not told.
    virtual bool selectModel(const QString& station, const QString& model) = 0;
};
