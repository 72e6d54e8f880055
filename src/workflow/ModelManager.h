#pragma once

#include "db/ModelModel.h"
#include "workflow/PlcIndexTable.h"

#include <QObject>
#include <QStringList>
#include <QVector>

class QSqliteWheelHubZd;
class Scheduler;

/// The cell's models: keeps the model library and the stations' PLC index tables in agreement. GUI thread.
///
/// Each change goes to the library and to every station's table, or, with the reason in `error`, to neither. The
/// workflow sees it at the next model-index frame with another pair of indices.
class ModelManager : public QObject, public IModelSource
{
    Q_OBJECT

public:
    /// `library`, which may not be open yet, `indices` and `scheduler` outlive the manager. `stations`: the names of
    /// the stations' tables.
    ModelManager(QSqliteWheelHubZd& library, PlcIndexTable& indices, QStringList stations, const Scheduler& scheduler,
                 QObject* parent = nullptr);

    /// Reads the library anew.
    void refresh();

    /// As refresh(), and adds the models that only an index table knows first: for a library that was not there before.
    void reload();

    bool contains(const QString& name) const;

    /// What is said while somebody types: whether a new model could have this name, and whether one named `exceptName`
    /// could have this index; if not, the reason.
    bool isNewName(const QString& name, QString* error) const;
    bool isFreeIndex(qint32 index, const QString& exceptName, QString* error) const;

    /// Adds a model with an index that no other model has. Names that the library cannot carry are refused.
    bool addModel(const QString& name, qint32 index, QString* error);
    bool changeIndex(const QString& name, qint32 index, QString* error);
    bool renameModel(const QString& name, const QString& newName, QString* error);
    bool removeModel(const QString& name, QString* error);
    bool setCalibrated(const QString& name, bool calibrated, QString* error);

    /// Replaces the table of one station; every name has to be in the library.
    bool setStationTable(const QString& station, const PlcIndexTable::StationTable& table, QString* error);

    /// The model that counts as the current one in the list.
    void setCurrentModel(const QString& name);

    int modelCount() const override { return m_models.size(); }
    QString modelName(int row) const override { return m_models.value(row).name; }
    int plcIndex(int row) const override { return m_models.value(row).index; }
    bool isCalibrated(int row) const override { return m_models.value(row).calibrated; }
    bool isCurrent(int row) const override { return !m_current.isEmpty() && m_models.value(row).name == m_current; }

signals:
    /// Rows, or what they show, have changed.
    void changed();

private:
    struct Model
    {
        QString name;
        qint32 index = 0;
        bool calibrated = false;
    };

    /// Plants write index tables by hand: a model that only a table knows gets into the library.
    void adoptTabledModels();
    /// The library's reason, as the answer false.
    bool libraryFailed(QString* error) const;
    template <typename Change>
    bool changeTables(Change change, QString* error);

    QSqliteWheelHubZd& m_library;
    PlcIndexTable& m_indices;
    const QStringList m_stations;
    const Scheduler& m_scheduler;
    QVector<Model> m_models;
    QString m_current;
};
