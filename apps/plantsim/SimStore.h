#pragma once

#include <QStringList>
#include <QVector>

/// What simulated cells have recorded, in one SQLite file: of each row its number and time, the rest follows from
/// these. What was written is there after a kill. One thread.
class SimStore
{
public:
    struct Row
    {
        qint64 row = 0;
        qint64 created = 0; ///< ms since 1970 UTC
    };
    struct Cell
    {
        QString cellId;
        QString epoch;
        qint64 bdSeq = 0;
        qint64 sent[2] = {0, 0}; ///< by stream: 0 parts, 1 log
        qint64 last[2] = {0, 0};
    };

    /// Ends the process with a message when the file cannot be used.
    explicit SimStore(const QString& file);

    /// Made when it is not there; its bdSeq is one more than before.
    Cell begin(int cell);
    void add(int cell, int stream, const Row& row);
    void setSent(int cell, int stream, qint64 sent);
    /// Those in (after, upTo], at most `count`.
    QVector<Row> rows(int cell, int stream, qint64 after, qint64 upTo, int count) const;
    /// "cell id|stream|rows|different rows|highest row" of each stream.
    QStringList balance() const;
    /// All that was added since the last call is there for good.
    void commit();

private:
    void run(const char* statement);

    bool m_open = false; // a transaction is
};
