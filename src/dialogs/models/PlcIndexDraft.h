#pragma once

#include "common/AuditChange.h"
#include "workflow/PlcIndexTable.h"

#include <QCoreApplication>
#include <QPair>
#include <QSet>

class ModelManager;

/// The PLC index tables of the stations, with what was typed laid over the stored ones until it is applied. Knows what
/// is wrong with each index. GUI thread.
class PlcIndexDraft
{
    Q_DECLARE_TR_FUNCTIONS(PlcIndexDraft)

public:
    static constexpr int lowestIndex = 1;
    static constexpr int highestIndex = 32767;

    using Cell = QPair<QString, QString>; ///< station and model
    /// What is wrong with a cell, the worst first.
    enum class Mark { None, Wrong, Missing, Shared };

    /// Both outlive the draft; the tables are changed through the manager only.
    PlcIndexDraft(ModelManager& models, const PlcIndexTable& stored);

    /// The stations' names; empty ones have no table and repeated ones share theirs: neither is listed.
    void setStations(const QStringList& stations);
    const QStringList& stations() const { return m_stations; }
    /// The models that the library or a table knows, in name order.
    const QStringList& names() const { return m_names; }
    bool isInLibrary(const QString& name) const { return m_library.contains(name); }

    /// Reads names and stored tables anew; what was typed stays.
    void refresh();
    void forgetTyped();
    void type(const QVector<Cell>& cells, const QString& text);
    /// Shows the file's tables as if they were typed.
    void typeFile();

    QString text(const Cell& cell) const { return m_typed.value(cell, storedText(cell)); }
    Mark mark(const Cell& cell) const;
    /// The mark in a sentence; empty for Mark::None.
    QString explanation(const Cell& cell) const;
    /// What keeps the tables from being stored: a number that is none, a model that the library lacks. Empty when
    /// nothing does.
    QString problem() const;
    /// What may be stored, though it is hardly meant: indices that two models of a station share.
    QString warning() const;
    bool isEdited() const;

    /// Stores every table, or, with the reason, none. What was typed stays.
    bool store(AuditChanges* changes, QString* error);

    /// Whether the file holds other tables than the program, and others than those typed here.
    bool isFileForeign() const;
    /// Whether the file holds any index of these stations; one that is damaged or gone holds none.
    bool hasFileIndices() const;

private:
    QString storedText(const Cell& cell) const;
    void put(const Cell& cell, const QString& text);
    QStringList owners(const Cell& cell) const;
    void countOwners();
    PlcIndexTable::StationTable typedTable(const QString& station) const;
    PlcIndexTable fileTables() const;

    ModelManager& m_models;
    const PlcIndexTable& m_stored;
    QStringList m_stations;
    QSet<QString> m_library; ///< the models that the library knows
    QStringList m_names;
    QMap<Cell, QString> m_typed;
    QMap<QString, QMultiMap<qint64, QString>> m_owners; ///< by station: an index and the models that have it
};
