#pragma once

#include "workflow/CTrigDetector.h"
#include "workflow/IZdCtrl.h"
#include "workflow/PlcIndexTable.h"

#include <QMap>
#include <QObject>

class IEngine;

/// One station of the cell: its current model, its label, and the account of its triggers. GUI thread.
class Station : public QObject, public IStation
{
    Q_OBJECT

public:
    /// `name`: the engine solution. `indices` and `scheduler` outlive the station.
    Station(QString name, const PlcIndexTable& indices, Scheduler& scheduler, CTrigDetector::BurstLimit burstLimit,
            QObject* parent = nullptr);

    void setCurrentModel(const QString& model) override;
    QString currentModel() const override { return m_model; }
    void modelOfPlcIndex(QString& model, qint32 index) const override;

    const CTrigDetector& account() const { return m_detector; }

public slots:
    /// Emits the model label anew.
    void updateAll();
    /// An image is missing, for so many checks in a row: warns at the second. At the first, the capture may be under
    /// way.
    void onErrTrig(int errorRun);

signals:
    /// Asks for updateAll().
    void sgUpdateLable();
    /// A trigger was sent to the camera; an image of it came.
    void sgaddTrigCount(int count);
    void sgaddRevCount(int count);
    /// The station's name, and its model label as rich text: red while no model is set.
    void sgShowModeName(QString station, QString label);

private:
    QString modelLabel() const;

    QString m_name;
    QString m_model;
    const PlcIndexTable& m_indices;
    CTrigDetector m_detector;
};

/// The workflow controller: owns the stations, one for each solution of the engine, and their PLC index table.
/// GUI thread.
class CZdCtrl : public QObject, public IZdCtrl
{
    Q_OBJECT

public:
    /// What the stations' accounts need besides; the scheduler outlives the controller.
    struct Accounting
    {
        Scheduler& scheduler;
        CTrigDetector::BurstLimit burstLimit;
    };

    /// `engine` outlives the controller; `baseDir` is the home.
    CZdCtrl(IEngine* engine, const QString& baseDir, Accounting accounting, QObject* parent = nullptr);

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
    const Accounting m_accounting;
    PlcIndexTable m_indices;
    QStringList m_names; ///< in the engine's order
    QMap<QString, Station*> m_stations;
};
