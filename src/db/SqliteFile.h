#pragma once

#include "db/SqlConnection.h"

#include <QStringList>
#include <QVector>

#include <functional>

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
    /// Makes what is missing of the tables, wholly or not at all; false when it cannot, with the connection's error.
    std::function<bool(SqlConnection&)> createTables;
    bool replaceReadOnly = true;  ///< a file that cannot be written is put aside; otherwise it is waited for
    bool waitWhileOpening = true; ///< for another program, up to busyMs at each step
};

/// Why only a fresh file helps; an empty reason when there is no need.
struct Unfit
{
    QString reason;
    bool readOnly = false; ///< the file is good
};

struct OpenReport
{
    bool open = false;
    QString keptAside; ///< where the damaged, foreign or read-only file went; empty when there was none
    QString text;      ///< for the log: what was wrong and what was done; empty when there is nothing to log
};

/// Opens the file that the connection names for writing, with a write-ahead log; makes it, with its folder, when there
/// is none, and its tables. A file that is damaged, read-only or of another program is renamed to a dated name beside
/// it, which says "damaged" or "readonly", and a fresh one is begun.
OpenReport openForWriting(SqlConnection& connection, const OpenRules& rules);

/// Puts the file aside for this reason, and begins a fresh one.
OpenReport beginFresh(SqlConnection& connection, const OpenRules& rules, const Unfit& reason);

/// What the last statement says of the file.
Unfit whyUnfit(const SqlConnection& connection, const OpenRules& rules);

/// Opens a file for reading only. A reader never keeps the writer waiting. What lies where nothing can be written, such
/// as a read-only copy, is opened as it stands when no log beside it holds more; `frozen` says so.
bool openForReading(SqlConnection& connection, QString* error, bool* frozen = nullptr);

/// True for errors after which only openForWriting() anew helps: the file is damaged, is not a database (any more), or
/// has become read-only.
bool needsReopening(const SqlConnection& connection);

/// Where a file's write-ahead log lies.
QString logPath(const QString& path);

/// Renames a log whose file is another now, which must not be taken for that one's.
void keepLogAside(const QString& path);

/// One line: file, what was tried, reason.
QString describe(const SqlConnection& connection, const QString& what);

} // namespace SqliteFile
