#pragma once

#include "db/SqlConnection.h"
#include "results/data/PartFilter.h"
#include "results/data/Search.h"

#include <QCoreApplication>
#include <QVector>

#include <functional>
#include <optional>

/// Reads the parts of a home beside the program that writes them, which never waits for it. Made, used and destroyed
/// within one job on one thread: a file that was replaced meanwhile is the next job's.
class PartReader
{
    Q_DECLARE_TR_FUNCTIONS(PartReader)

public:
    enum Column { Time, Station, Model, PlcIndex, Outcome, Error, Angle, X, Y, Score, ReplyMs, User, Calibration };

    /// `home`: without a separator at its end.
    explicit PartReader(QString home);

    /// False when there is no database of results, it is damaged, foreign, or of a newer version; error() says which
    /// and what to do.
    bool open();
    /// Of the last call; a sentence for the user. Empty when it succeeded.
    const QString& error() const { return m_error; }

    /// Whether nothing can be written where it lies, so that it is read as it stood when it was opened.
    bool isFrozen() const { return m_frozen; }

    /// The number of the last row.
    qint64 lastRow();
    int count(const PartFilter& filter);
    /// At most `limit` rows from the `offset`-th on, by a column, then by time.
    QVector<PartRow> rows(const PartFilter& filter, Column by, Qt::SortOrder order, int limit, int offset);
    /// A step of a search for the newest `limit` parts, which takes about so many milliseconds.
    void goOn(Search<PartRow>& search, const PartFilter& filter, int limit, int ms);
    /// All of them in that order, however many, holding one at a time; `take` returns false to end it. False when the
    /// reading failed.
    bool each(const PartFilter& filter, Column by, Qt::SortOrder order,
              const std::function<bool(const PartRow&)>& take);
    /// One part by its number.
    std::optional<PartRow> row(qint64 uid);
    /// The part of a station at that very moment, see PartTable; the last one recorded if there are several.
    std::optional<PartRow> partAt(int station, qint64 wall);
    /// Those recorded last, whatever their times say: the newest is the last of them.
    QVector<PartRow> last(const PartFilter& filter, int count);
    /// All of them; `goOn`, when given, is asked now and then, and false ends the reading.
    PartSeries series(const PartFilter& filter, PartSeries::Columns columns, const std::function<bool()>& goOn = {});
    /// In the order of their names.
    QStringList models();
    /// Of the first and the last part; not valid when there is none.
    QPair<QDateTime, QDateTime> span();

    /// Where the results of a home lie.
    static QString databaseOf(const QString& home);
    static QString reviewsOf(const QString& home);

private:
    bool hasOwnColumns();
    void attachReviews();
    /// All parts are filled in.
    bool isTable() const;
    void searchSlice(Search<PartRow>& search, const PartFilter& filter, int limit);
    /// FROM and WHERE, with the table `p`.
    QString from(const PartFilter& filter) const;
    QSqlQuery run(const QString& sql, const PartFilter& filter = {});
    void noteEnd(const QSqlQuery& query);
    /// What rowOf() reads, of a SELECT or table of parts.
    QString wholeRows(const QString& parts) const;

    const QString m_home;
    SqlConnection m_connection;
    QString m_source;
    bool m_reviews = false;
    bool m_frozen = false;
    QString m_error;
};
