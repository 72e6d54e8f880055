#pragma once

#include "db/SqlConnection.h"
#include "plant/RowBatch.h"

#include <memory>

/// Reads the rows of one stream by their numbers from the database that the cell writes, which never waits for it. Each
/// call is a statement of its own, so no snapshot is held. Made and used on one thread.
class RowSource
{
public:
    virtual ~RowSource() = default;

    static std::unique_ptr<RowSource> parts(const QString& home);
    static std::unique_ptr<RowSource> log(const QString& home);

    /// Opens the file when it is not open, or is another than the one that was; false when there is none that can be
    /// read, with error().
    bool look();
    const QString& error() const { return m_error; }

    /// The oldest row that there is, 0 without one; and the newest that there ever was.
    qint64 first();
    qint64 last();
    /// Its time, as the database has it; empty when there is no such row.
    QString timeOf(qint64 row);
    /// The last row that is not later than that time; 0 when all are.
    qint64 lastUntil(const QString& time);
    /// The rows in (after, upTo], as many as a batch may hold from the first on: its `upTo` says how far it reaches.
    RowBatch read(qint64 after, qint64 upTo);
    /// Of a part: the path of its source image below the home; empty without one.
    virtual QString pictureOf(qint64 row) = 0;

protected:
    RowSource(QString path, QString table, QString key, QString time, QString stream);

    SqlConnection& connection() { return m_connection; }
    /// Up to `limit` of these rows, in their order.
    virtual void append(RowBatch& batch, qint64 after, qint64 upTo, int limit) = 0;

private:
    qint64 number(const QString& sql);

    const QString m_path;
    const QString m_table;
    const QString m_key;
    const QString m_time;
    const QString m_stream;
    SqlConnection m_connection;
    quint64 m_identity = 0;
    QString m_error;
};
