#pragma once

#include <QMap>
#include <QString>

/// Which model a PLC index means at each station, kept in "/user/plcIndex.json" below the home. GUI thread.
///
/// A station's table is named by its engine solution. A model name occurs at most once a station; names may share an
/// index, and the first of them in name order is then the one that the index means.
class PlcIndexTable
{
public:
    using StationTable = QMap<QString, qint32>; ///< model name to PLC index

    /// `baseDir`: the home, without a separator at its end.
    explicit PlcIndexTable(const QString& baseDir);

    /// Reads the file anew. A missing file gives an empty table; one that does not parse too, with a warning that
    /// names the place. What has a wrong type in one that does is named in the log, too; an index then is 0.
    void load();

    /// Replaces the file in one step; one that does not parse, or holds what is not a table, is kept
    /// beside it first. Returns false with the reason.
    bool save(QString* error = nullptr) const;

    /// The model of an index; empty when there is none. An index below 1 clears a station and means no model.
    QString modelOf(const QString& station, qint32 index) const;

    /// A station's table; empty for an unknown station.
    StationTable table(const QString& station) const { return m_tables.value(station); }
    void setTable(const QString& station, const StationTable& table) { m_tables.insert(station, table); }

private:
    QString m_path;
    QMap<QString, StationTable> m_tables;
};
