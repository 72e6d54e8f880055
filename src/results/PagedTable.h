#pragma once

#include "common/Background.h"
#include "platform/System.h"
#include "results/data/Search.h"

#include <QAbstractTableModel>
#include <QCache>
#include <QSet>
#include <QVector>

#include <functional>

/// The signals of every PagedTable.
class PagedTableBase : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

signals:
    /// The first page of a refresh is there: so many rows for now, or why there are none; `frozen` as PartReader's.
    void refreshed(int rows, const QString& error, bool frozen);
    /// Of the first page, all is there that was found in so much of the time; the search goes on.
    void searched(int percent);
    /// All rows are counted; follows a refreshed() without an error at once or some time later.
    void counted(int rows);
    /// A page came.
    void loaded();
};

/// A table over any number of rows of a database: pages are read on a thread when they come into sight. Refreshing
/// takes the rows up to the newest, and pages keep still until the next time. GUI thread.
template <typename Row>
class PagedTable : public PagedTableBase
{
public:
    static constexpr int rowsAPage = 200;

    struct Page : Search<Row>
    {
        Page() { this->ended = true; }
        qint64 upTo = 0; ///< the last row's number; of the first page of a refresh
        bool frozen = false;
        QString error;
    };

    explicit PagedTable(QObject* parent)
        : PagedTableBase(parent)
        , m_pages(pagesKept)
        , m_background(Background::AtEnd::Wait, 2) // a long search does not keep the next one waiting
    {
    }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : m_count; }

    /// Of a row that has been read; null otherwise.
    const Row* rowAt(int row) const
    {
        if (row < 0 || row >= m_count)
            return nullptr;
        const QVector<Row>* page = m_pages.object(row / rowsAPage);
        const int within = row % rowsAPage;
        return page && within < page->size() ? &page->at(within) : nullptr;
    }

protected:
    /// So long does a step of a search last: the first rows are seen soon, and the next refresh does not wait.
    static constexpr int firstStepMs = 100;
    static constexpr int stepMs = 200;

    /// Begins anew with the rows of a home that `Reader` gives for a filter; those that it must search for come bit by
    /// bit. `rows` reads a page: (reader, filter, limit, offset).
    template <typename Reader, typename Filter, typename Rows>
    void restart(const QString& home, const Filter& filter, bool searches, Rows rows)
    {
        const auto upToNow = [filter](qint64 upTo) {
            Filter limited = filter;
            limited.upTo = upTo;
            return limited;
        };
        const auto read = [home, upToNow, searches, rows](int number, qint64 upTo) {
            platform::lowerThreadPriority(); // the production goes first
            Page page;
            Reader reader(home);
            if (reader.open()) {
                page.upTo = upTo > 0 ? upTo : reader.lastRow();
                page.ended = !searches || number > 0;
                if (page.ended)
                    page.rows = rows(reader, upToNow(page.upTo), rowsAPage, number * rowsAPage);
                else
                    reader.goOn(page, upToNow(page.upTo), rowsAPage, firstStepMs);
            }
            page.error = reader.error();
            page.frozen = reader.isFrozen();
            return page;
        };
        const auto count = [home, upToNow](qint64 upTo) {
            Reader reader(home);
            return reader.open() ? reader.count(upToNow(upTo)) : 0;
        };
        const auto goOn = [home, upToNow](Page page) {
            platform::lowerThreadPriority();
            Reader reader(home);
            if (reader.open())
                reader.goOn(page, upToNow(page.upTo), rowsAPage, stepMs);
            page.error = reader.error();
            return page;
        };
        begin(read, count, goOn);
    }

    /// As rowAt(), and has it read when it has not been.
    const Row* wanted(int row) const
    {
        if (const Row* known = rowAt(row))
            return known;
        const int page = row / rowsAPage;
        if (!m_read || row < 0 || row >= m_count || m_requested.contains(page))
            return nullptr;
        m_requested.insert(page);
        auto* self = const_cast<PagedTable*>(this); // a view sees a const table that fills itself
        m_background.run([read = m_read, page, upTo = m_upTo] { return read(page, upTo); },
                         [self, page, number = m_number](const Page& result) { self->take(number, page, result); });
        return nullptr;
    }

    /// For rows that somebody changed.
    template <typename Change>
    void changeRows(Change change)
    {
        const QList<int> pages = m_pages.keys();
        for (const int page : pages) {
            for (Row& row : *m_pages.object(page))
                change(row);
        }
        if (m_count > 0)
            emit dataChanged(index(0, 0), index(m_count - 1, columnCount() - 1));
    }

private:
    static constexpr int pagesKept = 40;

    /// Reads one page, on a thread. `upTo` is that of the refresh; 0 begins one, with page 0.
    using Read = std::function<Page(int page, qint64 upTo)>;
    /// Goes on with the search for a first page that has not ended.
    using GoOn = std::function<Page(const Page& page)>;
    /// Counts all rows up to that one, likewise.
    using Count = std::function<int(qint64 upTo)>;

    /// What was asked for before is dropped.
    void begin(Read read, Count count, GoOn goOn)
    {
        const int number = ++m_number;
        m_read = std::move(read);
        m_goOn = std::move(goOn);
        m_counting = std::move(count);
        m_background.clear();
        m_requested.clear();
        m_background.run([read = m_read] { return read(0, 0); },
                         [this, number](const Page& page) { show(number, page); });
    }

    void show(int number, const Page& page)
    {
        if (number != m_number)
            return;
        beginResetModel();
        m_pages.clear();
        m_count = page.error.isEmpty() ? page.rows.size() : 0;
        m_upTo = page.upTo;
        m_pages.insert(0, new QVector<Row>(page.rows));
        endResetModel();
        emit refreshed(m_count, page.error, page.frozen);
        if (page.error.isEmpty())
            proceed(number, page);
    }

    void proceed(int number, const Page& page)
    {
        if (!page.ended && m_count < rowsAPage) {
            emit searched(page.percent);
            return m_background.run([goOn = m_goOn, page] { return goOn(page); },
                                    [this, number](const Page& next) { extend(number, next); });
        }
        if (m_count < rowsAPage)
            return emit counted(m_count);
        m_background.run([count = m_counting, upTo = m_upTo] { return count(upTo); },
                         [this, number](int rows) { grow(number, rows); });
    }

    void extend(int number, const Page& page)
    {
        if (number != m_number)
            return;
        if (!page.error.isEmpty())
            return emit refreshed(m_count, page.error, page.frozen);
        if (page.rows.size() > m_count) {
            beginInsertRows({}, m_count, page.rows.size() - 1);
            m_pages.insert(0, new QVector<Row>(page.rows));
            m_count = page.rows.size();
            endInsertRows();
        }
        proceed(number, page);
    }

    void grow(int number, int rows)
    {
        if (number != m_number)
            return;
        if (rows > m_count) {
            beginInsertRows({}, m_count, rows - 1);
            m_count = rows;
            endInsertRows();
        }
        emit counted(m_count);
    }

    /// A page that is shorter than it was counted ends the table: rows were removed meanwhile.
    void take(int number, int page, const Page& read)
    {
        if (number != m_number)
            return;
        if (!read.error.isEmpty())
            return show(number, read);
        m_requested.remove(page);
        m_pages.insert(page, new QVector<Row>(read.rows));
        const int first = page * rowsAPage;
        const int end = first + read.rows.size();
        if (end < m_count && read.rows.size() < rowsAPage)
            shrink(end);
        if (end > first)
            emit dataChanged(index(first, 0), index(qMin(m_count, end) - 1, columnCount() - 1));
        emit loaded();
    }

    void shrink(int rows)
    {
        beginRemoveRows({}, rows, m_count - 1);
        m_count = rows;
        endRemoveRows();
        emit counted(m_count);
    }

    Read m_read;
    GoOn m_goOn;
    Count m_counting;
    int m_count = 0;
    qint64 m_upTo = 0;
    int m_number = 0; ///< of the refresh: what an older one asked for is dropped
    mutable QCache<int, QVector<Row>> m_pages;
    mutable QSet<int> m_requested;
    mutable Background m_background;
};
