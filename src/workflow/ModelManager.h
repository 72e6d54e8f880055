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
    /// A name that looks like another model's is not new; `exceptName` is that of a model that is renamed.
    bool isNewName(const QString& name, QString* error, const QString& exceptName = {}) const;
    bool isFreeIndex(qint32 index, const QString& exceptName, QString* error) const;

    /// Adds a model with an index that no other model has. Names that the library cannot carry are refused.
    bool addModel(const QString& name, qint32 index, QString* error);
    bool changeIndex(const QString& name, qint32 index, QString* error);
    bool renameModel(const QString& name, const QString& newName, QString* error);
    bool removeModel(const QString& name, QString* error);
    bool setCalibrated(const QString& name, bool calibrated, QString* error);

    /// Replaces the table of one station; every name has to be in the library.
    bool setStationTable(const QString& station, const PlcIndexTable::StationTable& table, QString* error);

    /// The models that count as current ones in the list: those that the stations run.
    void setCurrentModels(const QStringList& names);
    void setCurrentModel(const QString& name) { setCurrentModels({name}); }

    int modelCount() const override { return m_models.size(); }
    QString modelName(int row) const override { return m_models.value(row).name; }
    int plcIndex(int row) const override { return m_models.value(row).index; }
    bool isCalibrated(int row) const override { return m_models.value(row).calibrated; }
    /// By the stations' tables; the library's own means nothing to the PLC.
    QVariant shownIndex(int row) const override;
    bool isCurrent(int row) const override { return m_current.contains(m_models.value(row).name); }

signals:
    /// Rows, or what they show, have changed.
    void changed();
    void currentChanged();

private:
    struct Model
    {
        QString name;
        qint32 index = 0; ///< of the first table that has the model; the library's when none has it
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
    QStringList m_current;
};
