#pragma once

#include <QElapsedTimer>
#include <QVariant>
#include <QVector>

/// A search that looks into every row, from the newest back, in steps that each end soon: the first rows are seen while
/// it goes on, nobody waits for its end, and no step keeps the writer's log from being taken over.
template <typename Row>
struct Search
{
    QVector<Row> rows; ///< found so far, newest first
    QVariant before;   ///< where to go on, as the reader counts; null: from the newest
    bool ended = false;
    int percent = 0; ///< of the time that has been searched
    int rowsASlice = 20000;

    /// Repeats `slice`, which looks into the next rows, until it has ended, as many are found, or the time is over.
    template <typename Slice>
    void goOn(int limit, int ms, Slice slice)
    {
        QElapsedTimer clock;
        clock.start();
        do {
            slice();
        } while (!ended && rows.size() < limit && clock.elapsed() < ms);
    }
};
