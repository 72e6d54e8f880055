#pragma once

#include "workflow/IStation.h"

#include <QObject>

class CTrigDetector;
class PlcIndexTable;

/// One station of the cell: its current model, its label, and the account of its triggers. GUI thread.
class Station : public QObject, public IStation
{
    Q_OBJECT

public:
    /// `name`: the engine solution. `indices` outlives the station.
    Station(QString name, const PlcIndexTable& indices, QObject* parent = nullptr);

    void setCurrentModel(const QString& model) override;
    QString currentModel() const override { return m_model; }
    void modelOfPlcIndex(QString& model, qint32 index) const override;

public slots:
    /// Tells the model label anew.
    void updateAll();
    /// An image is missing, for so many checks in a row: warns at the first.
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
    CTrigDetector* m_detector;
};
