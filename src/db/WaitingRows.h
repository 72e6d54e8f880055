#pragma once

#include "db/StationDB.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QVector>

#include <deque>

/// A row for which the database has no place yet.
struct WaitingRow
{
    StationResult result; ///< texts as a statement can carry them
    QDateTime time;       ///< of the answer
    int alike = 0;        ///< rows of that time before it that look the same
};

/// Rows as the content of their file: a JSON object a line. Pure functions.
namespace WaitingRows {

QByteArray lineOf(const WaitingRow& row);

/// What the file holds, also as earlier versions wrote it: one object that lists them. An entry without time or angle
/// is no row: it would count as an answer that nobody gave; `leftOut` counts those. A last line without an end was
/// being written when the process died, and counts as none.
QVector<WaitingRow> parse(const QByteArray& content, int* leftOut);

} // namespace WaitingRows

/// The file beside a database that keeps the rows that wait for it: a JSON object a line, added at once, so that they
/// outlive the process. GUI thread.
class WaitingRowsFile
{
    Q_DECLARE_TR_FUNCTIONS(WaitingRowsFile)

public:
    explicit WaitingRowsFile(QString path);

    const QString& path() const { return m_path; }
    bool exists() const { return m_exists; }
    /// What a process before has left. Lines that cannot be read are logged, and the file is copied aside first.
    QVector<WaitingRow> read();

    /// False when the disk does not take it; the file is incomplete then, until it is written anew.
    bool add(const WaitingRow& row);
    bool isComplete() const { return m_complete; }
    int lines() const { return m_lines; }

    /// Replaces the file's content in one step, and waits for the disk.
    bool write(const std::deque<const WaitingRow*>& rows, QString* error);
    void remove();

private:
    const QString m_path;
    bool m_exists = false;
    bool m_complete = true;
    int m_lines = 0;
};
