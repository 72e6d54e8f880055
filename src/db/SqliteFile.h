#pragma once

#include "db/SqlConnection.h"

#include <QStringList>
#include <QVector>

/// The one place that opens SQLite files and sets their pragmas.
namespace SqliteFile {

/// When a committed row outlives a power failure. It outlives the death of the process either way.
enum class Durability {
    BeforeReturn, ///< every commit waits until the disk has it
    SoonAfter     ///< a WalKeeper flushes the log beside the thread that writes, which then never waits for the disk
};

/// A table of ours, with the columns that we cannot do without.
struct OwnTable
{
    QString name;
    QStringList columns;
};

struct OpenRules
{
    Durability durability = Durability::BeforeReturn;
    int busyMs = 50; ///< longest wait for another program that writes the file
    /// Commits move the log into the file when it has grown long; without, a WalKeeper does it.
    bool autoCheckpoint = true;
    /// A file with tables of which none, or none complete, is listed here belongs to another program; an empty list
    /// takes any file.
    QVector<OwnTable> ownTables;
};

struct OpenReport
{
    bool open = false;
    QString keptAside; ///< where the damaged, foreign or read-only file went; empty when there was none
    QString text;      ///< for the log: what was wrong and what was done; empty when there is nothing to log
};

/// Opens the file that the connection names for writing, with a write-ahead log; makes it, with its folder, when there
/// is none. A file that is damaged, read-only or of another program is renamed to a dated name beside it, and a fresh
/// one is begun.
OpenReport openForWriting(SqlConnection& connection, const OpenRules& rules);

/// Opens a file for reading only. A reader never keeps the writer waiting.
bool openForReading(SqlConnection& connection, QString* error);

/// True for errors after which only openForWriting() anew helps: the file is damaged, is not a database (any more), has
/// become read-only or was moved away.
bool needsReopening(const SqlConnection& connection);

/// One line: file, what was tried, reason.
QString describe(const SqlConnection& connection, const QString& what);

} // namespace SqliteFile
