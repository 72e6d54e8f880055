#pragma once

#include "dialogs/fields/AuditChange.h"
#include "workflow/PlcIndexTable.h"

#include <QAbstractTableModel>
#include <QPair>
#include <QSet>

class ModelManager;

/// The PLC index tables of the stations side by side: a row for each model that the library or a table knows, a column
/// for each station. What is typed lies over the stored tables until it is applied, and follows their changes.
/// GUI thread.
class PlcIndexModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int lowestIndex = 1;
    static constexpr int highestIndex = 32767;

    /// Both outlive the model; the tables are changed through the manager only.
    PlcIndexModel(ModelManager& models, const PlcIndexTable& stored, QObject* parent = nullptr);

    /// The stations' names; empty ones have no table and repeated ones share theirs: both get no column.
    void setStations(const QStringList& stations);

    /// Reads names and stored tables anew; what was typed stays.
    void refresh();
    /// Forgets what was typed.
    void forgetTyped();
    /// Empties these cells; names stay.
    void clear(const QModelIndexList& cells);

    /// What keeps the tables from being stored: a number that is none, a model that the library lacks. Empty when
    /// nothing does.
    QString problem() const;
    /// What may be stored, though it is hardly meant: indices that two models of a station share.
    QString warning() const;
    bool isEdited() const;

    /// Stores every table, or, with the reason, none.
    bool store(AuditChanges* changes, QString* error);

    /// Whether the file holds other tables than the program, and others than those typed here.
    bool isFileForeign() const;
    /// Whether the file holds any index of these stations; one that is damaged or gone holds none.
    bool hasFileIndices() const;
    /// Shows the file's tables as if they were typed.
    void typeFile();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    /// What is wrong with a cell, the worst first.
    enum class Mark { None, Wrong, Missing, Shared };
    using Cell = QPair<QString, QString>; ///< station and model

    QString storedText(const Cell& cell) const;
    QString text(const Cell& cell) const { return m_typed.value(cell, storedText(cell)); }
    void type(const Cell& cell, const QString& text);
    Cell cellOf(const QModelIndex& index) const;
    Mark mark(const Cell& cell) const;
    QString explanation(const Cell& cell) const;
    QStringList owners(const Cell& cell) const;
    void countOwners();
    QVariant ground(const Cell& cell) const;
    PlcIndexTable::StationTable typedTable(const QString& station) const;
    PlcIndexTable fileTables() const;

    ModelManager& m_models;
    const PlcIndexTable& m_stored;
    QStringList m_stations;
    QSet<QString> m_library; ///< the models that the library knows
    QStringList m_names;     ///< the rows, in name order
    QMap<Cell, QString> m_typed;
    QMap<QString, QMultiMap<qint64, QString>> m_owners; ///< by station: an index and the models that have it
};
