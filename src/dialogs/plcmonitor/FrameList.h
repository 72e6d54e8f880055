#pragma once

#include "dialogs/plcmonitor/SeenFrame.h"

#include <QAbstractTableModel>
#include <QVector>

#include <deque>

/// Which frames are shown.
struct FrameFilter
{
    enum Way { Both, Received, Sent };

    bool hideHeartbeats = true;
    Way way = Both;
    int command = -1; ///< a command's code; -1 for all
    QString text;     ///< found in any column, whatever its case; empty for all
};

/// The seen frames as a table, oldest first, with those left out that the filter hides. Keeps a bounded number and
/// forgets the oldest. GUI thread.
class FrameList : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// So many frames are kept at least; a few hundred more before the oldest are forgotten, all in one go.
    static constexpr int kept = 10000;

    explicit FrameList(QObject* parent = nullptr);

    /// In the order in which they were seen.
    void append(const QVector<SeenFrame>& frames);
    void clear();
    void setFilter(const FrameFilter& filter);
    /// Words all texts anew, in the language that the program has now.
    void retranslate();

    /// How many frames are kept, hidden ones included.
    int total() const { return static_cast<int>(m_rows.size()); }
    /// The column titles and then the shown rows.
    QVector<QStringList> table() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Row
    {
        SeenFrame seen;
        QStringList cells; ///< worded once, so that a search over all of them is quick
    };

    bool passes(const Row& row) const;
    void forgetOldest();
    const Row& shown(int row) const { return m_rows[static_cast<size_t>(m_shown[static_cast<size_t>(row)] - m_first)]; }

    FrameFilter m_filter;
    std::deque<Row> m_rows;
    qint64 m_first = 0;         ///< how many were forgotten: the number of the oldest kept frame
    std::deque<qint64> m_shown; ///< the numbers of the frames that pass the filter
};
