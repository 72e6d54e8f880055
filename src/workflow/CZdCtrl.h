#pragma once

#include "workflow/IZdCtrl.h"
#include "workflow/PlcIndexTable.h"

#include <QMap>
#include <QObject>

class IEngine;
class Station;

/// The workflow controller: owns the stations, one for each solution of the engine, and their PLC index table.
/// GUI thread.
class CZdCtrl : public QObject, public IZdCtrl
{
    Q_OBJECT

public:
    /// `engine` outlives the controller; `baseDir` is the home.
    CZdCtrl(IEngine* engine, const QString& baseDir, QObject* parent = nullptr);

    /// Makes the stations and loads the PLC index table.
    void initialise();

    QStringList stationNames() const override;
    IStation* station(const QString& name) const override;
    bool selectModel(const QString& station, const QString& model) override;

    /// The station itself, with its signals; null for an unknown name.
    Station* stationObject(const QString& name) const { return m_stations.value(name); }

    PlcIndexTable& plcIndices() { return m_indices; }

private:
    IEngine* m_engine;
    PlcIndexTable m_indices;
    QStringList m_names; ///< in the engine's order
    QMap<QString, Station*> m_stations;
};
