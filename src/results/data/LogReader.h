#pragma once

#include "db/SqlConnection.h"
#include "results/data/Search.h"

#include <QCoreApplication>
#include <QDate>
#include <QVector>

#include <functional>

/// Which lines of the system log are asked for.
struct LogFilter
{
    QDate from; ///< both included; not valid: open
    QDate to;
    int worst = 0;            ///< levels from this one ...
    int least = 4;            ///< ... to this one, as SystemLog::Level
    bool changesOnly = false; ///< the audit lines
    QString text;             ///< in the message, in whatever case; empty for all
    QString user;             ///< who changed it; empty for all
    bool byArrival = false;   ///< the last that was written first, also when the clock was put back
    QString since;            ///< as `from` and `to`, for a step of a search: a time; by arrival, a number
    QString before;           ///< not included
    qint64 upTo = 0;          ///< as PartFilter's
};

/// One line, and what an audit line says.
struct LogRow
{
    qint64 id = 0;
    QString time; ///< local, "yyyy-MM-dd hh:mm:ss"
    int level = 0;
    QString message; ///< without the time at its beginning
    bool isChange = false;
    QString name; ///< of a change: the key
    QString before;
    QString after;
    QString user;

    /// Takes a stored message apart.
    static LogRow of(qint64 id, const QString& time, int level, const QString& message);
};

/// Reads the system log of a home beside the program that writes it. Used as PartReader.
class LogReader
{
    Q_DECLARE_TR_FUNCTIONS(LogReader)

public:
    explicit LogReader(QString home);

    bool open();
    const QString& error() const { return m_error; }

    /// As PartReader's.
    bool isFrozen() const { return m_frozen; }

    qint64 lastRow();
    int count(const LogFilter& filter);
    /// Newest first.
    QVector<LogRow> lines(const LogFilter& filter, int limit, int offset);
    /// As PartReader's.
    void goOn(Search<LogRow>& search, const LogFilter& filter, int limit, int ms);
    /// All of them, holding one at a time; `take` returns false to end it. False when the reading failed.
    bool each(const LogFilter& filter, Qt::SortOrder order, const std::function<bool(const LogRow&)>& take);
    /// Changes between two moments, oldest first, whose key begins with one of `names`; at most `limit`.
    QVector<LogRow> changes(const QDateTime& from, const QDateTime& to, const QStringList& names, int limit);

    static QString databaseOf(const QString& home) { return home + QStringLiteral("/dbLog.db"); }

private:
    void searchSlice(Search<LogRow>& search, const LogFilter& filter, int limit);
    int shareSearched(const LogFilter& cuts, const QString& by, const QString& reached);
    QSqlQuery run(const QString& columns, const LogFilter& filter, const QString& end);
    void noteEnd(const QSqlQuery& query);

    const QString m_home;
    SqlConnection m_connection;
    bool m_frozen = false;
    QString m_error;
};
