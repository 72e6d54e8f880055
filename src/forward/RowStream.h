#pragma once

#include "forward/ForwardState.h"
#include "forward/RowSource.h"

#include <deque>

/// One stream on its way: which rows come next, which are under way, and up to where they were acknowledged. On the
/// forwarder's thread.
class RowStream
{
public:
    RowStream(std::unique_ptr<RowSource> source, QString name, ForwardState::Stream state);

    /// Batches under way at most.
    static constexpr int mostUnderWay = 8;

    const QString& name() const { return m_name; }
    /// For the file: what was acknowledged.
    const ForwardState::Stream& state() const { return m_state; }
    /// Of the database, at the last look; 0 without one.
    qint64 first() const { return m_first; }
    qint64 last() const { return m_last; }
    qint64 waiting() const { return qMax<qint64>(0, m_last - m_state.row); }
    const QString& error() const { return m_source->error(); }

    /// Looks at the database anew; true when it is another one, or the first: the state has to be written.
    bool look();
    /// The next rows to be sent, if there are any, and may be.
    bool hasNext() const { return m_sent < m_last && int(m_underWay.size()) < mostUnderWay; }
    RowBatch next();
    /// The batch that next() gave goes on its way under this number.
    void sent(quint64 number, qint64 upTo);
    /// True when the acknowledged rows became more.
    bool taken(quint64 number);
    /// All that was under way is sent once more.
    void rewind();

    /// Rows that a plant asks for again; those of another database it does not get.
    void ask(const ResendRequest& request);
    bool hasAsked() const { return !m_asked.empty(); }
    RowBatch nextAsked();

    QString pictureOf(qint64 row) { return m_source->pictureOf(row); }

private:
    struct Sent
    {
        quint64 number;
        qint64 upTo;
        bool taken;
    };
    void begin();
    RowBatch filled(RowBatch batch) const;

    const std::unique_ptr<RowSource> m_source;
    const QString m_name;
    ForwardState::Stream m_state;
    qint64 m_sent = 0;
    qint64 m_first = 0;
    qint64 m_last = 0;
    std::deque<Sent> m_underWay; // in the order of the rows
    std::deque<ResendRequest> m_asked;
};
